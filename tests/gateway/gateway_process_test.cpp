// The gateway as a process: its options, its first line, and its end.

#include <fcntl.h>

#include <regex>

#include "app/Endpoints.h"
#include "gateway/options.h"
#include "gateway/sources/CaptionCache.h"
#include "gateway/sources/JoinedSource.h"
#include "gateway_process.h"
#include "runtime/Text.h"
#include "support/recorded.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using gateway::Limits;
using Lines = std::vector<std::string>;

const std::string kList = GetRequest("/timedtext?type=list&v=hB7rV2kQx0w");

TEST(GatewayProcess, TheFirstLineShowsWhatIsServedAndASignalEndsIt) {
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", "words");
  WriteFile(folder / "u [abc].de.srt", "00:01,000 --> 00:02,000\nWorte\n");
  WriteFile(folder / "odd.srv1", "");
  for (const int signal : {SIGTERM, SIGINT}) {
    Process process({"--folder", folder.Path(), "--port=0"});
    const std::string line = process.ReadLine(), address = Address(line);
    EXPECT_EQ(line, "ravelyn-gateway: http://127.0.0.1:" + std::to_string(PortIn(address)) +
                        "/ serves 1 video with 2 tracks from " + folder.Path() +
                        "; 1 caption file left out, see --help; fetches nothing");
    const Descriptor hanging = ConnectTo(PortIn(address));
    const std::string request = GetRequest("/api/timedtext?&v=abc&lang=de");
    EXPECT_NE(ReadReply(ConnectTo(PortIn(address), request)).body.find(">Worte</text>"), std::string::npos);
    EXPECT_EQ(process.End(signal), 0);
  }
}

TEST(GatewayProcess, InvalidOptionsPrintAnErrorAndTheUsage) {
  for (const std::string& row : PartsOf("gateway/invalid_options.txt", "\n")) {
    const std::string arguments = NthField(row, "~", 1);
    Process process(arguments.empty() ? Lines{} : Split(arguments, " "));
    EXPECT_EQ(process.ReadLine(), "ravelyn-gateway: " + NthField(row, "~", 2));
    EXPECT_EQ(process.ReadLine(),
              "Usage: ravelyn-gateway [--folder DIR ...] [--fetch] [OPTION ...], see --help");
    EXPECT_EQ(process.End(), 2) << row;
  }
}

// The text on one line, without the backslashes of a man page.
std::string Flattened(const std::string& text) {
  return std::regex_replace(ReplaceAll(text, "\\", ""), std::regex("\\s+"), " ");
}

