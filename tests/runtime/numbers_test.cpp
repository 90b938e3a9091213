// Numbers and their decimal text, and random numbers.

#include "runtime/Numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "runtime/Random.h"
#include "support/TemporaryFolder.h"
#include "support/rows.h"

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

TEST(Numbers, ValReadsANumberAtTheVeryStartOnly) {
  for (const auto& row :
       Rows("~0|12.5 s~12.5|-3~-3|+3.25x~3.25|.5~0.5|5.~5|-.25~-0.25|.~0|-~0|-.~0|+-1~0| 1~0|\t1~0|1e3~1|"
            "0x10~0|inf~0|nan~0|1,5~1|1.2.3~1.2|007~7|1_000~1|abc~0|--1~0|1 000~1"))
    EXPECT_EQ(Val(row[0]), std::stod(row[1])) << row[0];
  EXPECT_EQ(CDbl(std::string_view("1234").substr(0, 2)), 12);
  EXPECT_EQ(Val(std::string(400, '9')), kLargest);
  EXPECT_EQ(Val("-1" + std::string(400, '0') + ".5"), -kLargest);
  EXPECT_EQ(Val("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(Val(std::string(400, '0') + "2"), 2);
  EXPECT_EQ(Val("1." + std::string(100000, '3')), 4.0 / 3);
}

TEST(Numbers, StrGivesFifteenDigitsWithoutAnExponent) {
  for (const char* same : {"0", "60", "12", "3.5", "-0.1", "0.0000001", "59.996"})
    EXPECT_EQ(Str(Val(same)), same);
  EXPECT_EQ(Str(-0.0) + " " + Str(1.0 / 3) + " " + Str(0.1 + 0.2), "0 0.333333333333333 0.3");
  EXPECT_EQ(Str(345.98 + 5.475) + " " + Str(-99999.9999999999999), "351.455 -100000");
  EXPECT_EQ(Str(999999999999999.9) + " " + Str(1234567890123456789.0),
            "1000000000000000 1234567890123460000");
  EXPECT_EQ(Str(1e21), "1" + std::string(21, '0'));
  EXPECT_EQ(Str(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(Str(-7) + " " + Str(std::nan("")), "-7 0");
  EXPECT_EQ(Str(-std::numeric_limits<double>::infinity()), "-179769313486232" + std::string(294, '0'));
  EXPECT_EQ(Str(kSmallest), "0." + std::string(323, '0') + "494065645841247");
}

TEST(Numbers, FormatRoundsTheExactDoubleHalfAwayFromZero) {
  for (const auto& row : Rows(
           "7~00~07|123~00~123|7.5~00.000~07.500|0.125~0.00~0.13|-0.125~0.00~-0.13|2.5~0~3|3.5~0~4|-2.5~0~-3|"
           "0.5~0~1|1.005~0.00~1.00|0.375~0.00~0.38|0.375~0.0~0.4|59.996~00.00~60.00|9.995~00.00~09.99|"
           "-7~00~-07|-0.001~0.00~0.00|-0.0~00~00|0~00.00~00.00|0.999~0~1|12~000000~000012|1~0.0~1.0|"
           "0.0005~0.000~0.001|0.0625~0.000~0.063"))
    EXPECT_EQ(Format(Val(row[0]), row[1]), row[2]) << row[0] << " " << row[1];
  EXPECT_EQ(Format(2251799813685248.5, "0"), "2251799813685249");
  EXPECT_EQ(Format(1e22, "0"), "1" + std::string(22, '0'));
  EXPECT_EQ(Format(kLargest, "00.00").size(), 312u);
  EXPECT_EQ(Format(kSmallest, "0.000") + Format(std::nan(""), "00"), "0.00000");
  EXPECT_EQ(Format(2, "0." + std::string(99, '0')), "2." + std::string(40, '0'))
      << "at most forty decimal places";
}

TEST(Numbers, ToIntegerTruncatesAndSaturates) {
  const std::pair<double, std::int64_t> cases[] = {{2.9, 2},
                                                   {-2.9, -2},
                                                   {std::nan(""), 0},
                                                   {9223372036854774784.0, 9223372036854774784},
                                                   {9223372036854775808.0, INT64_MAX},
                                                   {HUGE_VAL, INT64_MAX},
                                                   {-1e300, INT64_MIN}};
  for (const auto& [value, whole] : cases) EXPECT_EQ(ToInteger(value), whole);
  EXPECT_TRUE(Floor(-0.5) == -1 && Floor(12.99) == 12);
}

TEST(Random, TwoGeneratorsHaveDifferentSeeds) {
  Random first, second;
  EXPECT_NE(first.InRange(0, INT64_MAX), second.InRange(0, INT64_MAX));
}

// Compiles its own locale: not every machine has one with a decimal comma.
TEST(Numbers, IgnoreTheLocale) {
  const TemporaryFolder folder;
  WriteFile(folder / "source",
            "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3\nEND LC_NUMERIC\n");
  WriteFile(folder / "ascii", "<code_set_name> ASCII\nCHARMAP\n<U0000>..<U007F> /x00\nEND CHARMAP\n");
  // localedef complains about the missing categories and compiles the one that is there.
  const std::string make = "localedef -c -i '" + (folder / "source") + "' -f '" + (folder / "ascii") + "' '" +
                           (folder / "comma") + "' 2> '" + (folder / "complaints") + "'";
  static_cast<void>(std::system(make.c_str()));
  ::setenv("LOCPATH", folder.Path().c_str(), 1);
  ASSERT_NE(std::setlocale(LC_ALL, "comma"), nullptr) << ReadFile(folder / "complaints");
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  EXPECT_EQ(Val("1.5"), 1.5);
  EXPECT_EQ(Str(1.5) + Format(1234.5, "0.00"), "1.51234.50");
  std::setlocale(LC_ALL, "C");
  ::unsetenv("LOCPATH");
}

}  // namespace
