// File names made plain: nothing in them leads elsewhere or disguises them.

#include <gtest/gtest.h>

#include "runtime/Text.h"
#include "support/rows.h"

namespace {

using namespace std::string_literals;

TEST(PlainFileName, ReplacesSeparatorsControlsAndLeadingDots) {
  for (const auto& row :
       Rows("German.txt~German.txt|../../etc/passwd~___.._etc_passwd|a\\b:c\x01\x7F\n~a_b_c___|a\0b~a_b|"
            ".hidden~_.hidden|..txt~_.txt|...a.srt~___a.srt|.txt~_.txt|~_|.~_.|"
            ".a hidden name with a tail~_a hidden name with a tail"s))
    EXPECT_EQ(PlainFileName(row[0]), row[1]) << row[0];
}

TEST(PlainFileName, ReplacesInvisibleCharactersAndBytesThatAreNotUTF8) {
  // The first and the last of each range.
  const auto rows = Rows(
      "\x1F\xC2\x80\xC2\x9F\xC2\xAD\xD8\x9C\xEF\xBB\xBF~______|\xE2\x80\x8B\xE2\x80\x8F\xE2\x80\xA8~___|"
      "\xE2\x80\xAEgpj.exe~_gpj.exe|\xE2\x81\xA0\xE2\x81\xAF~__|a\xFF\xC3(\xED\xA0\x80.vtt~a__(___.vtt|"
      "\xC1\xBF \xE0\x9F\xBF \xF0\x8F\xBF\xBF~__ ___ ____|"
      "\xF4\x90\x80\x80 \xF5\x80\x80\x80 \xE2\x80~____ ____ __");
  for (const auto& row : rows) EXPECT_EQ(PlainFileName(row[0]), row[1]);
}

TEST(PlainFileName, KeepsEveryOtherCharacter) {
  for (const std::string& same :
       {" \xC2\xA0\xE2\x80\x8A\xE2\x80\x90\xE2\x80\xA7\xE2\x80\xAF\xE2\x81\x9F\xE2\x81\xB0"s,
        "\xC2\xA1\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"s,
        "日本語 (Brésil).srt"s})
    EXPECT_EQ(PlainFileName(same), same);
}

TEST(PlainFileName, CutsLongNamesAtACharacterBeforeTheExtension) {
  std::string accented;
  for (int i = 0; i < 150; ++i) accented += "\xC3\xA9";
  const std::string n(300, 'n'), fifteen = ".fifteen-letters";
  const std::pair<std::string, std::string> cuts[] = {
      {n + ".vtt", n.substr(0, 196) + ".vtt"},
      {accented + ".txt", accented.substr(0, 196) + ".txt"},
      {"x" + accented + ".txt", "x" + accented.substr(0, 194) + ".txt"},
      {n, n.substr(0, 200)},
      {"a." + n, "a." + n.substr(0, 198)},
      {n + fifteen, n.substr(0, 184) + fifteen},
      {n + ".sixteen--letters", n.substr(0, 200)}};
  for (const auto& [name, plain] : cuts) EXPECT_EQ(PlainFileName(name), plain);
}

}  // namespace
