// The output of yt-dlp, without running it: lists, messages and versions.

#include <gtest/gtest.h>

#include <cerrno>

#include "gateway/sources/causes.h"
#include "gateway/sources/site_list.h"
#include "gateway/sources/version.h"
#include "gateway/sources/yt_dlp.h"
#include "runtime/Text.h"
#include "support/recorded.h"

namespace {

using namespace gateway;

constexpr char kCode[] = "Qn3_tW8-yLc";

// A track's entry with other members besides its format and its URL, which ends with this query.
std::string Entry(const std::string& query = "", const std::string& others = "") {
  return R"({"ext":"srv1",)" + others + R"("url":"https://host/api/timedtext?v=x&lang=en)" + query + "\"}";
}

std::optional<SiteList> Read(const std::string& subtitles, const std::string& automatic = "") {
  return ReadSiteList(R"({"id":")" + std::string(kCode) + R"(","formats":[[[1]]],"subtitles":{)" + subtitles +
                          R"(},"automatic_captions":{)" + automatic + "}}",
                      kCode, SiteLimits{});
}

// A list with one track of this name, escaped as in JSON.
std::optional<SiteList> Named(const std::string& name) {
  return Read(R"("en":[)" + Entry("", R"("name":")" + name + "\",") + "]");
}

std::string Shown(const std::optional<SiteList>& list) {
  std::string shown;
  for (const auto& [track, format, entry] : list->tracks)
    shown += " " + track.language + "=" + track.name + "/" + track.ownName + "/" + std::string(format) + ";";
  return shown;
}

// "Pause: Too many requests to the site; try again in an hour."
std::string Judged(const Cause& cause) {
  return NthField("None|Relist|Pause|Verdict|Unavailable|NoCaptions|Outdated", "|",
                  static_cast<int>(cause.effect) + 1) +
         ": " + cause.sentence;
}

// Each paragraph of site_lists.txt has written tracks, automatic tracks and how they are listed.
TEST(GatewaySiteWords, EachTrackIsListedOnceWithAName) {
  for (const std::string& row : PartsOf("gateway/site_lists.txt", "\n\n")) {
    const std::string written = NthField(row, "\n", 1), automatic = NthField(row, "\n", 2);
    EXPECT_EQ("listed" + Shown(Read(NthField(written, "written:", 2), NthField(automatic, "automatic:", 2))),
              NthField(row, "\n", 3))
        << row;
  }
  std::string many = "x";
  while (many.size() < 201) many += "\u00E9";
  for (const auto& [name, plain] :
       {std::pair<std::string, std::string>(R"( \u0000a\u001bb\n)", "a b"),
        {R"(\ud83d\ude00\ud83d \\ud800\udc00)", "\U0001F600\uFFFD \\ud800\uFFFD"},
        {R"(\\\udc00\udc00\ud800\ue000\udbff\udfff)", "\\\uFFFD\uFFFD\uFFFD\uE000\U0010FFFF"},
        {many, many.substr(0, 199)}})
    EXPECT_EQ(Shown(Named(name)), " en=" + plain + "/English/srv1;");
  for (const std::string rubbish : {"", "{", "[]", "null", R"({"id":7})", R"({"id":"another----"})"})
    EXPECT_FALSE(ReadSiteList(rubbish, kCode, SiteLimits{})) << rubbish;
}

