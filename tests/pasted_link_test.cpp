// The link that a user means by what they paste, drop or hand over.

#include "app/pasted_link.h"

#include <gtest/gtest.h>

#include "app/Endpoints.h"

namespace {

const Endpoints kEndpoints;
std::string Pasted(const std::string& text) { return PastedLink(text, kEndpoints); }

}  // namespace

TEST(PastedLink, IsTheWatchPageOfWhateverNamesAVideo) {
  for (const std::string text : {
           "https://www.youtube.com/watch?v=-Qn3_tW8yLc",
           "https://www.youtube.com/watch?app=desktop&list=PLv=1&v=-Qn3_tW8yLc&t=30s#top",
           "https://www.youtube.com/watch/?feature=share&amp;v=-Qn3_tW8yLc",
           "HTTPS://M.YouTube.COM/Watch?v=-Qn3_tW8yLc",
           "//music.youtube.com/watch?v=-Qn3_tW8yLc&si=abc",
           "youtube.com/watch?v=-Qn3_tW8yLc",
           "https://youtu.be/-Qn3_tW8yLc?si=Xy_9-abcdefghijk",
           "https://youtu.be/-Qn3_tW8yLc&t=30",
           "youtu.be/-Qn3_tW8yLc#t=1m2s",
           "http://www.youtu.be/-Qn3_tW8yLc",
           "https://www.youtube.com/shorts/-Qn3_tW8yLc?feature=share",
           "https://youtube.com/live/-Qn3_tW8yLc",
           "https://www.youtube.com/embed/-Qn3_tW8yLc?start=5",
           "https://www.youtube-nocookie.com/embed/-Qn3_tW8yLc",
           "https://www.youtube.com/v/-Qn3_tW8yLc",
           "https://www.youtube.com/e/-Qn3_tW8yLc/",
           "-Qn3_tW8yLc",
           " \t-Qn3_tW8yLc\r\n",
           "Look (https://youtu.be/-Qn3_tW8yLc), it is good.",
           "first\nhttps://youtu.be/-Qn3_tW8yLc\nhttps://youtu.be/hB7rV2kQx0w",
           "<a href=\"https://www.youtube.com/watch?v=-Qn3_tW8yLc\">",
           "https://www.youtube.com/@someone then https://youtu.be/-Qn3_tW8yLc",
       })
    EXPECT_EQ(Pasted(text), "https://www.youtube.com/watch?v=-Qn3_tW8yLc") << text;
}

TEST(PastedLink, IsTheTextItselfWhereThatNamesNoVideo) {
  for (const std::string text : {
           "",
           " two words ",
           "-Qn3_tW8yL",
           "-Qn3_tW8yLcd",
           "-Qn3_tW8yL.",
           "https://www.youtube.com/watch?v=-Qn3_tW8yL",
           "https://www.youtube.com/watch?v=-Qn3_tW8yLcd",
           "https://www.youtube.com/watch?list=x v=-Qn3_tW8yLc",
           "https://www.youtube.com/watch#?v=-Qn3_tW8yLc",
           "https://www.youtube.com/@-Qn3_tW8yLc",
           "https://notyoutube.com/watch?v=-Qn3_tW8yLc",
           "https://x.youtube.com/watch?v=-Qn3_tW8yLc",
           "https://www.youtube.com.example/watch?v=-Qn3_tW8yLc",
           "https://myyoutu.be/-Qn3_tW8yLc",
           "me@youtu.be/-Qn3_tW8yLc",
           "https://host/watch?v=abc",
       })
    EXPECT_EQ(Pasted(text), text);
  std::string beginnings;
  while (beginnings.size() < 2'000'000) beginnings += "/youtube.com/watch?&";
  EXPECT_EQ(Pasted(beginnings), beginnings) << "soon";
}
