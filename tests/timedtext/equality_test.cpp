// The quick ways give the bytes of the plain ones: on well-formed documents, on broken ones, and on random
// sequences of the texts that the plain steps look for.

#include <gtest/gtest.h>

#include <random>

#include "runtime/Digest.h"
#include "support/plain_ways.h"

namespace {

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
const std::string kWellFormed =
    kDeclaration +
    "<transcript><text start=\"0.5\" dur=\"3.2\">It&amp;#39;s &amp;quot;so&amp;quot;></text>"
    "<text start=\"3.7\" dur=\"2\">two\nlines &amp;amp; &lt;b&gt; \" dur=</text></transcript>";

// Texts that the steps look for, whole and cut, and texts that they put in.
const std::vector<std::string> kPieces = Split(
    "<transcript>~</transcript>~<text start=\"~\" dur=\"~\">~</text>~&amp;#39;~&amp;quot;~/\\r/~/\\n/~ ||| "
    "~<~>~\"~&~;~<text~"
    " start=~</te~xt>~&amp;#3~9;~ dur=~/~\\~r~|~ ~\n~\r~1.5~words~\xFD\xFF~\xD0\x9C~<trans~cript>~" +
        kDeclaration,
    "~");

std::string RandomPieces(std::mt19937& random, std::size_t most) {
  std::string text;
  for (auto i = random() % (most + 1); i > 0; --i) text += kPieces[random() % kPieces.size()];
  return text;
}

// Mostly well-formed times, and words that are often well-formed.
std::string RandomCue(std::mt19937& random) {
  const auto time = [&] { return random() % 16 ? std::to_string(random() % 5000) : RandomPieces(random, 2); };
  std::string words;
  for (auto i = random() % 4; i > 0; --i) words += "some words " + RandomPieces(random, 1);
  return "<text start=\"" + time() + "\" dur=\"" + time() + "\">" + words + "</text>";
}

std::string RandomDocument(std::mt19937& random) {
  std::string document;
  const auto opening = random() % 4;
  if (opening != 0) document = kDeclaration + "<transcript>";
  if (opening == 1) document = kDeclaration + " <transcript>";
  for (auto i = random() % 4; i > 0; --i) document += RandomCue(random);
  document += RandomPieces(random, 12);
  for (auto i = random() % 3; i > 0; --i) document += RandomCue(random);
  if (random() % 2) document += "</transcript>";
  return document;
}

}  // namespace

TEST(Equality, NormalisesDocumentsWithAByteCutAddedOrRemoved) {
  for (std::size_t at = 0; at <= kWellFormed.size(); ++at) {
    const std::string cut = kWellFormed.substr(0, at), tail = kWellFormed.substr(at);
    for (const std::string& document :
         {cut, cut + tail.substr(tail.empty() ? 0 : 1), cut + tail.substr(0, 1) + tail})
      ASSERT_EQ(QuickFields(document), PlainFields(document)) << document;
  }
}

TEST(Equality, NormalisesRandomDocuments) {
  std::mt19937 random(20261122);
  for (int i = 0; i < 200000; ++i) {
    const std::string document = RandomDocument(random);
    ASSERT_EQ(QuickFields(document), PlainFields(document)) << document;
  }
}

TEST(Equality, FormsTimecodesOfEveryThousandthAroundCarries) {
  for (const std::int64_t edge : {0, 59, 60, 3599, 3600, 7199, 36000, 359999, 360000, 21474836, 999999999}) {
    for (std::int64_t n = std::max<std::int64_t>(0, edge * 1000 - 1200); n < edge * 1000 + 1200; ++n) {
      const std::string start = Str(static_cast<double>(n) / 1000);
      ASSERT_EQ(QuickTimes(start, start), PlainTimes(start, start)) << start;
    }
  }
}

TEST(Equality, FormsTimecodesOfRandomAndOddTexts) {
  std::mt19937 random(7);
  std::vector<std::string> texts =
      Split("|.|1.|.5|-1.5|+2|1e3|1.2345|12 s|0x10|1,5|9999999999|00012.50|007|inf|1..2| 1|" +
                std::string(400, '9'),
            "|");
  for (int i = 0; i < 3000; ++i) {
    texts.push_back(std::to_string(random() % 20000) + "." + std::to_string(random() % 1000));
    texts.push_back(std::to_string(random() % 200) + "." + std::to_string(random() % 100) + "5");
  }
  for (const std::string& start : texts) {
    const std::string& dur = texts[random() % texts.size()];
    ASSERT_EQ(QuickTimes(start, dur), PlainTimes(start, dur)) << start << " + " << dur;
  }
}

// Start plus duration prints as the next start, by either way, for any third decimal.
TEST(Equality, AdjoiningCuesShareTheirTimecode) {
  std::mt19937 random(5);
  const auto decimal = [](std::uint64_t thousandths) {
    return std::to_string(thousandths / 1000) + "." + std::to_string(thousandths % 1000 + 1000).substr(1);
  };
  for (std::uint64_t i = 0, start = 0; i < 20000; ++i) {
    const std::uint64_t dur = i % 2 ? random() % 9000 : random() % 1800 * 5;
    ASSERT_EQ(QuickTimes(decimal(start), decimal(dur))[1], QuickTimes(decimal(start + dur), "0")[0])
        << start << " + " << dur;
    start = i % 1000 ? start + dur : i;
  }
}

TEST(Equality, CleansRandomCueTexts) {
  std::mt19937 random(11);
  std::string buffer;
  constexpr std::string_view kBytes = "\r\n\xFD\xFF ab";
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (auto n = random() % 30; n > 0; --n) text += kBytes[random() % kBytes.size()];
    ASSERT_EQ(CleanCueText(text), PlainCueText(text)) << EncodeBase64(text, 0);
    ASSERT_EQ(CueText{text}.In(buffer), PlainCueText(text)) << EncodeBase64(text, 0);
  }
}