TEST(GatewayOptions, HelpAndManPageGiveTheLimitsOfTheCode) {
  const Limits limits;
  const gateway::CacheLimits cache;
  const auto counted = [](auto count, const char* unit) { return std::to_string(count) + ' ' + unit; };
  const auto seconds = [&](std::chrono::milliseconds time) {
    return counted(time.count() / 1000, "seconds");
  };
  const std::string port = std::to_string(gateway::kDefaultPort);
  Lines phrases = {
      "Default: " + port,
      "may have " + counted(limits.headBytes >> 10, "KiB") + " and take " + seconds(limits.head) +
          ", its answer " + seconds(limits.answer),
      counted(limits.connections, "connections are served at a time"),
      "are given up to " + seconds(limits.farewell),
      "of more than " + counted(gateway::kLargestCaptionFile >> 20, "MiB"),
      "kept for " + counted(cache.age.count() / 86'400, "days, ") + counted(cache.bytes >> 20, "MiB in all"),
      seconds(gateway::kSitePatience) + " for the site",
  };
  const std::string root = RAVELYN_SOURCE_DIR, help = Flattened(gateway::HelpText());
  std::string man = Flattened(ReadFile(root + "/packaging/man/ravelyn-gateway.1"));
  for (const auto& format : gateway::CaptionFormats()) phrases.push_back(" " + std::string(format.ending));
  for (const std::string& phrase : phrases) {
    EXPECT_NE(help.find(phrase), help.npos) << phrase;
    EXPECT_NE(man.find(phrase), man.npos) << phrase;
  }
  EXPECT_EQ(gateway::Options(std::array<const char*, 1>{"--fetch"}).Port(), gateway::kDefaultPort);
  EXPECT_EQ(Endpoints().TrackListEndpoint, "127.0.0.1:" + port);
  EXPECT_EQ(Endpoints().TimedTextEndpoint, "127.0.0.1:" + port);
  const std::string unit = ReadFile(root + "/packaging/systemd/ravelyn-gateway.socket");
  EXPECT_NE(unit.find("ListenStream=127.0.0.1:" + port + "\n"), unit.npos);
}

TEST(GatewayOptions, TheManPageDescribesEachOptionOfHelp) {
  const std::string man = Flattened(ReadFile(RAVELYN_SOURCE_DIR "/packaging/man/ravelyn-gateway.1"));
  std::size_t options = 0;
  for (const std::string& line : Split(gateway::HelpText(), "\n")) {
    if (!line.starts_with("  --")) continue;
    const std::string option = Flattened(line.substr(2, 22)), value = NthField(option, " ", 2);
    const std::string entry =
        ".TP .B" + (value.empty() ? " " + option : "I " + NthField(option, " ", 1) + " \" " + value + "\" ");
    EXPECT_NE(man.find(entry), man.npos) << entry;
    ++options;
  }
  EXPECT_GT(options, 10u) << "the options were not found";
}

TEST(GatewayOptions, OptionsTakeTheirValues) {
  const auto parsed = [](std::vector<const char*> arguments) {
    const gateway::Options options(arguments);
    std::string shown = std::to_string(options.Port());
    for (const char* name : {"--ytdlp", "--ytdlp-config", "--cache"}) shown += " " + options.Value(name);
    for (const std::string& folder : options.Values("--folder")) shown += " " + folder;
    for (const char* name : {"--as-is", "--fetch", "--no-cache", "--stop-with-input", "--help", "--version"})
      shown += options.Has(name) ? " yes" : " no";
    return shown;
  };
  EXPECT_EQ(
      parsed({"--folder", "a", "--folder=b=c", "--as-is", "--fetch", "--ytdlp=y", "--ytdlp-config", "f",
              "--cache", "j", "--cache=k", "--no-cache", "--port=1", "--port=65535", "--stop-with-input"}),
      "65535 y f k a b=c yes yes yes yes no no");
  EXPECT_EQ(parsed({"--help"}), "17733    no no no no yes no");
  EXPECT_EQ(parsed({"--version"}), "17733    no no no no no yes");
}

TEST(GatewayProcess, TheEndOfInputEndsIt) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  const Lines arguments = {"--folder", RAVELYN_SAMPLES_DIR, "--port=0", "--stop-with-input"};
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  Process process(arguments, reading);
  const std::uint16_t port = PortIn(Address(process.ReadLine()));
  ASSERT_EQ(::write(writing.Number(), "more", 4), 4);
  EXPECT_EQ(ReadReply(ConnectTo(port, kList)).Status(), "HTTP/1.1 200 OK")
      << "bytes of its input are ignored";
  writing = Descriptor();
  EXPECT_EQ(process.End(), 0);

  Process unreadable(arguments, Descriptor(::open("/", O_RDONLY | O_CLOEXEC)));
  EXPECT_EQ(unreadable.End(), 0);
}

TEST(GatewayProcess, ClosedStandardDescriptorsAreOpened) {
  Process process("echo $$; exec \"$@\" <&- 2>&-", {"--folder", RAVELYN_SAMPLES_DIR, "--port=0"});
  const std::string descriptors = "/proc/" + process.ReadLine() + "/fd/";
  const std::uint16_t port = PortIn(Address(process.ReadLine()));
  EXPECT_EQ(ReadReply(ConnectTo(port, kList)).Status(), "HTTP/1.1 200 OK");
  for (const char* number : {"0", "2"})
    EXPECT_EQ(std::filesystem::read_symlink(descriptors + number), "/dev/null") << number;
}