TEST(GatewaySiteWords, AListThatIsTooDeepOrTooLongIsRefused) {
  const auto repeated = [](const std::string& text, std::size_t count) {
    return ReplaceAll(std::string(count, 'x'), "x", text);
  };
  const auto with = [](const std::string& more) {
    return Read(R"("en":[)" + Entry("", R"("x":)" + more + ",") + "]");
  };
  for (const std::size_t depth : {28u, 29u, 1'000'000u})
    EXPECT_EQ(with(std::string(depth, '[') + std::string(depth, ']')).has_value(), depth == 28u);
  EXPECT_FALSE(with(repeated(R"({"a":)", 1'000'000) + "1" + std::string(1'000'000, '}')));
  EXPECT_TRUE(with(R"(["[\"[[)" + std::string(100, '[') + R"(\\"])"));
  constexpr std::size_t kOthers = 13;  // values of the list besides the repeated ones
  for (const std::size_t values : {1'000'000u, 1'000'001u})
    EXPECT_EQ(Read(R"("en":[)" + repeated("0,", values - kOthers) + Entry() + "]").has_value(),
              values == 1'000'000u);
}

TEST(GatewaySiteWords, AListExpiresWithItsFirstLink) {
  using std::chrono::seconds;
  const auto now = [] { return std::chrono::system_clock::now().time_since_epoch(); };
  const auto expires = [](const std::string& query) {
    return Read(R"("de":[)" + Entry("&expire=99999999999") + R"(],"en":[)" + Entry(query) + "]")
        ->expires.time_since_epoch();
  };
  const seconds inTwoHours = std::chrono::ceil<seconds>(now()) + std::chrono::hours(2);
  EXPECT_EQ(expires("&expire=" + std::to_string(inTwoHours.count()) + "&x=1"), inTwoHours - seconds(600));
  EXPECT_EQ(expires("&expire=0"), seconds(-600));
  for (const std::string query :
       {"&expire=8589934592", "", "&expire=", "&expire=-5", "&xexpire=5", "&expire=8589934593"}) {
    const seconds left(query.ends_with("4592") ? 6 * 3'600 - 600 : 600);
    const auto before = now(), expiry = expires(query) - left;
    EXPECT_TRUE(before <= expiry && expiry <= now()) << query;
  }
}

TEST(GatewaySiteWords, CommandsContainOnlyTheCodeFromOutside) {
  std::string shown;
  for (const auto& words : {ListCommand("/bin/yt-dlp", "/home/user/my options", kCode),
                            TextCommand("/bin/yt-dlp", ""),
                            {TextInput(Named(R"(\"]}}, ü)")->tracks[0].entry)}}) {
    shown += shown.empty() ? "" : "\n";
    for (const std::string& word : words) shown += word + "\n";
  }
  ExpectRecorded(shown, "gateway/commands.txt");
}

// errors.txt has messages of other releases than the one installed here, each below its cause.
TEST(GatewaySiteWords, ErrorsGiveTheCauseBeforeWarnings) {
  for (const std::string& part : PartsOf("gateway/errors.txt", "\n\n")) {
    const std::string cause = NthField(part, "\n", 1);
    EXPECT_EQ(Judged(CauseIn(ReplaceAll(part.substr(cause.size()), "[CR]", "\r"))), cause) << part;
  }
  const std::string gap =
      "WARNING: There are missing subtitles languages because a PO token was not provided.\n";
  EXPECT_EQ(Judged(GapIn(gap)), Judged(CauseIn(gap)));
  EXPECT_NE(GapIn(gap).sentence, "");
  EXPECT_EQ(Judged(GapIn("WARNING: Private video\n")), "None: ");
}

// messages.txt has each cause, and below it the words of yt-dlp that give it.
TEST(GatewaySiteWords, EachMessageOfYtDlpGivesItsCause) {
  std::string cause;
  for (std::string& line : PartsOf("gateway/messages.txt", "\n")) {
    if (!line.starts_with("  ")) {
      cause = line;
      continue;
    }
    EXPECT_EQ(Judged(CauseIn("ERROR: [youtube] CODE:" + line + " x\n")), cause) << line;
    line.pop_back();
    EXPECT_EQ(CauseIn("ERROR: [youtube] CODE:" + line + "\n").sentence, "") << "without its last letter";
  }
}

TEST(GatewaySiteWords, AChildWithoutMessagesIsJudgedByItsEnd) {
  using How = ChildEnd::How;
  const std::tuple<How, int, std::string> rows[] = {
      {How::TooLate, 0, "None: The site took too long."},
      {How::GivenUp, 0, "None: The gateway gave up before the site had answered."},
      {How::TooMuch, 0, "None: The output of yt-dlp is too long."},
      {How::Crashed, 11, "Outdated: yt-dlp crashed."},
      {How::NotStarted, ENOENT, "None: yt-dlp is not installed."},
      {How::NotStarted, ENOTDIR, "None: yt-dlp is not installed."},
      {How::NotStarted, EACCES, "None: yt-dlp can't be started."},
      {How::Exited, 0, "Outdated: yt-dlp failed; the gateway's log has its messages."}};
  for (const auto& [how, code, cause] : rows) EXPECT_EQ(Judged(CauseOf({how, code, "", ""})), cause);
  EXPECT_EQ(LinesToLog("a\nWARNING: w\rx\nERROR: e\nyt-dlp: error: f\nERROR: e\n"),
            "ERROR: e / yt-dlp: error: f / ERROR: e / WARNING: wx");
  EXPECT_EQ(LinesToLog("ERROR: e\nERROR: e\nz"), "ERROR: e");
  EXPECT_EQ(LinesToLog("Traceback\nlast\n\n"), "last");
  EXPECT_EQ(LinesToLog(""), "");
}

TEST(GatewaySiteWords, AnOldVersionIsAddedToAFailureOrReplacesIt) {
  const Cause vague{"Crashed.", Effect::Outdated}, silent{"No captions.", Effect::NoCaptions};
  const std::string tooOld = "2023.03.04";
  const std::tuple<std::string, Cause, std::string> rows[] = {
      {tooOld, vague, "Outdated: yt-dlp 2023.03.04 is too old for the site."},
      {tooOld, {"Private.", Effect::Verdict}, "Verdict: Private."},
      {tooOld, {"Wait.", Effect::Pause}, "Pause: Wait."},
      {tooOld,
       {"Gone.", Effect::Unavailable},
       "Unavailable: Gone (yt-dlp 2023.03.04 is too old for the site)."},
      {"2025.05.21", silent, "Outdated: No captions (yt-dlp 2025.05.21 is too old for the site)."},
      {"2025.05.22", silent, "NoCaptions: No captions (yt-dlp 2025.05.22 is more than 90 days old)."},
      {"2025.05.22", vague, "Outdated: Crashed (yt-dlp 2025.05.22 is more than 90 days old)."},
      {"2026.08.24", vague, "Outdated: Crashed (yt-dlp 2026.08.24 is more than 90 days old)."},
      {"2026.08.25", vague, "Outdated: Crashed."},
      {"2026.11.22.232959", vague, "Outdated: Crashed."},
      {"rubbish", vague, "Outdated: Crashed."},
      {tooOld, {}, "None: "}};
  for (const auto& [version, cause, shown] : rows)
    EXPECT_EQ(Judged(WithDoubtAbout(version, std::chrono::year{2026} / 11 / 23, cause)), shown) << version;
}

TEST(GatewaySiteWords, AVersionIsADateWithDigitsAndDots) {
  const std::string longest = "2026.10.26." + std::string(21, '1');
  for (const std::string& version : Split("2026.10.26|2026.10.26.232959|" + longest, "|"))
    EXPECT_TRUE(IsVersion(version)) << version;
  for (const std::string& other :
       Split("2023.3.4|2026.10.261|2026.10.26.x|2026.1.026|20261.0.26|2.26.10.26||" + longest + "1", "|"))
    EXPECT_FALSE(IsVersion(other)) << other;
}

}  // namespace
