#include "runtime/RegEx.h"

#include <chrono>

#include "runtime/exceptions.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace {

// Steps of backtracking. An ordinary search of a cue takes a few dozen; the quick limit is some
// 50 microseconds of work, the slow one a good fraction of a second.
constexpr std::uint32_t kQuickLimit = 10'000;
constexpr std::uint32_t kSlowLimit = 2'000'000;
constexpr std::uint32_t kHeapLimitKiB = 20'000;
constexpr std::chrono::milliseconds kSlowBudget{500};

std::int64_t CharactersBefore(std::string_view text, std::size_t bytes) {
  std::int64_t count = 0;
  for (char c : text.substr(0, bytes)) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

std::uint32_t CompileOptions(const RegExOptions& options) {
  std::uint32_t flags = PCRE2_UTF | PCRE2_UCP | PCRE2_MATCH_INVALID_UTF | PCRE2_NEVER_BACKSLASH_C;
  if (options.DotMatchAll) flags |= PCRE2_DOTALL;
  if (!options.CaseSensitive) flags |= PCRE2_CASELESS;
  if (!options.TreatTargetAsOneLine) flags |= PCRE2_MULTILINE;
  if (!options.Greedy) flags |= PCRE2_UNGREEDY;
  return flags;
}

}  // namespace

struct RegEx::Compiled {
  std::string pattern;
  pcre2_code* code = nullptr;
  pcre2_match_data* match = nullptr;
  pcre2_match_context* context = nullptr;
  std::uint32_t matchOptions = 0;
  std::chrono::steady_clock::duration slowTime{};
  RegExMatch result;

  ~Compiled() {
    pcre2_match_context_free(context);
    pcre2_match_data_free(match);
    pcre2_code_free(code);
  }
};

RegEx::RegEx() = default;
RegEx::~RegEx() = default;
RegEx::RegEx(RegEx&&) noexcept = default;
RegEx& RegEx::operator=(RegEx&&) noexcept = default;

void RegEx::Compile() {
  auto fresh = std::make_unique<Compiled>();
  fresh->pattern = SearchPattern;
  int error = 0;
  PCRE2_SIZE offset = 0;
  fresh->code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(SearchPattern.data()), SearchPattern.size(),
                              CompileOptions(Options), &error, &offset, nullptr);
  if (!fresh->code) {
    PCRE2_UCHAR words[256];
    pcre2_get_error_message(error, words, sizeof words);
    throw RegExSearchPatternException(reinterpret_cast<const char*>(words),
                                      CharactersBefore(SearchPattern, offset) + 1);
  }
  // Without the just-in-time code the interpreter gives the same answers, only later.
  pcre2_jit_compile(fresh->code, PCRE2_JIT_COMPLETE);
  fresh->match = pcre2_match_data_create(1, nullptr);
  fresh->context = pcre2_match_context_create(nullptr);
  pcre2_set_match_limit(fresh->context, kQuickLimit);
  pcre2_set_heap_limit(fresh->context, kHeapLimitKiB);
  if (!Options.StringBeginIsLineBegin) fresh->matchOptions |= PCRE2_NOTBOL;
  if (!Options.StringEndIsLineEnd) fresh->matchOptions |= PCRE2_NOTEOL;
  if (!Options.MatchEmpty) fresh->matchOptions |= PCRE2_NOTEMPTY;
  compiled_ = std::move(fresh);
}

const RegExMatch* RegEx::Search(std::string_view target) {
  if (!compiled_ || compiled_->pattern != SearchPattern) Compile();
  Compiled& c = *compiled_;
  const auto* subject = reinterpret_cast<PCRE2_SPTR>(target.data() ? target.data() : "");
  int found = pcre2_match(c.code, subject, target.size(), 0, c.matchOptions, c.match, c.context);
  if (found == PCRE2_ERROR_MATCHLIMIT) found = MatchSlowly(target, c.matchOptions);
  if (found == PCRE2_ERROR_NOMATCH) return nullptr;
  if (found < 0) throw RegExMatchLimitException("it would take too long to match");
  const PCRE2_SIZE* ends = pcre2_get_ovector_pointer(c.match);
  // A "\K" in a look-behind can set the start behind the end.
  c.result = {ends[0], ends[1] > ends[0] ? ends[1] - ends[0] : 0};
  return &c.result;
}

int RegEx::MatchSlowly(std::string_view target, unsigned options) {
  Compiled& c = *compiled_;
  if (c.slowTime > kSlowBudget) return PCRE2_ERROR_MATCHLIMIT;
  const auto start = std::chrono::steady_clock::now();
  pcre2_set_match_limit(c.context, kSlowLimit);
  const int found = pcre2_match(c.code, reinterpret_cast<PCRE2_SPTR>(target.data()), target.size(), 0,
                                options, c.match, c.context);
  pcre2_set_match_limit(c.context, kQuickLimit);
  c.slowTime += std::chrono::steady_clock::now() - start;
  return found;
}
