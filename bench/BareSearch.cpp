#include "BareSearch.h"

#include <stdexcept>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

struct BareSearch::Compiled {
  pcre2_code* code = nullptr;
  pcre2_match_data* match = nullptr;
  ~Compiled() {
    pcre2_match_data_free(match);
    pcre2_code_free(code);
  }
};

BareSearch::BareSearch(const std::string& pattern, bool checked)
    : compiled_(std::make_unique<Compiled>()), checked_(checked) {
  int error = 0;
  PCRE2_SIZE offset = 0;
  compiled_->code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                                  PCRE2_UTF | PCRE2_CASELESS, &error, &offset, nullptr);
  if (!compiled_->code || pcre2_jit_compile(compiled_->code, PCRE2_JIT_COMPLETE) != 0) {
    throw std::runtime_error("the pattern can't be compiled");
  }
  compiled_->match = pcre2_match_data_create_from_pattern(compiled_->code, nullptr);
}

BareSearch::~BareSearch() = default;

std::size_t BareSearch::Hits(const std::vector<std::string>& texts) {
  std::size_t hits = 0;
  const auto search = checked_ ? &pcre2_match_8 : &pcre2_jit_match_8;
  for (const std::string& text : texts) {
    hits += search(compiled_->code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                   compiled_->match, nullptr) >= 0;
  }
  return hits;
}
