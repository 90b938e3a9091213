// Links found in texts that a user pastes, drops or passes on the command line.

#include "app/pasted_link.h"

#include <gtest/gtest.h>

#include "app/Endpoints.h"
#include "runtime/Text.h"

namespace {

const Endpoints kEndpoints;
std::string Pasted(const std::string& text) { return PastedLink(text, kEndpoints); }

// Replaces CODE with a video's code.
std::vector<std::string> TextsIn(const std::string& list) {
  return Split(ReplaceAll(list, "CODE", "-Qn3_tW8yLc"), "|");
}

}  // namespace

TEST(PastedLink, ATextThatNamesAVideoGivesItsWatchPage) {
  for (const std::string& text :
       TextsIn("https://www.youtube.com/watch?v=CODE|"
               "https://www.youtube.com/watch?app=desktop&list=PLv=1&v=CODE&t=30s#top|"
               "https://www.youtube.com/watch/?feature=share&amp;v=CODE|HTTPS://M.YouTube.COM/Watch?v=CODE|"
               "//music.youtube.com/watch?v=CODE&si=abc|youtube.com/watch?v=CODE|"
               "https://youtu.be/CODE?si=Xy_9-abcdefghijk|https://youtu.be/CODE&t=30|youtu.be/CODE#t=1m2s|"
               "http://www.youtu.be/CODE|https://www.youtube.com/shorts/CODE?feature=share|"
               "https://youtube.com/live/CODE|https://www.youtube.com/embed/CODE?start=5|"
               "https://www.youtube-nocookie.com/embed/CODE|https://www.youtube.com/v/CODE|"
               "https://www.youtube.com/e/CODE/|CODE| \tCODE\r\n|Look (https://youtu.be/CODE), it is good.|"
               "first\nhttps://youtu.be/CODE\nhttps://youtu.be/hB7rV2kQx0w|"
               "<a href=\"https://www.youtube.com/watch?v=CODE\">|"
               "https://www.youtube.com/@someone then https://youtu.be/CODE"))
    EXPECT_EQ(Pasted(text), "https://www.youtube.com/watch?v=-Qn3_tW8yLc") << text;
}

TEST(PastedLink, ATextThatNamesNoVideoIsUnchanged) {
  for (const std::string& text :
       TextsIn("| two words |-Qn3_tW8yL|CODEd|-Qn3_tW8yL.|https://www.youtube.com/watch?v=-Qn3_tW8yL|"
               "https://www.youtube.com/watch?v=CODEd|https://www.youtube.com/watch?list=x v=CODE|"
               "https://www.youtube.com/watch#?v=CODE|https://www.youtube.com/@CODE|"
               "https://notyoutube.com/watch?v=CODE|https://x.youtube.com/watch?v=CODE|"
               "https://www.youtube.com.example/watch?v=CODE|https://myyoutu.be/CODE|me@youtu.be/CODE|"
               "https://host/watch?v=abc"))
    EXPECT_EQ(Pasted(text), text);
  std::string beginnings;
  while (beginnings.size() < 2'000'000) beginnings += "/youtube.com/watch?&";
  EXPECT_EQ(Pasted(beginnings), beginnings) << "quickly";
}
