// The output of yt-dlp, without running it: lists, messages and versions.

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>

#include "gateway/sources/causes.h"
#include "gateway/sources/site_list.h"
#include "gateway/sources/version.h"
#include "gateway/sources/yt_dlp.h"

namespace {

using namespace gateway;
using std::chrono::sys_days;

constexpr char kCode[] = "Qn3_tW8-yLc";

std::string Entry(const std::string& format, const std::string& query = "", const std::string& name = "") {
  return R"({"ext":")" + format + R"(","url":"https://host/api/timedtext?v=x&lang=en)" + query + "\"" +
         (name.empty() ? "" : R"(,"name":")" + name + "\"") + "}";
}

std::optional<SiteList> Read(const std::string& subtitles, const std::string& automatic = "") {
  return ReadSiteList(R"({"id":")" + std::string(kCode) + R"(","formats":[[[1]]],"subtitles":{)" + subtitles +
                          R"(},"automatic_captions":{)" + automatic + "}}",
                      kCode, SiteLimits{});
}

std::string Shown(const std::optional<SiteList>& list) {
  std::string shown;
  for (const SiteTrack& track : list->tracks)
    shown += track.track.language + "=" + track.track.name + "/" + track.track.ownName + "/" +
             std::string(track.format) + ";";
  return shown;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) joined += word + "|";
  return joined;
}

