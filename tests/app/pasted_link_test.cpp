// Links found in texts that a user pastes, drops or passes on the command line.

#include "app/pasted_link.h"

#include <gtest/gtest.h>

#include "app/Endpoints.h"
#include "runtime/Text.h"
#include "support/recorded.h"

namespace {

const Endpoints kEndpoints;
const std::string kPage = "https://www.youtube.com/watch?v=-Az09_Za5Qy";
std::string Pasted(const std::string& text) { return PastedLink(text, kEndpoints); }

// links.txt has texts that name the video CODE and then, after an empty line, texts that name none.
StringArray Texts(std::size_t paragraph) {
  return Split(ReplaceAll(PartsOf("app/links.txt", "\n\n").at(paragraph), "CODE", "-Az09_Za5Qy"), "\n");
}

}  // namespace

TEST(PastedLink, ATextThatNamesAVideoGivesItsWatchPage) {
  for (const std::string& text : Texts(0)) {
    for (const std::string& around : {text, " \t" + text + "\r\n"})
      EXPECT_EQ(Pasted(around), kPage) << around;
  }
  EXPECT_EQ(Pasted("first\nyoutu.be/-Az09_Za5Qy\nyoutu.be/hB7rV2kQx0w"), kPage);
}

TEST(PastedLink, ATextThatNamesNoVideoIsUnchanged) {
  for (const std::string& text : Texts(1)) {
    for (const std::string& around : {text, " " + text + " "}) EXPECT_EQ(Pasted(around), around);
  }
  EXPECT_EQ(Pasted(""), "");
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
