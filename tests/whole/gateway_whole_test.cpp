// A whole session of a user: a pasted link, the list, five kinds of file, a word search and a jump into the
// video, with the program, the gateway as a process, and the real yt-dlp with a site on the loopback.

#include "gateway/Site.h"
#include "gateway/gateway_process.h"
#include "ravelyn/commands.h"
#include "support/Program.h"
#include "wordsearch/SearchWin.h"

namespace {

using namespace gateway_test;
using site_test::CodeOf;
using Lines = std::vector<std::string>;

class Whole : public testing::Test {
 protected:
  Whole()
      : gateway_("HOME=" + folder_.Path() + " XDG_CACHE_HOME=" + folder_.Path() + " exec \"$@\"",
                 {"--fetch", "--port=0", "--ytdlp-config", site_.Folder() / "yt-dlp.conf"}) {
    const std::string port = std::to_string(PortIn(Address(gateway_.ReadLine())));
    host_.prefsFolder = folder_.Path();
    app_.emplace(host_, kCommands, EndpointsAt("127.0.0.1:" + port));
    app_->Start();
    host_.calls.clear();
  }
  ~Whole() override { app_.reset(); }

  Lines Search(const std::string& video) {
    Window1& form = Window1::Get();
    form.TextField1.UserTypes("https://youtu.be/" + CodeOf(video));
    form.PushButton2.UserClicks();
    Lines names;
    for (std::int64_t row = 0; row < form.Listbox1.ListCount(); ++row)
      names.push_back(form.Listbox1.Cell(row, 0));
    return names;
  }
  // Saves the first track in the form that these boxes select, and returns the file.
  std::string Save(const std::vector<Button*>& boxes) {
    for (Button* box : boxes) box->UserClicks();
    host_.saves = {folder_ / "saved"};
    Window1::Get().PushButton1.UserClicks();
    return ReadFile(folder_ / "saved");
  }

  const site_test::Site site_;
  const TemporaryFolder folder_;
  Process gateway_;
  WaitingPlatform host_;
  std::optional<App> app_;
};

TEST_F(Whole, APastedLinkGivesFilesHitsAndAJumpIntoTheVideo) {
  EXPECT_EQ(Search("plain"), (Lines{"English", "French (automatic)", "German 'formal'"}));
  Window1& form = Window1::Get();
  form.openBox.SetValue(false);
  form.Listbox1.UserSelects({0});
  EXPECT_EQ(Save({&form.SRTBox}),
            "1\n00:00:00,500 --> 00:00:02,000\nR&D in en\n\n2\n00:00:02,000 --> 00:00:05,000\nit's done\n\n");
  EXPECT_EQ(Save({&form.WebVTTBox}),
            "WEBVTT\n\n1\n00:00:00.500 --> 00:00:02.000\nR&D in en\n\n"
            "2\n00:00:02.000 --> 00:00:05.000\nit's done\n\n");
  EXPECT_EQ(Save({&form.TextBox, &form.paragraphBox}), "R&D in en it's done ");
  EXPECT_EQ(Save({&form.lineBox}), "R&D in en\nit's done\n");
  EXPECT_EQ(Save({&form.timecodeBox}), "[00:00:00.50]\tR&D in en\n[00:00:02.00]\tit's done\n");

  form.searchField.UserTypes("it's");
  form.PushButton3.UserClicks();
  host_.calls.clear();
  SearchWin& results = SearchWin::Get();
  EXPECT_EQ(results.resultsList.Cell(0, 1), "it's done");
  results.resultsList.UserClicksCell(0, 0);
  EXPECT_EQ(host_.calls, (Lines{"browse: https://www.youtube.com/watch?v=" + CodeOf("plain") + "&t=2"}));
  EXPECT_EQ(site_.Requests("list").size(), 1u);
  EXPECT_EQ(site_.Requests("text").size(), 1u) << "six commands, one request to the site";
}

TEST_F(Whole, AVideoWithoutCaptionsShowsTheCauseBelowTheMessage) {
  EXPECT_EQ(Search("private"), Lines{});
  ASSERT_EQ(host_.calls.size(), 1u);
  EXPECT_TRUE(host_.calls[0].starts_with("message: There are no transcripts available")) << host_.calls[0];
  EXPECT_NE(host_.calls[0].find("\ncause: This video is private"), std::string::npos) << host_.calls[0];
}

}  // namespace
