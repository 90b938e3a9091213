// Long runs: many rounds in one process, and a hundred processes at once. The memory and the open descriptors
// of the one must not grow.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "gateway/gateway_fixture.h"
#include "ravelyn/commands.h"
#include "support/Program.h"
#include "wordsearch/SearchWin.h"

namespace {

struct Wanted {
  const char *video, *language;
};

// Every kind of track of the samples, except the longest ones.
constexpr Wanted kTracks[] = {{"hB7rV2kQx0w", "en"}, {"hB7rV2kQx0w", "ar"}, {"hB7rV2kQx0w", "pt-BR"},
                              {"Qn3_tW8-yLc", "ru"}, {"Qn3_tW8-yLc", "de"}, {"hB7rV2kQx0w", "ja"}};

std::size_t IndexOf(int round) { return static_cast<std::size_t>(round) % std::size(kTracks); }
const Wanted& TrackOf(int round) { return kTracks[IndexOf(round)]; }

// A count from the environment, for runs that take too long for CI.
int CountOr(const char* variable, int otherwise) {
  const char* text = std::getenv(variable);
  return text ? std::atoi(text) : otherwise;
}

std::int64_t ResidentKiB() {
  std::int64_t all = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

std::size_t OpenDescriptors() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

std::string AddressOf(const gateway_test::RunningGateway& gateway) {
  return "127.0.0.1:" + std::to_string(gateway.Port());
}

// The program with these servers for lists and captions.
struct Worker {
  explicit Worker(const Endpoints& endpoints) : app(host, kCommands, endpoints) {
    host.prefsFolder = folder.Path();
    app.Start();
    Window1::Get().SRTBox.SetValue(true);
    Window1::Get().searchField.UserTypes("e");
  }

  // Search, Download and Word Search of one track. Returns the saved file; "" if none was saved.
  std::string Round(const Wanted& wanted) {
    Window1& form = Window1::Get();
    const std::string path = folder / "out.srt";
    std::filesystem::remove(path);
    form.TextField1.UserTypes(std::string("https://host/watch?v=") + wanted.video);
    form.PushButton2.UserClicks();
    for (std::int64_t row = 0; row < form.Listbox1.ListCount(); ++row) {
      if (form.Listbox1.Cell(row, 1) == wanted.language) form.Listbox1.UserSelects({row});
    }
    host.saves = {path};
    form.PushButton1.UserClicks();
    form.PushButton3.UserClicks();
    if (Window* results = app.FindWindow(SearchWin::kName)) results->UserCloses();
    host.calls.clear();
    return std::filesystem::exists(path) ? ReadFile(path) : "";
  }

  TemporaryFolder folder;
  WaitingPlatform host;
  App app;
};

// The file of each of kTracks, and its row in the list.
struct Expected {
  std::vector<std::string> files;
  std::vector<std::int64_t> rows;

  explicit Expected(const gateway_test::RunningGateway& gateway) {
    Worker worker(EndpointsAt(AddressOf(gateway)));
    for (const Wanted& wanted : kTracks) {
      files.push_back(worker.Round(wanted));
      const Listbox& tracks = Window1::Get().Listbox1;
      std::int64_t row = 0;
      while (!tracks.Selected(row)) ++row;
      rows.push_back(row);
    }
  }
};

}  // namespace

TEST(LongRun, ManyRoundsGrowNeitherMemoryNorDescriptors) {
  const int rounds = CountOr("RAVELYN_ROUNDS", 150);
  const gateway_test::RunningGateway gateway({RAVELYN_SAMPLES_DIR});
  const Expected expected(gateway);
  LoopbackServer faulty;
  for (const Reply& reply : {Reply{"HTTP/1.0 200 OK\r\n\r\n<text start=\"1"}, Reply{"", Reply::End::Reset},
                             Reply{Page("<a href=\"x\">"), Reply::End::Close, 1}, Reply{""}}) {
    faulty.Answer(reply);
  }
  Endpoints halfFaulty = EndpointsAt(AddressOf(gateway));
  halfFaulty.TimedTextEndpoint = faulty.Host();
  std::int64_t residentBefore = 0;
  std::size_t descriptorsBefore = 0;
  // One App at a time: four rounds of a good one, then one of a bad one.
  for (int round = 0; round < rounds; round += 5) {
    if (round == rounds / 5) {
      residentBefore = ResidentKiB();
      descriptorsBefore = OpenDescriptors();
    }
    {
      Worker good(EndpointsAt(AddressOf(gateway)));
      for (int i = round; i < round + 4; ++i) EXPECT_EQ(good.Round(TrackOf(i)), expected.files[IndexOf(i)]);
    }
    Worker(round % 2 == 0 ? halfFaulty : EndpointsAt(faulty.Host())).Round(TrackOf(round));
  }
  const std::int64_t grown = ResidentKiB() - residentBefore;
  std::printf("%d rounds; resident %lld KiB, grown by %lld KiB; descriptors %zu, before %zu\n", rounds,
              static_cast<long long>(ResidentKiB()), static_cast<long long>(grown), OpenDescriptors(),
              descriptorsBefore);
  EXPECT_LE(OpenDescriptors(), descriptorsBefore);
#ifndef RAVELYN_SANITIZED  // sanitizers hold back freed memory
  EXPECT_LT(grown, 4096);
#endif
}

TEST(LongRun, AHundredSessionsAtOnceSaveTheirOwnFiles) {
  const int sessions = CountOr("RAVELYN_SESSIONS", 100);
  const gateway_test::RunningGateway gateway({RAVELYN_SAMPLES_DIR});
  const Expected expected(gateway);
  const TemporaryFolder folder;
  for (int i = 0; i < sessions; ++i) {
    const std::string name = folder / std::to_string(i);
    WriteFile(name, std::string("open\ntype TextField1 https://host/watch?v=") + TrackOf(i).video +
                        "\nclick PushButton2\nclick SRTBox\nselect " +
                        std::to_string(expected.rows[IndexOf(i)]) + "\nsave " + name +
                        ".srt\nclick PushButton1\nquit\n");
  }
  const std::string tool =
      RAVELYN_SESSION_PATH " --track-list " + AddressOf(gateway) + " --timed-text " + AddressOf(gateway);
  const std::string all =
      "cd " + folder.Path() + "; for i in *; do " + tool +
      " <$i >$i.out & started=\"$started $!\"; done; for i in $started; do wait $i || exit; done";
  EXPECT_EQ(std::system(all.c_str()), 0);
  for (int i = 0; i < sessions; ++i)
    EXPECT_EQ(ReadFile((folder / std::to_string(i)) + ".srt"), expected.files[IndexOf(i)]);
}
