// The output of yt-dlp, without running it: lists, messages and versions.

#include <gtest/gtest.h>

#include <cerrno>
#include <nlohmann/json.hpp>
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
      {R"("en":[{"ext":"srv1","url":"file:///etc/passwd"},{"ext":"srv1"},7])", "", ""},
      {"",
       R"("en-orig":[)" + Entry("srv1", "", "English (Original)") + R"(],"en":[)" +
           Entry("srv1", "", "English") + R"(],"de":[)" + Entry("srv1", "&tlang=de", "German") + "]",
       "en-orig=English (automatic)/English/srv1;"},
      {"", R"("nl":[)" + Entry("srv1") + "]", "nl=Dutch (automatic)/Nederlands/srv1;"},
      {R"("en":[)" + Entry("srv1", "", "English - by hand") + "]",
       R"("en":[)" + Entry("srv1", "", "English") + "]",
       "en=English - by hand/English/srv1;en-orig=English (automatic)/English/srv1;"},
      {R"("en":[)" + Entry("srv1", "", R"( \u0000a\u001bb\n)") + "]", "", "en=a b/English/srv1;"},
      {R"("en":[)" + Entry("srv1", "", R"(\ud83d\ude00\ud83d \\ud800\udc00)") + "]", "",
       "en=\U0001F600\uFFFD \\ud800\uFFFD/English/srv1;"},
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
  EXPECT_EQ(Shown(Read(R"("en":[)" + repeated("{},", 400'000) + Entry("srv1") + "]")),
            "en=English/English/srv1;");
  EXPECT_FALSE(Read(R"("en":[)" + repeated("[],", 600'000) + Entry("srv1") + "]")) << "too many values";
}

TEST(GatewaySiteWords, AListExpiresWithItsFirstLink) {
  const auto left = [](const std::string& query) {
    const auto list =
        Read(R"("de":[)" + Entry("srv1", "&expire=99999999999") + R"(],"en":[)" + Entry("srv1", query) + "]");
    const auto time = list->expires - std::chrono::system_clock::now();
    return std::chrono::round<std::chrono::minutes>(time).count();
  };
  const auto in = [](std::chrono::seconds time) {
    const auto when = std::chrono::system_clock::now().time_since_epoch() + time;
    return "&expire=" + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(when).count());
  };
  EXPECT_EQ(left(in(std::chrono::hours(2))), 110);
  EXPECT_EQ(left(in(std::chrono::hours(48))), 350) << "six hours at most";
  EXPECT_LT(left("&expire=0"), 0);
  for (const std::string unknown :
       {"", "&expire=", "&expire=-5", "&xexpire=5", "&expire=99999999999999999999"})
    EXPECT_EQ(left(unknown), 10) << unknown;
}

TEST(GatewaySiteWords, CommandsContainOnlyTheCodeFromOutside) {
  const std::string first = "/bin/yt-dlp|--ignore-config|",
                    config = "--config-locations|/home/user/my options|";
  const std::string both =
      "--no-update|--no-progress|--skip-download|--ignore-no-formats-error|--write-subs|--socket-timeout|10|--retries|1|";
  EXPECT_EQ(Joined(ListCommand("/bin/yt-dlp", "/home/user/my options", kCode)),
            first + config + both +
                "--no-playlist|--extractor-retries|1|--print|%(.{id,subtitles,automatic_captions})j|--|"
                "https://www.youtube.com/watch?v=Qn3_tW8-yLc|");
  EXPECT_EQ(
      Joined(TextCommand("/bin/yt-dlp", "")),
      first + both +
          "--quiet|--abort-on-error|--sub-langs|c|--sub-format|srv1/srv3/json3/vtt/srt|--paths|.|--paths|subtitle:.|-o|c.%(ext)s|--load-info-json|-|");
  const auto track = Read(R"("en":[)" + Entry("srv1", "", R"(\"]}}, ü)") + "]");
  const auto input = nlohmann::json::parse(TextInput(track->tracks[0].entry));
  EXPECT_EQ(input["subtitles"]["c"].size(), 1u);
  EXPECT_EQ(input["subtitles"]["c"][0]["name"], "\"]}}, ü");
  EXPECT_EQ(input.count("webpage_url"), 0u) << "with it, yt-dlp would list the video again";
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
      {"ERROR: [youtube] CODE: Sign in to confirm you’re not a bot. Private video\n",
       "The site wants a sign-in from this network; wait, or give yt-dlp cookies.", Effect::Pause},
      {"WARNING: [youtube] Video unavailable. This content isn't available, try again later.", kTooMany,
       Effect::Pause},
      {"Usage: yt-dlp\n\nyt-dlp: error: config location \"/nowhere\" does not exist\n",
       "yt-dlp can't read its file of options (--ytdlp-config).", Effect::None},
      {"WARNING: [youtube] unable to extract yt initial data; Confirm you are on the latest version\n", "",
       Effect::None},
      {"ERROR: [youtube] CODE: Unable to extract yt initial data; Confirm you are on the latest version\n",
       "yt-dlp doesn't understand the site; update it.", Effect::Outdated},
      {"WARNING: [youtube] Unable to download API page: HTTP Error 429: Too Many Requests\n"
       "ERROR: [youtube] CODE: Failed to extract any player response; Confirm you are on the latest version\n",
       kTooMany, Effect::Pause},
  };
  for (const auto& [messages, sentence, effect] : cases) {
    EXPECT_EQ(CauseIn(messages).sentence, sentence) << messages;
    EXPECT_EQ(CauseIn(messages).effect, effect) << messages;
  }
  EXPECT_EQ(GapIn(missing).sentence, kHeldBack);
  EXPECT_EQ(GapIn("WARNING: Private video\n").sentence, "");
}

TEST(GatewaySiteWords, EachMessageOfYtDlpGivesItsCause) {
  const std::tuple<std::string, std::string, Effect> causes[] = {
      {"not a bot|is likely being blocked|a captcha challenge",
       "The site wants a sign-in from this network; wait, or give yt-dlp cookies.", Effect::Pause},
      {"has been rate-limited by YouTube|please try again later|HTTP Error 429|Too Many Requests", kTooMany,
       Effect::Pause},
      {"Private video", "This video is private.", Effect::Verdict},
      {"Sign in to confirm your age|is age-restricted", "This video is age-restricted and needs a sign-in.",
       Effect::Verdict},
      {"is members-only|Join this channel", "This video is for members only.", Effect::Verdict},
      {"not made this video available in your country|due to geo restriction",
       "This video is not available in this country.", Effect::Verdict},
      {"Live event will begin in|Premieres in 2 hours", "This video has not begun.", Effect::Verdict},
      {"a PO token was not provided|require a PO Token", kHeldBack, Effect::Outdated},
      {"Video unavailable|This video is not available|This video has been removed|account has been terminated",
       "This video is unavailable or removed.", Effect::Unavailable},
      {"Temporary failure in name resolution|Name or service not known|Connection refused|"
       "Network is unreachable|Connection timed out|connect timeout=10.0",
       "No network: yt-dlp has no connection to the site.", Effect::None},
      {"handshake timed out", "The site took too long.", Effect::None},
      {"Remote end closed connection|Connection reset by peer|Connection aborted|Connection broken|"
       "100 bytes, expected 200|100 bytes read, 200 more expected",
       "The connection to the site broke off.", Effect::None},
      {"HTTP Error 403|HTTP Error 404|HTTP Error 410", "The site refused the request.", Effect::Relist},
      {"HTTP Error 500|HTTP Error 503", "The site is in trouble; try again later.", Effect::None},
      {"No space left on device", "The disk is full: yt-dlp can't keep the captions.", Effect::None},
      {"Extractor failed, Extraction failed|Incomplete data received|Failed to extract any player response|"
       "Unable to extract data|Confirm you are on the latest version",
       "yt-dlp doesn't understand the site; update it.", Effect::Outdated},
      {"no such option|unrecognized arguments",
       "This yt-dlp doesn't know the options that it needs; update it.", Effect::Outdated},
      {"[SSL: CERTIFICATE_VERIFY_FAILED]",
       "yt-dlp doesn't trust the connection to the site: its certificate can't be verified.", Effect::None},
      {"Unable to download subtitles for 'c': [Errno 2] No such file or directory: './c.c.srv1.part'",
       "The site took too long.", Effect::None},
      {"Did not get any data blocks", "The site sent empty captions.", Effect::Outdated},
      {"[Errno 27] File too large", "The captions are too large.", Effect::None},
  };
  for (const auto& [words, sentence, effect] : causes) {
    std::istringstream each(words);
    for (std::string word; std::getline(each, word, '|');) {
      const Cause cause = CauseIn("ERROR: [youtube] CODE: " + word + "\n");
      EXPECT_EQ(std::pair(cause.sentence, cause.effect), std::pair(sentence, effect)) << word;
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
  EXPECT_EQ(WordsWorthKeeping("a\nWARNING: w\rx\nERROR: e\nyt-dlp: error: f\nERROR: e\n"),
            "ERROR: e / yt-dlp: error: f / ERROR: e / WARNING: wx");
  EXPECT_EQ(WordsWorthKeeping("ERROR: e\nERROR: e\nz"), "ERROR: e");
  EXPECT_EQ(WordsWorthKeeping("Traceback\nlast\n\n"), "last");
  EXPECT_EQ(WordsWorthKeeping(""), "");
}

TEST(GatewaySiteWords, AnOldVersionIsAddedToAFailureOrReplacesIt) {
  const sys_days today = std::chrono::year{2026} / 11 / 23;
  const Cause verdict{"This video is private.", Effect::Verdict}, vague{"yt-dlp crashed.", Effect::Outdated};
  const Cause silent{"This video has no captions.", Effect::NoCaptions};
  const auto said = [today](const char* version, const Cause& cause) {
    return InLightOf(version, today, cause).sentence;
  };
  EXPECT_EQ(said("2023.03.04", vague), "yt-dlp 2023.03.04 is too old for the site.");
  EXPECT_EQ(said("2023.03.04", verdict), verdict.sentence) << "the site was clear";
  EXPECT_EQ(said("2023.03.04", {"Wait.", Effect::Pause}), "Wait.");
  EXPECT_EQ(said("2023.03.04", {"This video is unavailable.", Effect::Unavailable}),
            "This video is unavailable (yt-dlp 2023.03.04 is too old for the site).");
  EXPECT_EQ(said("2025.05.21", silent),
            "This video has no captions (yt-dlp 2025.05.21 is too old for the site).");
  EXPECT_EQ(InLightOf("2025.05.21", today, silent).effect, Effect::Outdated)
      << "an old release may miss captions";
  EXPECT_EQ(said("2025.05.22", vague), "yt-dlp crashed (yt-dlp 2025.05.22 is more than 90 days old).");
  EXPECT_EQ(InLightOf("2025.05.22", today, silent).effect, Effect::NoCaptions);
  EXPECT_EQ(said("2026.08.24", vague), "yt-dlp crashed (yt-dlp 2026.08.24 is more than 90 days old).");
  for (const char* fresh : {"2026.10.26", "2026.08.25", "2026.11.22.232959", "", "rubbish"})
    EXPECT_EQ(said(fresh, vague), vague.sentence);
  EXPECT_EQ(said("2023.03.04", {}), "") << "no failure";
}

}  // namespace
