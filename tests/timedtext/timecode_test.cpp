#include "timedtext/timecode.h"

#include <gtest/gtest.h>

#include <string>

#include "runtime/Numbers.h"
#include "support/rows.h"
#include "timedtext/TimedText.h"

// 0.125 is an exact half and rounds up. A second that rounds up to sixty carries; no result has a sign.
TEST(Timecode, SecondsGiveTwoOrThreeDecimalsAndAnyNumberOfHours) {
  const struct {
    double seconds;
    const char *plain, *three;
  } rows[] = {{0, "00:00:00.00", "00:00:00.000"},          {3.5, "00:00:03.50", "00:00:03.500"},
              {9.994, "00:00:09.99", "00:00:09.994"},      {3.126, "00:00:03.13", "00:00:03.126"},
              {0.125, "00:00:00.13", "00:00:00.125"},      {60, "00:01:00.00", "00:01:00.000"},
              {83.33, "00:01:23.33", "00:01:23.330"},      {119.99, "00:01:59.99", "00:01:59.990"},
              {3599, "00:59:59.00", "00:59:59.000"},       {3600, "01:00:00.00", "01:00:00.000"},
              {3725.5, "01:02:05.50", "01:02:05.500"},     {35999.5, "09:59:59.50", "09:59:59.500"},
              {36000, "10:00:00.00", "10:00:00.000"},      {360000, "100:00:00.00", "100:00:00.000"},
              {3661.25, "01:01:01.25", "01:01:01.250"},    {-5, "00:00:-05.00", "00:00:-05.000"},
              {-0.001, "00:00:00.00", "00:00:-00.001"},    {59.994, "00:00:59.99", "00:00:59.994"},
              {59.996, "00:01:00.00", "00:00:59.996"},     {59.9996, "00:01:00.00", "00:01:00.000"},
              {119.996, "00:02:00.00", "00:01:59.996"},    {3599.999, "01:00:00.00", "00:59:59.999"},
              {3599.9999, "01:00:00.00", "01:00:00.000"},  {35999.999, "10:00:00.00", "09:59:59.999"},
              {359999.999, "100:00:00.00", "99:59:59.999"}};
  for (const auto& row : rows) {
    EXPECT_EQ(SecsToTimecode(row.seconds), row.plain) << row.seconds;
    EXPECT_EQ(returnTimecodeSRT(row.seconds), row.three) << row.seconds;
  }
  EXPECT_EQ(returnTimecodeSRT(119.99999999999999), "00:02:00.000");
  for (const double seconds : {Val(std::string(400, '9')), 1e18, 59999999999999.99, 35999999999999996.0})
    EXPECT_EQ(SecsToTimecode(seconds).find('-'), std::string::npos) << seconds;
}

TEST(Timecode, OnlyPlainDecimalsGiveHundredths) {
  for (const auto& row :
       Rows("0~0|7~700|1.~100|1.2~120|83.33~8333|1.234~123|1.236~124|999999999.999~"
            "100000000000|1234567890~none|1.2345~none|~none|.5~none|-1~none|1x~none|1.5 ~none")) {
    const auto start = StartHundredths(row[0]), end = EndHundredths("0", row[0]);
    EXPECT_EQ(start ? Str(*start) : "none", row[1]) << row[0];
    EXPECT_EQ(end, start) << row[0];
  }
}

TEST(Timecode, ConvertsToTheCommaFormAndBackToSeconds) {
  EXPECT_EQ(ToCommaTimecode("00:01:23.33"), "00:01:23,330");
  for (const auto& row : Rows("01:02:05.50~3725.5|00:01:02,500~62|00:00:59,990~59|100:00:00.25~360000.25|00:"
                              "00:00,000~0|01:02~3720|~0|a:b:c~0"))
    EXPECT_EQ(timecodeToSecs(row[0]), row[1]) << row[0];
}

TEST(Timecode, ACueEndsAtItsStartPlusItsDuration) {
  EXPECT_EQ(CueEndSeconds({"1.5", "2"}), 3.5);
  EXPECT_EQ(CueEndSeconds({"1.5", "0"}), 1.5);
  EXPECT_EQ(CueEndSeconds({"x", "2.25"}), 2.25);
  EXPECT_EQ(CueEndSeconds({"3", "-1"}), 2);
}
