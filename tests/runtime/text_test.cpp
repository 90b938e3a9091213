// Text operations, plain file names, dictionaries and the two digests.

#include "runtime/Text.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <tuple>

#include "runtime/Dictionary.h"
#include "runtime/Digest.h"
#include "runtime/exceptions.h"
#include "support/rows.h"

namespace {

using namespace std::string_literals;
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(Text, ReplacesExactBytesAndNeverScansTheReplacement) {
  // Source, search text, replacement, and the source with the first and with every occurrence replaced.
  for (const auto& row : Rows("1,5,5~,~.~1.5,5~1.5.5|aXXb~X~XX~aXXXb~aXXXXb|aaa~aa~b~ba~ba|abc~B~x~abc~abc|"
                              "a\"/>\"/>~\"/>~\"/>:::~a\"/>:::\"/>~a\"/>:::\"/>:::|abc~~x~abc~abc|~a~x~~|"
                              "<p><p>~<p>~~<p>~|\xFD\xFF-\xFD\xFF~\xFD\xFF~\n~\n-\xFD\xFF~\n-\n|"
                              "a\0b\0c~\0~-~a-b\0c~a-b-c"s)) {
    EXPECT_EQ(Replace(row.at(0), row.at(1), row.at(2)), row.at(3)) << row[0];
    EXPECT_EQ(ReplaceAll(row[0], row[1], row[2]), row.at(4)) << row[0];
  }
}

TEST(Text, EveryLineEndingIsReplaced) {
  for (const auto& row : Rows("a\r\nb\rc\nd~ ~a b c d|\n\r\r\n\n~##~########|a\r~\r\n~a\r\n|plain~ ~plain"))
    EXPECT_EQ(ReplaceLineEndings(row[0], row[1]), row[2]);
}

TEST(Text, NDelimitersGiveNPlusOnePieces) {
  EXPECT_EQ(Split("a:b:", ":"), StringArray({"a", "b", ""}));
  EXPECT_EQ(Split("", ":"), StringArray({""}));
  EXPECT_EQ(Split("::::", "::"), StringArray({"", "", ""}));
  EXPECT_EQ(Split("a ||| b|| c", " ||| "), StringArray({"a", "b|| c"}));
  EXPECT_EQ(Split("aVbv", "v"), StringArray({"aVb", ""}));
  EXPECT_EQ(Split("a:b", ""), StringArray({"a:b"}));
  EXPECT_EQ(CreateArray(0), Split("", ":"));
  EXPECT_EQ(CreateArray(-1).size() + CreateArray(INT64_MIN).size(), 0u);
  EXPECT_THROW(CreateArray(INT64_MAX), std::bad_alloc);
}

TEST(Text, PositionsCountBytesFromOne) {
  // Start, source, search text and position; the last source has two bytes in its first character.
  const std::tuple<std::int64_t, const char*, const char*, std::int64_t> cases[] = {
      {0, "abc", "c", 3},     {1, "abcabc", "a", 1},   {2, "abcabc", "A", 4}, {0, "abc", "d", 0},
      {0, "abc", "", 0},      {0, "", "a", 0},         {9, "abc", "c", 0},    {kLeast, "abc", "c", 3},
      {kMost, "abc", "c", 0}, {0, "\xC3\xA9:", ":", 3}};
  for (const auto& [start, source, find, position] : cases)
    EXPECT_EQ(InStr(start, source, find), position) << start << " " << find;
  EXPECT_EQ(InStr(0, "\xC3\xA4", "\xC3\x84"), 0) << "only ASCII letters fold";
}

TEST(Text, CutsStayInsideTheText) {
  EXPECT_EQ(Mid("abcd", 2) + Mid("abcd", 2, 2), "bcdbc");
  for (const std::int64_t start : {kLeast, INT64_C(-1), INT64_C(0), INT64_C(1)})
    EXPECT_EQ(Mid("abcd", start) + Mid("abcd", start, 2), "abcdab") << start;
  for (const std::int64_t start : {INT64_C(5), kMost}) EXPECT_EQ(Mid("abcd", start, kMost), "") << start;
  for (const std::int64_t count : {kLeast, INT64_C(-1), INT64_C(0)})
    EXPECT_EQ(Mid("abcd", 2, count) + Left("abcd", count) + Right("abcd", count), "") << count;
  EXPECT_EQ(Left("abcd", 3) + Right("abcd", 3), "abcbcd");
  EXPECT_EQ(Left("abcd", kMost) + Right("abcd", 9), "abcdabcd");
}

TEST(Text, FieldsCountFromOneAndTrimmingRemovesWhiteSpace) {
  for (const std::int64_t n : {kLeast, std::int64_t{0}, std::int64_t{3}, kMost})
    EXPECT_EQ(NthField("a:b", ":", n), "") << n;
  EXPECT_EQ(NthField("", ":", 1), "");
  EXPECT_EQ(NthField("a:b", "", 1) + "|" + NthField("a:b", "", 2), "a:b|");
  EXPECT_EQ(NthField("abc", ":", 1), "abc");
  EXPECT_EQ(NthField("a::b", ":", 2) + NthField("a::b", "::", 2), "b");
  EXPECT_EQ(Trim(" \t\r\n\v\fa b \n"), "a b");
  EXPECT_EQ(LTrim(" \ta \t"), "a \t");
  EXPECT_EQ(Trim("") + Trim(" \n ") + LTrim("\t"), "");
  EXPECT_EQ(Trim("\0 "s), "\0"s);
}

TEST(Text, CharactersAndBytesBecomeCodesAndBack) {
  EXPECT_EQ(Chr(0) + Chr(0x7F) + Chr(0x80) + Chr(0xE9) + Chr(0x20AC) + Chr(0x1F600),
            "\0\x7F\xC2\x80\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"s);
  EXPECT_EQ(Chr(-1) + Chr(0xD800) + Chr(0xDFFF) + Chr(0x110000), "");
  EXPECT_EQ(ChrB(253) + ChrB(255) + ChrB(256), "\xFD\xFF\0"s);
  for (const std::int64_t code : {0, 65, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF})
    EXPECT_EQ(Asc(Chr(code) + "tail"), code);
  // Cut off, overlong, a surrogate, beyond the last character, a continuation byte.
  for (const char* bad : {"\xE2\x82", "\xC3(", "\xC0\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80", "\xED\xA0\x80",
                          "\xF4\x90\x80\x80", "\xFF\x80\x80\x80", "\x80"})
    EXPECT_EQ(Asc(bad), static_cast<unsigned char>(bad[0])) << Hex(static_cast<unsigned char>(bad[0]));
  EXPECT_TRUE(Asc("") == 0 && CharacterLength("") == 0);
  EXPECT_EQ(Hex(0) + " " + Hex(255) + " " + Hex(-1), "0 FF FFFFFFFFFFFFFFFF");
  EXPECT_EQ(Lowercase("A\xC3\x84Z[") + Uppercase("a\xC3\xA4z{"), "a\xC3\x84z[A\xC3\xA4Z{");
  EXPECT_TRUE(RuntimeStringCompare("a", "A") > 0 && RuntimeStringCompare("A", "a") < 0);
  EXPECT_EQ(RuntimeAddString("a", "A"), "aA");
}

TEST(Dictionary, KeepsInsertionOrderAndIgnoresTheCaseOfKeys) {
  Dictionary d({{"One"s, "1"s}, {"two"s, "2"s}, {"Three"s, std::int64_t{3}}});
  d.SetValue("TWO"s, "zwei"s);
  for (const std::string& key : {"ONE"s, "absent"s}) d.Remove(key);
  d.SetValue("one"s, "uno"s);
  d.SetValue(std::int64_t{5}, "number"s);
  d.SetValue("5"s, "text"s);
  std::string seen;
  for (std::int64_t i = 0; i < d.Count(); ++i)
    seen += ToString(d.Key(i)) + "=" + ToString(d.Value(d.Key(i))) + " ";
  EXPECT_EQ(seen, "two=zwei Three=3 one=uno 5=number 5=text ");
  EXPECT_TRUE(d.HasKey("tHREE"s) && !d.HasKey("four"s) && !d.HasKey("\xC3\x84"s));
  EXPECT_EQ(ToString(d.Lookup("four"s, "none"s)) + ToString(d.Lookup("two"s, "none"s)), "nonezwei");
  for (const std::int64_t bad : {-1, 5}) EXPECT_THROW(d.Key(bad), OutOfBoundsException);
  d.Clear();
  EXPECT_TRUE(d.Count() == 0 && !d.HasKey("two"s));
}

// Lengths around the padding, with digests from an independent program.
TEST(Digest, MD5IsRightForEveryPadding) {
  for (const auto& row : Rows("0~1B2M2Y8AsgTpgAmY7PhCfg==|55~BDZEIOJcUS/ZWKcHOKqPcg==|"
                              "56~Zopy1boX8I5i2ryvrW2xSw==|64~wbtPgdiSstV5R2gq6yUkVg==|"
                              "120~+5hmf5gJbekmILZPRuHFtQ==|1000~OYUz1IER6fZksfZMsQxLYw=="))
    EXPECT_EQ(EncodeBase64(MD5(std::string(std::stoul(row[0]), 'x')), 0), row[1]) << row[0];
}

// The test vectors of RFC 4648, and line breaks.
TEST(Digest, Base64HasThePublishedVectors) {
  for (const auto& row : Rows("~|f~Zg==|fo~Zm8=|foo~Zm9v|foob~Zm9vYg==|fooba~Zm9vYmE=|foobar~Zm9vYmFy"))
    EXPECT_EQ(EncodeBase64(row[0], 0), row[1]);
  EXPECT_EQ(EncodeBase64("\xFB\xFF\xFE\0"s, 0), "+//+AA==");
  EXPECT_EQ(EncodeBase64("foobar", 4), "Zm9v\r\nYmFy");
  EXPECT_EQ(EncodeBase64("foob", 5), "Zm9vY\r\ng==");
}

}  // namespace
