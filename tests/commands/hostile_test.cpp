// Texts from outside that try to become a header, a command, a path or a link to another file.

#include <gtest/gtest.h>

#include <set>

#include "http/HTTPSocket.h"
#include "runtime/Streams.h"
#include "support/Program.h"

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

FolderItemPtr At(const std::string& path) { return std::make_shared<FolderItem>(path); }

}  // namespace

TEST(HostileTexts, LineEndsAddNoLineToARequest) {
  for (const std::string& bytes : {"\r\nX: y"s, "\nX: y"s, "\rX: y"s, "\0"s}) {
    Program program;
    program.Form().TextField1.UserTypes("https://host/watch?v=abc" + bytes);
    program.Click("PushButton2");
    const std::string code = "abc" + (bytes == "\0"s ? "" : "X: y"s);  // the field drops control characters
    const std::string request =
        "GET " + ListPath(code) +
        " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: " + program.server.Host() + "\r\n\r\n";
    EXPECT_EQ(program.server.Requests(), Lines{request});
    // A server may send any language name.
    program.server.AnswerAt(ListPath(code), {Page(TrackList({{"e" + bytes + "n", "English", ""}}))});
    program.Click("PushButton2");
    program.Form().Listbox1.UserSelects({0});
    program.Click("SRTBox");
    program.Calls();
    program.Click("PushButton1 PushButton3");
    EXPECT_EQ(program.server.Requests().size(), 2U);
    const Lines calls = program.Calls();
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].find("message: Error code: " + std::to_string(kErrorBadURL) + " - "), 0U);
    EXPECT_EQ(calls[0], calls[1]);
  }
}

// Another user with write access puts a link in the place of the target, or of its folder, during a write.
TEST(PlantedLinks, AreNotFollowed) {
  for (const bool isOfFolder : {false, true}) {
    const TemporaryFolder folder;
    for (const char* name : {"sub", "other"}) std::filesystem::create_directory(folder / name);
    WriteFile(folder / "other/a.srt", "precious");
    const auto stream = TextOutputStream::Create(At(folder / "sub/a.srt"));
    stream->Write("new");
    if (isOfFolder) std::filesystem::rename(folder / "sub", folder / "moved");
    std::filesystem::create_symlink(isOfFolder ? "other" : "../other/a.srt",
                                    folder / (isOfFolder ? "sub" : "sub/a.srt"));
    stream->Close();
    const std::string saved = folder / (isOfFolder ? "moved/a.srt" : "sub/a.srt");
    EXPECT_FALSE(std::filesystem::is_symlink(saved));
    EXPECT_EQ(ReadFile(saved), "new");
    EXPECT_EQ(ReadFile(folder / "other/a.srt"), "precious");
  }
}

// The name of the temporary file can't be predicted, so no link can be planted there.
TEST(PlantedLinks, TemporaryNamesAreUnpredictable) {
  const TemporaryFolder folder;
  std::set<std::string> names;
  for (int i = 0; i < 20; ++i) {
    const auto stream = TextOutputStream::Create(At(folder / "a.srt"));
    const auto beside = *std::filesystem::directory_iterator(folder.Path());
    names.insert(beside.path().filename().string());
    EXPECT_EQ(beside.symlink_status().permissions() & std::filesystem::perms(0022),
              std::filesystem::perms::none);
  }
  EXPECT_EQ(names.size(), 20U);
  EXPECT_EQ(folder.Count(), 0U);
}
