#include "runtime/RegEx.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>

#include "runtime/PlainWord.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace {

// A target of the usual length is first searched with a limit on backtracking steps, about 50 microseconds of
// work. A search that exceeds it, and every longer target, is timed: half a second for all of them together,
// plus the time that a plain search of such a length may take.
constexpr std::size_t kShortTarget = 4096;
constexpr std::uint32_t kQuickLimit = 10'000;
constexpr std::chrono::milliseconds kSlowBudget{500};
constexpr std::chrono::nanoseconds kFreePerByte{50};
constexpr int kCalloutsPerCheck = 64;
constexpr std::uint32_t kHeapLimitKiB = 20'000;
constexpr std::size_t kStackAtFirst = 32 * 1024;
constexpr std::size_t kStackAtMost = 32 * 1024 * 1024;

using Clock = std::chrono::steady_clock;

struct Watch {
  Clock::time_point deadline;
  int callouts = 0;
};

int CheckTime(pcre2_callout_block*, void* data) {
  Watch& watch = *static_cast<Watch*>(data);
  const bool over = ++watch.callouts % kCalloutsPerCheck == 0 && Clock::now() > watch.deadline;
  return over ? PCRE2_ERROR_MATCHLIMIT : 0;
}

std::int64_t CharactersBefore(std::string_view text, std::size_t bytes) {
  std::int64_t count = 0;
  for (std::size_t at = 0; at < bytes; ++count)
    at += std::max<std::size_t>(CharacterLength(text.substr(at)), 1);
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

pcre2_code* CompileWith(const std::string& pattern, std::uint32_t options, int& error, PCRE2_SIZE& offset) {
  pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                                   &error, &offset, nullptr);
  // If this fails, the interpreter gives the same results more slowly.
  if (code) pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
  return code;
}

}  // namespace

struct RegEx::Compiled {
  std::string pattern;
  pcre2_code* code = nullptr;
  pcre2_code* timed = nullptr;  // the same with a callout at each item; compiled at its first use
  pcre2_match_data* match = nullptr;
  pcre2_match_context* context = nullptr;
  pcre2_jit_stack* stack = nullptr;
  std::uint32_t matchOptions = 0;
  Clock::duration slowTime{};
  std::optional<PlainWord> word;  // if the pattern is one
  RegExMatch result;

  ~Compiled() {
    pcre2_jit_stack_free(stack);
    pcre2_match_context_free(context);
    pcre2_match_data_free(match);
    pcre2_code_free(timed);
    pcre2_code_free(code);
  }
  int Match(const pcre2_code* which, std::string_view target) {
    const auto* subject = reinterpret_cast<PCRE2_SPTR>(target.data() ? target.data() : "");
    return pcre2_match(which, subject, target.size(), 0, matchOptions, match, context);
  }
};

void RegEx::Discard::operator()(Compiled* compiled) const { delete compiled; }

void RegEx::Compile() {
  std::unique_ptr<Compiled, Discard> fresh(new Compiled);
  fresh->pattern = SearchPattern;
  int error = 0;
  PCRE2_SIZE offset = 0;
  fresh->code = CompileWith(SearchPattern, CompileOptions(Options), error, offset);
  if (!fresh->code) {
    PCRE2_UCHAR words[256];
    pcre2_get_error_message(error, words, sizeof words);
    throw RegExSearchPatternException(reinterpret_cast<const char*>(words),
                                      CharactersBefore(SearchPattern, offset) + 1);
  }
  fresh->match = pcre2_match_data_create(1, nullptr);
  fresh->context = pcre2_match_context_create(nullptr);
  pcre2_set_match_limit(fresh->context, kQuickLimit);
  pcre2_set_heap_limit(fresh->context, kHeapLimitKiB);
  fresh->stack = pcre2_jit_stack_create(kStackAtFirst, kStackAtMost, nullptr);
  pcre2_jit_stack_assign(fresh->context, nullptr, fresh->stack);
  if (!Options.CaseSensitive) fresh->word = PlainWord::From(SearchPattern);
  if (!Options.StringBeginIsLineBegin) fresh->matchOptions |= PCRE2_NOTBOL;
  if (!Options.StringEndIsLineEnd) fresh->matchOptions |= PCRE2_NOTEOL;
  if (!Options.MatchEmpty) fresh->matchOptions |= PCRE2_NOTEMPTY;
  compiled_ = std::move(fresh);
}

const RegExMatch* RegEx::Search(std::string_view target) {
  if (!compiled_ || compiled_->pattern != SearchPattern) Compile();
  Compiled& c = *compiled_;
  if (const auto at = c.word ? c.word->FindIn(target) : std::nullopt) {
    c.result = {*at, c.word->Size()};
    return *at == PlainWord::kNotThere ? nullptr : &c.result;
  }
  int found = PCRE2_ERROR_MATCHLIMIT;
  if (target.size() <= kShortTarget) found = c.Match(c.code, target);
  if (found == PCRE2_ERROR_MATCHLIMIT) found = MatchSlowly(target);
  if (found == PCRE2_ERROR_NOMATCH) return nullptr;
  if (found < 0) throw RegExMatchLimitException("it would take too long to match");
  const PCRE2_SIZE* ends = pcre2_get_ovector_pointer(c.match);
  // A "\K" in a look-behind can move the start past the end.
  c.result = {ends[0], ends[1] > ends[0] ? ends[1] - ends[0] : 0};
  return &c.result;
}

int RegEx::MatchSlowly(std::string_view target) {
  Compiled& c = *compiled_;
  if (c.slowTime > kSlowBudget) return PCRE2_ERROR_MATCHLIMIT;
  int error = 0;
  PCRE2_SIZE offset = 0;
  if (!c.timed) c.timed = CompileWith(c.pattern, CompileOptions(Options) | PCRE2_AUTO_CALLOUT, error, offset);
  // With callouts a long pattern can be too large for PCRE2. Its error codes of compiling are positive, like
  // the result of a match, so they must not leave this function.
  if (!c.timed) return PCRE2_ERROR_MATCHLIMIT;
  const auto free = kFreePerByte * static_cast<std::int64_t>(target.size());
  const auto start = Clock::now();
  Watch watch{start + free + kSlowBudget - c.slowTime};
  pcre2_set_callout(c.context, CheckTime, &watch);
  pcre2_set_match_limit(c.context, std::numeric_limits<std::uint32_t>::max());
  const int found = c.Match(c.timed, target);
  pcre2_set_match_limit(c.context, kQuickLimit);
  pcre2_set_callout(c.context, nullptr, nullptr);
  c.slowTime += std::max(Clock::duration{}, Clock::now() - start - free);
  return found;
}
