// What the gateway serves: file names, requests, lists and files.

#include <sys/stat.h>

#include <map>

#include "gateway/server/request_target.h"
#include "gateway/server/track_list.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/language_name.h"
#include "gateway_fixture.h"
#include "support/documents.h"
#include "support/recorded.h"

namespace {

using namespace gateway_test;
using gateway::CaptionRequest;
using Lines = std::vector<std::string>;

const std::string kHeader = "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript_list docid=";

// The tracks of a list as "code=name".
Lines TracksOf(const std::string& document) {
  Lines tracks;
  for (const std::string& part : Split(document, "lang_code=\""))
    tracks.push_back(NthField(part, "\"", 1) + "=" + NthField(part, "\"", 5));
  tracks.erase(tracks.begin());
  return tracks;
}

std::vector<gateway::Track> TracksIn(const Lines& languages) {
  std::vector<gateway::Track> tracks;
  for (const auto& each : languages)
    tracks.push_back({each, gateway::EnglishName(each), gateway::OwnName(each)});
  return tracks;
}

TEST(GatewayNames, NamesAreReadFromTheRight) {
  // Name, title, code, language and ending.
  for (
      const std::string& row : Split(
          "A walk [hB7rV2kQx0w].en.srv1=A walk=hB7rV2kQx0w=en=srv1|"
          "Vol. 2 [a reading] [Qn3_tW8-yLc].pt-BR.vtt=Vol. 2 [a reading]=Qn3_tW8-yLc=pt-BR=vtt|"
          "x [a].en [b].de.srt=x [a].en=b=de=srt|[AZaz09].AZ_az-09.SRV1==AZaz09=AZ_az-09=srv1|"
          "  [a].en-nP7-2PuUl7o.Vtt= =a=en-nP7-2PuUl7o=vtt|\xff\n\" [a.b~c].zh_Hant.srv1=\xff\n\"=a.b~c=zh_Hant=srv1",
          "|")) {
    const std::string fileName = NthField(row, "=", 1);
    const auto name = gateway::ParseCaptionName(fileName);
    ASSERT_TRUE(name) << row;
    std::string read;
    for (const std::string_view part : {name->title, name->code, name->language, name->format->ending})
      read.append("=").append(part);
    EXPECT_EQ(read, row.substr(row.find('=')));
  }
  const std::string odds =
      R"(|.srv1|x [a].en.srv1~|x [a].en.txt|x [a].live_chat.srv1|x [a]en.srv1|x [a].srv1|)"
      R"(x [a]..srv1|x[a].en.srv1| [a].en.srv1|x [].en.srv1|x [a b].en.srv1|x [a&b].en.srv1|)"
      R"(x [a"].en.srv1|x [a].e n.srv1|x [a].en".srv1|x [a].e:::n.srv1|x a].en.srv1|)"
      "x [a].\xc3\xa9.srv1|x [a.en.srv1|x [a]." +
      std::string(65, 'l') + ".srv1";
  for (const std::string& odd : Split(odds, "|")) EXPECT_FALSE(gateway::ParseCaptionName(odd)) << odd;
}

TEST(GatewayTargets, TailsOfPastedCodesAreCut) {
  // Each line has a target, its kind, code and language.
  for (const std::string& row : PartsOf("gateway/targets.txt", "\n")) {
    const CaptionRequest request = gateway::ReadTarget(NthField(row, "~", 1));
    const std::string kind = request.kind == CaptionRequest::Kind::TrackList   ? "list"
                             : request.kind == CaptionRequest::Kind::TimedText ? "text"
                                                                               : "unknown";
    EXPECT_EQ(kind + "~" + request.code + "~" + request.language, row.substr(row.find('~') + 1)) << row;
  }
}

TEST(GatewayTrackList, AListHasTheBytesThatClientsSplitAt) {
  EXPECT_EQ(gateway::TrackListDocument("abc", {}), kHeader + "\"abc\"></transcript_list>");
  EXPECT_EQ(
      gateway::TrackListDocument("abc", TracksIn({"de", "en", "pt-BR"})),
      kHeader +
          "\"abc\"><track id=\"0\" name=\"\" lang_code=\"en\" lang_original=\"English\" lang_translated=\"English\" lang_default=\"true\"/>"
          "<track id=\"1\" name=\"\" lang_code=\"de\" lang_original=\"Deutsch\" lang_translated=\"German\"/>"
          "<track id=\"2\" name=\"\" lang_code=\"pt-BR\" lang_original=\"portugu\xc3\xaas (Brasil)\" lang_translated=\"Portuguese (Brazil)\"/></transcript_list>");
  EXPECT_EQ(
      gateway::TrackListDocument(
          "abc", {{"en-GB", "A", "/own"},
                  {"en", "::a:::\">b\n" + std::string("\0\x1F\x7F", 3) + "lang_code=\"c\"/>", ""},
                  {"de", ">name", ":::lang_code="}}),
      kHeader +
          "\"abc\"><track id=\"0\" name=\"\" lang_code=\"en\" lang_original=\"\" lang_translated=\": :a: : :'>b    lang_code ='c'/>\" lang_default=\"true\"/>"
          "<track id=\"1\" name=\"\" lang_code=\"de\" lang_original=\": : :lang_code =\" lang_translated=\" >name\"/>"
          "<track id=\"2\" name=\"\" lang_code=\"en-GB\" lang_original=\" /own\" lang_translated=\"A\"/></transcript_list>");
  for (const char* hostile : {"\"><track id=\"", "\"/>", ":::", "a&b", "<", "\xff", "a b"})
    EXPECT_EQ(gateway::TrackListDocument(hostile, {}), kHeader + "\"\"></transcript_list>") << hostile;
}

