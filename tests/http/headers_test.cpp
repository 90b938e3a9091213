// The collection of header lines, and the search for their end.

#include "http/InternetHeaders.h"

#include <gtest/gtest.h>

#include <functional>

#include "http/HTTPSocket.h"
#include "http/HeaderEnd.h"
#include "runtime/Text.h"
#include "support/FakePlatform.h"
#include "support/clocks.h"
#include "support/rows.h"

namespace {

InternetHeaders Made(std::string_view lines) {
  InternetHeaders headers;
  for (const auto& line : Rows(lines)) headers.AppendHeader(line[0], line[1]);
  return headers;
}

TEST(Headers, KeepRepeatedNamesApart) {
  const InternetHeaders h = Made("X~a|x~b|X~c|Y~");
  EXPECT_EQ(h.NameCount("x"), 3);
  EXPECT_EQ(h.Count(), 4);
  EXPECT_EQ(h.Name(0) + h.Name(1) + h.Name(2) + h.Name(3), "XxXY");
  EXPECT_EQ(h.Value("X", 2) + h.Value("X", -1) + h.Value("X", 0) + h.Value("x"), "caaa");
  EXPECT_EQ(h.Value("X", 3) + h.Value("Z") + h.Value(99) + h.Value(-1) + h.Name(4) + h.Name(-1), "");
  EXPECT_EQ(h.CommaSeparatedValues("X"), "a, b, c");
  EXPECT_EQ(h.CommaSeparatedValues("Z") + h.CommaSeparatedValues("Y"), "");
  EXPECT_TRUE(h._HasHeader("x:1") && h._HasHeader("X:2") && !h._HasHeader("X:3") && !h._HasHeader("X:0"));
}

TEST(Headers, DeletingRenumbersTheLaterOnes) {
  for (const auto& [index, left] :
       {std::pair(0, "b, c"), {1, "a, c"}, {2, "a, b"}, {3, "a, b, c"}, {-1, "a, b, c"}}) {
    InternetHeaders h = Made("X~a|X~b|Y~y|X~c");
    h.Delete("x", index);
    EXPECT_EQ(h.CommaSeparatedValues("X") + h.CommaSeparatedValues("Y"), std::string(left) + "y") << index;
  }
  InternetHeaders h = Made("X~a|Y~y|X~b");
  h.Delete("Z");
  h.Delete("Z", 0);
  h.Delete("x");
  EXPECT_EQ(h._FormatHTTPHeaders(), "Y: y");
  h.AppendHeader("X", "new");
  EXPECT_EQ(h.CommaSeparatedValues("X"), "new");
}

TEST(Headers, SettingReplacesAllValuesOrSetsOneByIndex) {
  InternetHeaders h = Made("X~a|X~b");
  h.SetHeader("X", "v");
  EXPECT_EQ(h._FormatHTTPHeaders(), "X: v");
  EXPECT_EQ(h.CommaSeparatedValues("X"), "v");
  h.SetHeader("X", "w", 5);
  EXPECT_EQ(h.CommaSeparatedValues("x"), "v, w") << "a free index becomes the next one";
  h.SetHeader("X", "u", 1);
  h.SetHeader("X", "t", 0);
  EXPECT_EQ(h.CommaSeparatedValues("X"), "t, u");
  h.SetHeader("N", "n", 3);
  EXPECT_EQ(h._FormatHTTPHeaders(), "X: t\r\nX: u\r\nN: n");
}

TEST(Headers, AreParsedWithEveryLineEnd) {
  InternetHeaders h;
  for (const std::string eol : {"\r\n", "\n", "\r"}) {
    const std::string text = ReplaceAll(
        "HTTP/1.0 200 OK|Content-Length: 12|Subject: a| b|To:c|\td|X-Time: \t10:20|:bare|Empty:|", "|", eol);
    h._ParseHeaders(text);
    EXPECT_EQ(h._FormatHTTPHeaders(),
              "Content-Length: 12\r\nSubject: a b\r\nTo: c d\r\nX-Time: 10:20\r\n: bare\r\nEmpty: ");
    EXPECT_EQ(h.Source(), text);
  }
  h._ParseHeaders("A: 1\nB: 2\r\nC: 3");
  EXPECT_EQ(h.Value("a"), "1\nB: 2") << "CR LF takes precedence over LF";
  h._ParseHeaders("");
  EXPECT_EQ(h.Count(), 0);
}

TEST(Headers, TheMailFormHasAFixedOrderAndNoBCC) {
  EXPECT_EQ(
      Made("X-A~1|to~t1|BCC~secret|bcc~secret|CC~c|From~f|Subject~s|To~t2|Received~r1|Date~d|Received~r2|"
           "Return-path~p|X-A~2|o~3")
          ._FormatEmailHeaders(),
      "Return-Path: p\r\nReceived: r1\r\nReceived: r2\r\nDate: d\r\nSubject: s\r\nFrom: f\r\n"
      "To: t1, t2\r\nCC: c\r\nX-A: 1\r\nX-A: 2\r\no: 3");
  EXPECT_EQ(InternetHeaders()._FormatEmailHeaders(), "");
}

TEST(Headers, EveryLoopYieldsAtEachItem) {
  FakePlatform host;
  const Application app(host);
  InternetHeaders h = Made("Received~1|Received~2|To~3|X~4|Received~5");
  const std::pair<std::function<void()>, int> loops[] = {
      {[&] { h._FormatHTTPHeaders(); }, 5},
      {[&] { h._FormatEmailHeaders(); }, 3 + 1 + 5},
      {[&] { h.CommaSeparatedValues("received"); }, 3},
      {[&] { h.Delete("Received", 0); }, 2},
      {[&] { h.Delete("Received"); }, 2},
      {[&] { h._ParseHeaders("A: 1\nB: 2\nC: 3"); }, 3},
      {[] { HTTPSocket::_CreateNonce(); }, 25},
      {[] { HTTPSocket::_EncodeHex("four"); }, 4},
      {[] { HTTPSocket()._ParseAuthenticationParams("a=1, b=2"); }, 2},
  };
  for (const auto& [run, passes] : loops) {
    host.yields = 0;
    run();
    EXPECT_EQ(host.yields, passes);
  }
}

// Searching a quarter of a megabyte from its start after each byte would read 32,000 megabytes.
TEST(Headers, ManyHeadersAndManyPiecesTakeLinearTime) {
  const double start = ProcessorSeconds();
  std::string text;
  while (text.size() < 1 << 20) text += "a:1\r\n";
  InternetHeaders h;
  h._ParseHeaders(text);
  EXPECT_EQ(h.NameCount("A"), 209716);
  h.Delete("A", 0);
  EXPECT_EQ(h._FormatHTTPHeaders().size(), 209715u * 6 - 2);
  h.Delete("a");
  EXPECT_EQ(h.Count(), 0);
  const std::string head = std::string(1 << 18, 'a') + "\r\n\r\n";
  HeaderEnd end;
  for (std::size_t size = 1; size < head.size(); ++size) ASSERT_FALSE(end.FindIn({head.data(), size}));
  EXPECT_TRUE(end.FindIn(head));
  EXPECT_EQ(end.Position(), head.size() - 4);
  EXPECT_LT(ProcessorSeconds() - start, 20);
}

}  // namespace