TEST(GatewayProcess, HelpAndVersionArePrinted) {
  Process version({"--version"}), full("exec \"$@\" >/dev/full", {"--help"}), help({"--help"});
  EXPECT_EQ(version.ReadLine(), "ravelyn-gateway " RAVELYN_VERSION);
  EXPECT_EQ(version.End(), 0);
  EXPECT_EQ(full.End(), 1);
  for (const std::string& line : Split(gateway::HelpText(), "\n")) EXPECT_EQ(help.ReadLine(), line);
  EXPECT_EQ(help.End(), 0);
  ExpectRecorded(gateway::HelpText(), "gateway/help.txt");
}

TEST(GatewayProcess, SignalsOfFailedWritesDoNotEndIt) {
  Process process({"--folder", RAVELYN_SAMPLES_DIR, "--port=0"});
  const std::uint16_t port = PortIn(Address(process.ReadLine()));
  for (const int signal : {SIGPIPE, SIGXFSZ}) {
    process.Send(signal);
    EXPECT_EQ(ReadReply(ConnectTo(port, kList)).Status(), "HTTP/1.1 200 OK") << signal;
  }
  EXPECT_EQ(process.End(SIGTERM), 0);
}

TEST(GatewayProcess, MissingAndUnreadableFoldersAndATakenPortAreReported) {
  Process missing({"--folder", "/nowhere/at all", "--folder", "/dev/null", "--port", "0"});
  const std::string fault = missing.ReadLine(), line = missing.ReadLine();
  EXPECT_EQ(fault,
            "ravelyn-gateway: can't read the folder /dev/null; it counts as empty until it can be read");
  EXPECT_NE(line.find("serves 0 videos with 0 tracks from /nowhere/at all (missing), /dev/null;"),
            std::string::npos)
      << line;
  EXPECT_EQ(missing.End(SIGTERM), 0);

  const Descriptor taken = gateway::ListenOnLoopback(0);
  const std::string port = std::to_string(PortIn(gateway::AddressOf(taken)));
  Process second({"--folder", "/tmp", "--port", port});
  EXPECT_EQ(second.ReadLine(),
            "ravelyn-gateway: can't listen at 127.0.0.1, port " + port + ": Address already in use");
  EXPECT_EQ(second.End(), 1);
}

TEST(GatewayProcess, APassedSocketIsServed) {
  const Descriptor listener = gateway::ListenOnLoopback(0);
  const std::uint16_t port = PortIn(gateway::AddressOf(listener));
  const std::string handOver = "LISTEN_FDS=1 LISTEN_PID=$$ exec \"$@\"";
  const Lines arguments = {"--folder", RAVELYN_SAMPLES_DIR, "--port=0"};
  const auto flags = [&] { return ::fcntl(listener.Number(), F_GETFL); };
  for (int time = 0; time < 2; ++time) {
    const Descriptor early = ConnectTo(port);  // before the gateway is started
    ::fcntl(listener.Number(), F_SETFL, flags() & ~O_NONBLOCK);
    Process process(handOver, arguments, listener.Number());
    EXPECT_NE(process.ReadLine().find(":" + std::to_string(port) + "/ serves 3 videos"), std::string::npos);
    EXPECT_NE(flags() & O_NONBLOCK, 0) << "accepting a client that has already left must not block";
    SendAll(early, kList);
    EXPECT_EQ(ReadReply(early).Status(), "HTTP/1.1 200 OK");
    EXPECT_EQ(process.End(SIGTERM), 0) << "the socket stays open for the next gateway";
  }
  Process two("LISTEN_FDS=2 LISTEN_PID=$$ exec \"$@\"", arguments, listener.Number());
  EXPECT_EQ(two.ReadLine(), "ravelyn-gateway: was handed 2 sockets, can serve one");
  const Descriptor silent(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  Process refusing(handOver, arguments, silent.Number());
  EXPECT_EQ(refusing.ReadLine(), "ravelyn-gateway: was handed a descriptor that is not a listening socket");
  EXPECT_EQ(refusing.End(), 1);
  Process others("LISTEN_FDS=1 LISTEN_PID=1 exec \"$@\"", arguments, listener.Number());
  const std::string line = others.ReadLine();
  EXPECT_NE(line.find("serves 3 videos"), std::string::npos) << line;
  EXPECT_EQ(line.find(":" + std::to_string(port)), std::string::npos) << "passed to another process";
}

}  // namespace