TEST(GatewayTrackList, EnglishComesFirstAndOthersByName) {
  const std::pair<Lines, Lines> cases[] = {
      {{}, {}},
      {{"de"}, {"de=German"}},
      {{"es", "de", "fr"}, {"fr=French", "de=German", "es=Spanish"}},
      {{"de", "en", "en-GB"}, {"en=English", "en-GB=English (United Kingdom)", "de=German"}},
      {{"de", "en-US", "en-GB", "ar"},
       {"en-GB=English (United Kingdom)", "ar=Arabic", "en-US=English (United States)", "de=German"}},
      {{"enm", "de"}, {"de=German", "enm=Middle English"}},
      {{"qqq", "zz-ZZ", "pt_BR", "toolongtobetrue"},
       {"pt_BR=Portuguese (Brazil)", "qqq=qqq", "toolongtobetrue=toolongtobetrue", "zz-ZZ=zz-ZZ"}},
  };
  for (const auto& [languages, expected] : cases) {
    const std::string document = gateway::TrackListDocument("abc", TracksIn(languages));
    EXPECT_EQ(TracksOf(document), expected);
    EXPECT_EQ(Split(document, "lang_default=\"true\"/>").size() - 1, languages.empty() ? 0u : 1u);
  }
  EXPECT_EQ(gateway::OwnName("ja"), "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e");
}

TEST(GatewayServing, FilesAreSentByteForByte) {
  std::string everyByte;
  for (int i = 0; i < 3 << 20; ++i) everyByte += static_cast<char>(i * 7 >> 3);
  const TemporaryFolder folder;
  const RunningGateway server(AsIs({folder.Path()}));
  for (const std::string& bytes : {everyByte, std::string(), std::string("\0\r\n\r\n", 5)}) {
    WriteFile(folder / "Any title. [abc].en.srv1", bytes);
    const Reply reply = server.Captions("abc", "en");
    EXPECT_EQ(
        reply.head,
        "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " +
            std::to_string(bytes.size()) + "\r\n\r\n");
    EXPECT_TRUE(reply.body == bytes) << bytes.size() << " bytes";
    const Reply head = server.Ask("HEAD /api/timedtext?&v=abc&lang=en HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(head.head, reply.head);
    EXPECT_EQ(head.body, "");
  }
  const Reply plain = server.Ask(
      "GET /api/timedtext?&v=abc&lang=en HTTP/1.1\r\nAccept-Encoding: gzip, br\r\nRange: bytes=1-2\r\n"
      "If-None-Match: *\r\nExpect: 100-continue\r\nConnection: keep-alive\r\n\r\n");
  EXPECT_EQ(plain.body, std::string("\0\r\n\r\n", 5)) << "these headers have no effect";
}

TEST(GatewayServing, OnlyCaptionFilesOfTheFolderAreServed) {
  const TemporaryFolder outside;
  WriteFile(outside / "secret [abc].fr.srv1", "secret");
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", "words");
  WriteFile(folder / "t [abc].txt", "no caption");
  WriteFile(folder / "t [abc].it.srv1", "");
  std::filesystem::resize_file(folder / "t [abc].it.srv1", gateway::kLargestCaptionFile + 1);
  WriteFile(folder / "t [abc].es.srv1", "");
  std::filesystem::resize_file(folder / "t [abc].es.srv1", gateway::kLargestCaptionFile);
  std::filesystem::create_symlink(outside / "secret [abc].fr.srv1", folder / "t [abc].fr.srv1");
  std::filesystem::create_symlink(outside / "nothing", folder / "t [abc].ru.srv1");
  std::filesystem::create_directory(folder / "t [abc].de.srv1");
  ASSERT_EQ(::mkfifo((folder / "t [abc].ja.srv1").c_str(), 0600), 0);

  const RunningGateway server(AsIs({folder.Path()}));
  EXPECT_EQ(TracksOf(server.List("abc").body), (Lines{"en=English", "es=Spanish"}));
  EXPECT_EQ(server.Captions("abc", "es").body.size(), gateway::kLargestCaptionFile);
  for (const std::string language :
       {"fr", "ru", "de", "ja", "it", "EN", "en.srv1", "", "../en", "en%00", "xx", "en]", "%2e%2e%2fen"}) {
    const Reply reply = server.Captions("abc", language);
    EXPECT_EQ(reply.Status(), "HTTP/1.1 404 Not Found") << language;
    EXPECT_EQ(reply.body, "") << language;
  }
  const auto stock = gateway::FolderSource({folder.Path()}).TakeStock();
  EXPECT_EQ((std::array{stock.tracks, stock.leftOut}), (std::array<std::size_t, 2>{2, 5}));
}

TEST(GatewaySamples, AllSamplesAreServed) {
  const auto stock = gateway::FolderSource({RAVELYN_SAMPLES_DIR}).TakeStock();
  EXPECT_EQ((std::array{stock.videos, stock.tracks, stock.leftOut}), (std::array<std::size_t, 3>{3, 13, 0}));
  const RunningGateway server({RAVELYN_SAMPLES_DIR});
  for (const auto& [video, cues] :
       {std::pair("hB7rV2kQx0w", 32u), {"Qn3_tW8-yLc", 30u}, {"d5JmX-1uPzA", 2006u}})
    EXPECT_EQ(CuesIn(server.Captions(video, "en").body).size(), cues) << video;
}

}  // namespace
