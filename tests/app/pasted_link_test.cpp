// Links found in texts that a user pastes, drops or passes on the command line.

#include "app/pasted_link.h"

#include <gtest/gtest.h>

#include "app/Endpoints.h"
#include "runtime/Text.h"

namespace {

const Endpoints kEndpoints;
const std::string kPage = "https://www.youtube.com/watch?v=-Az09_Za5Qy";
std::string Pasted(const std::string& text) { return PastedLink(text, kEndpoints); }

// Replaces CODE with a video's code.
std::vector<std::string> TextsIn(const std::string& list) {
  return Split(ReplaceAll(list, "CODE", "-Az09_Za5Qy"), "|");
}

}  // namespace

TEST(PastedLink, ATextThatNamesAVideoGivesItsWatchPage) {
  for (const std::string& text :
       TextsIn("https://www.youtube.com/watch?v=CODE|"
               "https://www.youtube.com/watch?app=desktop&list=PLv=1&v=CODE&t=30s#top|"
               "https://www.youtube.com/watch/?v=CODE|HTTPS://M.YouTube.COM/Watch?feature=share&amp;v=CODE|"
               "//music.youtube.com/watch?v=CODE&si=abc|youtube.com/watch?v=CODE|"
               "https://youtu.be/CODE?si=Xy_9-abcdefghijk|https://youtu.be/CODE&t=30|youtu.be/CODE#t=1m2s|"
               "http://www.youtu.be/CODE|https://www.youtube.com/shorts/CODE?feature=share|"
               "https://youtube.com/live/CODE|https://www.youtube.com/embed/CODE?start=5|"
               "https://www.youtube-nocookie.com/embed/CODE|https://www.youtube.com/v/CODE|"
               "https://www.youtube.com/e/CODE/|CODE| \tCODE\r\n|Look (https://youtu.be/CODE), it is good.|"
               "first\nhttps://youtu.be/CODE\nhttps://youtu.be/hB7rV2kQx0w|"
               "<a href=\"https://www.youtube.com/watch?v=CODE\">|"
               "https://www.youtube.com/@someone then https://youtu.be/CODE"))
    EXPECT_EQ(Pasted(text), kPage) << text;
}

TEST(PastedLink, ATextThatNamesNoVideoIsUnchanged) {
  for (
      const std::string& text : TextsIn(
          "| two words |-Az09_Za5Q|CODEd|-Az09_Za5Q.|https://www.youtube.com/watch?v=-Az09_Za5Q|"
          "https://www.youtube.com/watch?v=CODEd|https://www.youtube.com/watch?list=x &v=CODE|"
          "https://www.youtube.com/watch?ampsv=CODE&v_CODE|https://www.youtube.com/watch#?v=CODE|https://www.youtube.com/@CODE|"
          "https://notyoutube.com/watch?v=CODE|https://x.youtube.com/watch?v=CODE|"
          "https://www.youtube.com.example/watch?v=CODE|https://xyoutu.be/CODE|xyoutu.be/CODE|me@youtu.be/CODE|"
          "https://host/watch?v=abc"))
    EXPECT_EQ(Pasted(text), text);
  std::string beginnings;
  while (beginnings.size() < 2'000'000) beginnings += "/youtube.com/watch?&";
  EXPECT_EQ(Pasted(beginnings), beginnings) << "quickly";
}

TEST(PastedLink, TheCodeIsSoughtInTheFirst512BytesOfAQuery) {
  const std::string code = "&v=-Az09_Za5Qy", query = std::string(512 - code.size(), 'x');
  EXPECT_EQ(Pasted("youtube.com/watch?" + query + code), kPage);
  EXPECT_EQ(Pasted("youtube.com/watch?x" + query + code), "youtube.com/watch?x" + query + code);
}

TEST(PastedLink, TheHostsMayBeOthers) {
  Endpoints others;
  others.WatchPageBase = "WWWatch.Example", others.ShortLinkHost = "S.Be";
  for (const char* text :
       {"m.wwwatch.example/v/-Az09_Za5Qy", "wwwatch-nocookie.example/e/-Az09_Za5Qy", "s.be/-Az09_Za5Qy"})
    EXPECT_EQ(PastedLink(text, others), "https://WWWatch.Example/watch?v=-Az09_Za5Qy");
}