TEST(GatewaySiteWords, EachTrackIsListedOnceWithAName) {
  const std::string cases[][3] = {
      {"", "", ""},
      {R"("en":[)" + Entry("json3", "", "English") + "," + Entry("srv1", "", "English") + "]", "",
       "en=English/English/srv1;"},
      {R"("pt-BR":[)" + Entry("vtt") + "," + Entry("srv3") + "]", "",
       "pt-BR=Portuguese (Brazil)/português (Brasil)/srv3;"},
      {R"("live_chat":[)" + Entry("json") + R"(],"a b":[)" + Entry("srv1") + R"(],"":[)" + Entry("srv1") +
           R"(],"de":7)",
       "", ""},
      {R"("en":[{"ext":"srv1","url":"file:///etc/passwd"},{"ext":"srv1"},7,)"
       R"({"ext":"srv1","url":"http:/host"},{"ext":"srv1","url":"https:/host"}])",
       "", ""},
      {R"("en":[{"ext":"srv1","url":"http://host"}])", "", "en=English/English/srv1;"},
      {"",
       R"("en-orig":[)" + Entry("srv1", "", "English (Original)") + R"(],"en":[)" + Entry("srv1") +
           R"(],"de":[)" + Entry("srv1", "&tlang=de", "German") + "]",
       "en-orig=English (automatic)/English/srv1;"},
      {"", R"("nl":[)" + Entry("srv1") + "]", "nl=Dutch (automatic)/Nederlands/srv1;"},
      {R"("en":[)" + Entry("srv1", "", "English - by hand") + "]",
       R"("en":[)" + Entry("srv1", "", "English (auto-generated)") + "]",
       "en=English - by hand/English/srv1;en-orig=English (automatic)/English/srv1;"},
      {R"("en":[)" + Entry("srv1", "", R"( \u0000a\u001bb\n)") + "]", "", "en=a b/English/srv1;"},
      {R"("en":[)" + Entry("srv1", "", R"(\ud83d\ude00\ud83d \\ud800\udc00)") + "]", "",
       "en=\U0001F600\uFFFD \\ud800\uFFFD/English/srv1;"},
      {R"("en":[)" + Entry("srv1", "", R"(\\\udc00\udc00\ud800\ue000\udbff\udfff)") + "]", "",
       "en=\\\uFFFD\uFFFD\uFFFD\uE000\U0010FFFF/English/srv1;"},
  };
  for (const auto& [subtitles, automatic, shown] : cases)
    EXPECT_EQ(Shown(Read(subtitles, automatic)), shown) << subtitles;
  const std::string e = "\u00E9";
  std::string many;
  while (many.size() < 201) many += e;
  EXPECT_EQ(Shown(Read(R"("en":[)" + Entry("srv1", "", "x" + many) + "]")),
            "en=x" + many.substr(0, 198) + "/English/srv1;");
  for (const std::string rubbish : {"", "{", "[]", "null", R"({"id":7})", R"({"id":"another----"})"})
    EXPECT_FALSE(ReadSiteList(rubbish, kCode, SiteLimits{})) << rubbish;
}

TEST(GatewaySiteWords, AListThatIsTooDeepOrTooLongIsRefused) {
  const auto repeated = [](const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
  };
  const auto with = [](const std::string& more) {
    std::string entry = Entry("srv1");
    entry.insert(1, R"("x":)" + more + ",");
    return Read(R"("en":[)" + entry + "]");
  };
  EXPECT_TRUE(with(repeated("[", 28) + repeated("]", 28)));
  for (const std::size_t depth : {29u, 1'000'000u})
    EXPECT_FALSE(with(repeated("[", depth) + repeated("]", depth)));
  EXPECT_FALSE(with(repeated(R"({"a":)", 1'000'000) + "1" + repeated("}", 1'000'000)));
  EXPECT_EQ(Shown(with(R"(["[\"[[)" + repeated("[", 100) + R"(\\"])")), "en=English/English/srv1;");
  constexpr std::size_t kOthers = 13;  // values of the list besides the repeated ones
  for (const std::size_t values : {1'000'000u, 1'000'001u})
    EXPECT_EQ(Read(R"("en":[)" + repeated("0,", values - kOthers) + Entry("srv1") + "]").has_value(),
              values == 1'000'000u);
}

TEST(GatewaySiteWords, AListExpiresWithItsFirstLink) {
  using std::chrono::seconds;
  const auto now = [] { return std::chrono::system_clock::now().time_since_epoch(); };
  const auto expires = [](const std::string& query) {
    return Read(R"("de":[)" + Entry("srv1", "&expire=99999999999") + R"(],"en":[)" + Entry("srv1", query) +
                "]")
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
  const std::string common =
      "--no-update|--no-progress|--skip-download|--ignore-no-formats-error|--write-subs|--socket-timeout|10|--retries|1|";
  EXPECT_EQ(Joined(ListCommand("/bin/yt-dlp", "/home/user/my options", kCode)),
            "/bin/yt-dlp|--ignore-config|--config-locations|/home/user/my options|" + common +
                "--no-playlist|--extractor-retries|1|--print|%(.{id,subtitles,automatic_captions})j|--|"
                "https://www.youtube.com/watch?v=Qn3_tW8-yLc|");
  EXPECT_EQ(
      Joined(TextCommand("/bin/yt-dlp", "")),
      "/bin/yt-dlp|--ignore-config|" + common +
          "--quiet|--abort-on-error|--sub-langs|c|--sub-format|srv1/srv3/json3/vtt/srt|--paths|.|--paths|subtitle:.|-o|c.%(ext)s|--load-info-json|-|");
  const auto track = Read(R"("en":[)" + Entry("srv1", "", R"(\"]}}, ü)") + "]");
  EXPECT_EQ(TextInput(track->tracks[0].entry),
            R"({"id":"c","title":"c","subtitles":{"c":[{"ext":"srv1","name":"\"]}}, \u00fc",)"
            R"("url":"https://host/api/timedtext?v=x&lang=en"}]}})");
}

const std::string kHeldBack =
    "The site holds captions back from yt-dlp; update yt-dlp or add a token plugin.";
const std::string kTooMany = "Too many requests to the site; try again in an hour.";

// Messages of other releases than the one installed here.
TEST(GatewaySiteWords, ErrorsGiveTheCauseBeforeWarnings) {
  const std::string missing =
      "WARNING: [youtube] CODE: There are missing subtitles languages because a PO token was not provided. Subtitles for these languages are missing: en.\n";
  const struct {
    std::string messages, sentence;
    Effect effect;
  } cases[] = {
      {"", "", Effect::None},
      {"Private video\n", "", Effect::None},
      {missing, kHeldBack, Effect::Outdated},
      {"WARNING: Private video\n" + missing + "ERROR: \r[download] Got error: HTTP Error 429\n", kTooMany,
       Effect::Pause},
      {"WARNING: [youtube] Video unavailable. This content isn't available, try again later.", kTooMany,
       Effect::Pause},
      {"Usage: yt-dlp\n\nyt-dlp: error: config location \"/nowhere\" does not exist\n",
       "yt-dlp can't read its file of options (--ytdlp-config).", Effect::None},
      {"WARNING: [youtube] unable to extract yt initial data; Confirm you are on the latest version\n", "",
       Effect::None},
      {"ERRORS: Private video\nWARNINGS: Private video\nyt-dlp: error:Private video\nERROR: aptcha challenge\n",
       "", Effect::None},
      {"WARNING: [youtube] Unable to download API page: HTTP Error 429: Too Many Requests\n"
       "ERROR: [youtube] CODE: Failed to extract any player response; Confirm you are on the latest version\n",
       kTooMany, Effect::Pause},
  };
  for (const auto& [messages, sentence, effect] : cases) {
    const Cause cause = CauseIn(messages);
    EXPECT_EQ(std::pair(cause.sentence, cause.effect), std::pair(sentence, effect)) << messages;
  }
  EXPECT_EQ(GapIn(missing).sentence, kHeldBack);
  EXPECT_EQ(GapIn("WARNING: Private video\n").sentence, "");
}

TEST(GatewaySiteWords, EachMessageOfYtDlpGivesItsCause) {
  const std::tuple<std::string, std::string, Effect> causes[] = {
      {"not a bot|is likely being blocked|a captcha challenge",
       "The site wants a sign-in from this network; wait, or give yt-dlp cookies.", Effect::Pause},
      {"has been rate-limited by|please try again later|HTTP Error 429|Too Many Requests", kTooMany,
       Effect::Pause},
      {"Private video", "This video is private.", Effect::Verdict},
      {"Sign in to confirm your age|is age-restricted", "This video is age-restricted and needs a sign-in.",
       Effect::Verdict},
      {"is members-only|Join this channel", "This video is for members only.", Effect::Verdict},
      {"not made this video available in your country|due to geo restriction",
       "This video is not available in this country.", Effect::Verdict},
      {"Live event will begin in|Premieres in", "This video has not begun.", Effect::Verdict},
      {"a PO token was not provided|require a PO Token", kHeldBack, Effect::Outdated},
      {"Video unavailable|This video is not available|This video has been removed|account has been terminated",
       "This video is unavailable or removed.", Effect::Unavailable},
      {"Temporary failure in name resolution|Name or service not known|Connection refused|"
       "Network is unreachable|Connection timed out|connect timeout",
       "No network: yt-dlp has no connection to the site.", Effect::None},
      {"handshake timed out|Unable to download subtitles for 'c': No such file or directory: './c.c.",
       "The site took too long.", Effect::None},
      {"Remote end closed|Connection reset|Connection aborted|Connection broken|100 bytes, expected|100 bytes read",
       "The connection to the site broke off.", Effect::None},
      {"HTTP Error 403|HTTP Error 404|HTTP Error 410", "The site refused the request.", Effect::Relist},
      {"HTTP Error 5", "The site is in trouble; try again later.", Effect::None},
      {"No space left", "The disk is full: yt-dlp can't keep the captions.", Effect::None},
      {"Extraction failed|Incomplete data received|Failed to extract any player|Unable to extract|"
       "Confirm you are on the latest version",
       "yt-dlp doesn't understand the site; update it.", Effect::Outdated},
      {"no such option|unrecognized arguments",
       "This yt-dlp doesn't know the options that it needs; update it.", Effect::Outdated},
      {"[SSL: CERTIFICATE_VERIFY",
       "yt-dlp doesn't trust the connection to the site: its certificate can't be verified.", Effect::None},
      {"error: config location", "yt-dlp can't read its file of options (--ytdlp-config).", Effect::None},
      {"Did not get any data blocks", "The site sent empty captions.", Effect::Outdated},
      {"[Errno 27] File too large", "The captions are too large.", Effect::None},
  };
  for (const auto& [words, sentence, effect] : causes) {
    std::istringstream each(words);
    for (std::string word; std::getline(each, word, '|');) {
      const Cause cause = CauseIn("ERROR: [youtube] CODE: " + word + " x\n");
      EXPECT_EQ(std::pair(cause.sentence, cause.effect), std::pair(sentence, effect)) << word;
      word.pop_back();
      EXPECT_EQ(CauseIn("ERROR: [youtube] CODE: " + word + "\n").sentence, "") << "without its last letter";
    }
  }
}

TEST(GatewaySiteWords, AChildWithoutMessagesIsJudgedByItsEnd) {
  using How = ChildEnd::How;
  const struct {
    How how;
    int code;
    const char* sentence;
  } rows[] = {{How::TooLate, 0, "The site took too long."},
              {How::GivenUp, 0, "The gateway gave up before the site had answered."},
              {How::TooMuch, 0, "The output of yt-dlp is too long."},
              {How::Crashed, 11, "yt-dlp crashed."},
              {How::NotStarted, ENOENT, "yt-dlp is not installed."},
              {How::NotStarted, ENOTDIR, "yt-dlp is not installed."},
              {How::NotStarted, EACCES, "yt-dlp can't be started."},
              {How::Exited, 0, "yt-dlp failed; the gateway's log has its messages."}};
  for (const auto& [how, code, sentence] : rows) {
    const Cause cause = CauseOf({how, code, "", ""});
    EXPECT_EQ(cause.sentence, sentence);
    EXPECT_EQ(cause.effect == Effect::Outdated, how == How::Crashed || how == How::Exited) << sentence;
  }
  EXPECT_EQ(LinesToLog("a\nWARNING: w\rx\nERROR: e\nyt-dlp: error: f\nERROR: e\n"),
            "ERROR: e / yt-dlp: error: f / ERROR: e / WARNING: wx");
  EXPECT_EQ(LinesToLog("ERROR: e\nERROR: e\nz"), "ERROR: e");
  EXPECT_EQ(LinesToLog("Traceback\nlast\n\n"), "last");
  EXPECT_EQ(LinesToLog(""), "");
}

TEST(GatewaySiteWords, AnOldVersionIsAddedToAFailureOrReplacesIt) {
  const sys_days today = std::chrono::year{2026} / 11 / 23;
  const Cause verdict{"This video is private.", Effect::Verdict}, vague{"yt-dlp crashed.", Effect::Outdated};
  const Cause silent{"This video has no captions.", Effect::NoCaptions};
  const auto said = [today](const char* version, const Cause& cause) {
    return WithDoubtAbout(version, today, cause).sentence;
  };
  EXPECT_EQ(said("2023.03.04", vague), "yt-dlp 2023.03.04 is too old for the site.");
  EXPECT_EQ(said("2023.03.04", verdict), verdict.sentence) << "the site was clear";
  EXPECT_EQ(said("2023.03.04", {"Wait.", Effect::Pause}), "Wait.");
  EXPECT_EQ(said("2023.03.04", {"This video is unavailable.", Effect::Unavailable}),
            "This video is unavailable (yt-dlp 2023.03.04 is too old for the site).");
  EXPECT_EQ(said("2025.05.21", silent),
            "This video has no captions (yt-dlp 2025.05.21 is too old for the site).");
  EXPECT_EQ(WithDoubtAbout("2025.05.21", today, silent).effect, Effect::Outdated)
      << "an old release may miss captions";
  EXPECT_EQ(said("2025.05.22", vague), "yt-dlp crashed (yt-dlp 2025.05.22 is more than 90 days old).");
  EXPECT_EQ(WithDoubtAbout("2025.05.22", today, silent).effect, Effect::NoCaptions);
  EXPECT_EQ(said("2026.08.24", vague), "yt-dlp crashed (yt-dlp 2026.08.24 is more than 90 days old).");
  for (const char* fresh : {"2026.10.26", "2026.08.25", "2026.11.22.232959", "", "rubbish"})
    EXPECT_EQ(said(fresh, vague), vague.sentence);
  EXPECT_EQ(said("2023.03.04", {}), "") << "no failure";
}

TEST(GatewaySiteWords, AVersionIsADateWithDigitsAndDots) {
  const std::string longest = "2026.10.26." + std::string(21, '1');
  for (const std::string& version : {std::string("2026.10.26"), std::string("2026.10.26.232959"), longest})
    EXPECT_TRUE(IsVersion(version)) << version;
  for (const std::string& other :
       {longest + "1", std::string("2023.3.4"), std::string("2026.10.261"), std::string("2026.10.26.x"),
        std::string("2026.1.026"), std::string("20261.0.26"), std::string("2.26.10.26")})
    EXPECT_FALSE(IsVersion(other)) << other;
}

}  // namespace
