// Downloads, and requests that report by events.

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "http_fixture.h"
#include "runtime/Text.h"

// Closing the file at this path fails, unless it is empty.
static thread_local std::string closesBadly;
extern "C" int close(int descriptor) {
  static const auto real = reinterpret_cast<decltype(&close)>(::dlsym(RTLD_NEXT, "close"));
  struct stat bad, own;
  const bool fails = !closesBadly.empty() && ::stat(closesBadly.c_str(), &bad) == 0 &&
                     ::fstat(descriptor, &own) == 0 && own.st_ino == bad.st_ino && bad.st_size > 0;
  const int closed = real(descriptor);
  if (fails) errno = EDQUOT;
  return fails ? -1 : closed;
}

namespace {

TEST_F(HTTP, ADownloadReplacesItsFile) {
  const std::string body(700'000, 'b');
  server.Answer(Page(body));
  WriteFile(folder / "f", "old");
  std::filesystem::create_hard_link(folder / "f", folder / "other");
  EXPECT_TRUE(socket.Get(Url("/"), File("f"), kPatience));
  EXPECT_EQ(ReadFile(folder / "f"), body);
  EXPECT_EQ(ReadFile(folder / "other"), "old") << "the file is a new one";
  EXPECT_EQ(folder.Count(), 2u);
  EXPECT_EQ(socket.Get(Url("/"), kPatience), body) << "the next page is in memory again";
  const std::size_t before = server.Requests().size();
  EXPECT_FALSE(socket.Get(Url("/"), File(""), kPatience));
  EXPECT_FALSE(socket.Post(Url("/"), File("none/f"), kPatience));
  EXPECT_EQ(socket.ErrorCode(), kErrorDownloadFile);
  EXPECT_EQ(server.Requests().size(), before) << "no connection";
  EXPECT_FALSE(socket.Get(Url("/"), std::make_shared<FolderItem>("/dev/full"), kPatience));
  EXPECT_EQ(socket.ErrorCode(), ENOSPC);
  EXPECT_FALSE(socket.IsConnected());
}

// The events of requests that do not block, one line each.
struct Events : HTTP {
  Events() {
    socket.Connected = [this] { seen.push_back("connected"); };
    socket.HeadersReceived = [this](const InternetHeaders& h, int status) {
      seen.push_back("headers " + std::to_string(status) + " " + std::to_string(h.Count()));
    };
    socket.ReceiveProgress = [this](std::int64_t soFar, std::int64_t total, const std::string& data) {
      seen.push_back("progress " + std::to_string(soFar) + "/" + std::to_string(total) + " " + data);
    };
    socket.PageReceived = [this](const std::string& url, int, HTTPSocket::HeadersPtr,
                                 const std::string& content) {
      seen.push_back("page " + Replace(url, server.Host(), "") + " " + content), done = true;
    };
    socket.DownloadComplete = [this](const std::string&, int, HTTPSocket::HeadersPtr,
                                     const FolderItemPtr& file) {
      seen.push_back("file " + ReadFile(file->Path())), done = true;
    };
    socket.Error = [this](int code) { seen.push_back("error " + std::to_string(code)), done = true; };
  }
  Lines Wait() {
    for (int i = 0; i < 500 && !done; ++i) socket.Wait(100), socket.Poll();
    done = false;
    return std::exchange(seen, {});
  }
  Lines seen;
  bool done = false;
};

TEST_F(Events, ComeInOrder) {
  socket.SetError(7);
  EXPECT_EQ(Wait(), Lines({"error 7"}));
  server.Answer(Page("hello"));
  server.Answer(OpenPage("open"));
  socket.Get(Url("/1"), File("f"));
  EXPECT_EQ(seen, Lines()) << "the call only starts the request";
  EXPECT_EQ(Wait(), Lines({"connected", "headers 200 1", "progress 5/5 hello", "file hello"}));
  socket.Get(Url("/2"));
  EXPECT_EQ(Wait(), Lines({"connected", "headers 200 0", "progress 4/0 open", "page http:///2 open"}));
  socket.Get("127.0.0.1:1/");
  EXPECT_EQ(Wait(), Lines({"error 111"}));
  socket.Get(Url("/3"), File(""));
  EXPECT_EQ(Wait(), Lines({"error 1"}));
  EXPECT_EQ(socket.Get(Url("/4"), kPatience), "open");
  EXPECT_FALSE(socket.Get("127.0.0.1:1/", File("f"), kPatience));
  EXPECT_EQ(seen, Lines()) << "a blocking request raises none";
  socket.Connected = [this] { done = true; };
  socket.Get(Url("/5"));
  Wait();
  socket.Get(Url("/a\rb"));
  EXPECT_EQ(Wait(), Lines({"error 10004"}));
  EXPECT_FALSE(socket.IsConnected()) << "a refused request ends the one before it";
}

TEST_F(Events, AreRaisedForEveryKindOfRequest) {
  server.Answer(Page("ok"));
  socket.Get(Url("/get")), Wait();
  socket.Get(Url("/0"), File("f")), Wait();
  socket.Post(Url("/1")), Wait();
  socket.Post(Url("/2"), File("f")), Wait();
  EXPECT_TRUE(socket.Post(Url("/3"), File("f"), kPatience));
  socket.HeadersReceived = [this](const InternetHeaders&, int) { done = true; };
  socket.GetHeaders(Url("/4"));
  EXPECT_EQ(Wait(), Lines({"connected"}));
  for (int i = 0; i < 500 && socket.IsConnected(); ++i) socket.Wait(100), socket.Poll();
  EXPECT_EQ(seen, Lines()) << "HEAD has neither body nor page";
  std::string requestLines;
  for (const std::string& request : server.Requests())
    requestLines += request.substr(0, request.find(" HTTP")) + "|";
  EXPECT_EQ(requestLines, "GET /get|GET /0|POST /1|POST /2|POST /3|HEAD /4|");
}

TEST_F(Events, AHandlerMayAskForTheNextPage) {
  server.Answer(Page("one"));
  server.Answer(OpenPage("two"));
  Lines pages;
  socket.PageReceived = [&](const std::string&, int, HTTPSocket::HeadersPtr, const std::string& content) {
    pages.push_back(content);
    done = pages.size() == 3;
    if (!done) socket.Get(Url("/"));
  };
  socket.Get(Url("/"));
  Wait();
  EXPECT_EQ(pages, Lines({"one", "two", "two"}));
}

// Some disks report an exceeded quota only when the file is closed.
TEST_F(Events, AFailedCloseOfTheDownloadIsAnError) {
  server.Answer(Page("body"));
  closesBadly = folder / "f";
  EXPECT_FALSE(socket.Get(Url("/"), File("f"), kPatience));
  EXPECT_EQ(socket.ErrorCode(), EDQUOT);
  socket.Get(Url("/"), File("f"));
  EXPECT_EQ(Wait().back(), "error " + std::to_string(EDQUOT));
  closesBadly.clear();
  EXPECT_TRUE(socket.Get(Url("/"), File("f"), kPatience));
}

}  // namespace
