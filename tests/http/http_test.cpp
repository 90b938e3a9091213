// Requests on the wire and replies that are as they should be, on both roads.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "http/HTTPSocket.h"
#include "runtime/Text.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"

// Closing the file at this path fails, once what it holds was written.
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

using namespace std::string_literals;
constexpr std::int64_t kPatience = 60;  // seconds that no test waits for
using Lines = std::vector<std::string>;

const std::string kDefaults = "Accept: */*\r\nAccept-Language: en\r\n";

struct HTTP : testing::Test {
  FolderItemPtr File(const std::string& name) { return std::make_shared<FolderItem>(folder / name); }
  std::string Url(const std::string& path) { return "http://" + server.Host() + path; }
  std::string HostLine() { return "Host: " + server.Host(); }

  LoopbackServer server;
  HTTPSocket socket;
  TemporaryFolder folder;
};

TEST_F(HTTP, SendsExactlyTheseBytes) {
  server.Answer(Page("ok"));
  const std::string rest = " HTTP/1.0\r\n" + kDefaults + HostLine() + "\r\n\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {Url("/p?x=1"), "GET /p?x=1"},
      {"https://" + server.Host() + "/p", "GET /p"},
      {server.Host(), "GET /"},
      {server.Host() + "/a b/%41?q=\xC3\xA9#f", "GET /a b/%41?q=\xC3\xA9#f"},
      {"host/p?u=http://" + server.Host() + "/q", "GET /q"},
      {"a://" + server.Host() + "//b://c", "GET //b://c"},
  };
  Lines expected;
  for (const auto& [url, line] : cases) {
    EXPECT_EQ(HTTPSocket().Get(url, kPatience), "ok") << url;
    expected.push_back(line + rest);
  }
  EXPECT_EQ(server.Requests(), expected);
}

TEST_F(HTTP, KeepsAPortThatAURLNamed) {
  server.Answer(Page("ok"));
  socket.Get(Url("/1"), kPatience);
  for (const char* url : {"127.0.0.1/2", "http://127.0.0.1:0/3", "127.0.0.1:port/4"}) {
    EXPECT_EQ(socket.Get(url, kPatience), "ok") << url;
  }
  EXPECT_EQ(socket.Port, server.Port());
  EXPECT_EQ(server.Requests().at(2), "GET /3 HTTP/1.0\r\n" + kDefaults + "Host: 127.0.0.1:0\r\n\r\n");
  HTTPSocket fresh;
  fresh.Get("\x01?x=1", 1);
  EXPECT_EQ(fresh.Port, 80);
  EXPECT_EQ(fresh.Address, "\x01?x=1") << "without a slash all of it is the host";
}

TEST_F(HTTP, PostsContentAndForgetsItsLengthOnly) {
  server.Answer(Page("ok"));
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  socket.SetPostContent("a\r\n\0b"s, "text/x ");
#pragma GCC diagnostic pop
  socket.Post(Url("/1"), kPatience);
  socket.Post(Url("/2"), kPatience);
  socket.SetRequestContent("", "");
  socket.SendRequest("PUT", Url("/3"), kPatience);
  const std::string type = "\r\nContent-type: text/x ", head = " HTTP/1.0\r\n" + kDefaults + HostLine();
  const std::string content = type + "\r\nContent-length: 5\r\n\r\na\r\n\0b"s;
  EXPECT_EQ(server.Requests(), Lines({"POST /1" + head + content, "POST /2" + head + content,
                                      "PUT /3" + head + type + "\r\n\r\n"}));
}

TEST_F(HTTP, EncodesFormsByWholeReplacement) {
  server.Answer(Page("ok"));
  socket.SetFormData(Dictionary({{"a b"s, "1&2=3%"s}, {"n"s, std::int64_t{7}}, {"\xC3\xA9?"s, "\r\n"s}}));
  socket.Post(Url("/"), kPatience);
  EXPECT_EQ(server.Requests().at(0).substr(server.Requests().at(0).find("Content-type")),
            "Content-type: application/x-www-form-urlencoded\r\nContent-length: 31\r\n\r\n"
            "a+b=1%262%3D3%25&n=7&\xC3\xA9?=%0D%0A");
  EXPECT_EQ(socket.EncodeFormData(Dictionary({{"k"s, "%&=,/\\][{}`~-_()*^$#!+;<>"s}})),
            "k=%25%26%3D%2C%2F%5C%5D%5B%7B%7D%60%7E%2D%5F%28%29%2A%5E%24%23%21%2B%3B%3C%3E");
  EXPECT_EQ(socket.EncodeFormData(Dictionary()), "");
  socket.SetFormData(std::nullopt);
  socket.ClearRequestHeaders();
  socket.Get(Url("/"), kPatience);
  EXPECT_EQ(server.Requests().at(1), "GET / HTTP/1.0\r\n" + HostLine() + "\r\n\r\n");
}

TEST_F(HTTP, RequestHeadersStayUntilTheyAreCleared) {
  server.Answer(Page("ok"));
  socket.SetRequestHeader("X-A", "1\r\nX-Evil: 2");
  socket.SetRequestHeader("accept-language", "");
  socket.GetRequestHeaders()->AppendHeader("X-A", "3");
  socket.Get(Url("/"), kPatience);
  EXPECT_EQ(server.Requests().at(0),
            "GET / HTTP/1.0\r\nAccept: */*\r\nX-A: 1X-Evil: 2\r\nX-A: 3\r\n" + HostLine() + "\r\n\r\n");
}

TEST_F(HTTP, AsksAProxyForTheWholeURL) {
  server.Answer(Page("via"));
  socket.HTTPProxyAddress = "127.0.0.1";
  socket.HTTPProxyPort = server.Port();
  EXPECT_EQ(socket.Get("http://far.example:8080/p?q", kPatience), "via");
  EXPECT_EQ(server.Requests(), Lines({"GET http://far.example:8080/p?q HTTP/1.0\r\n" + kDefaults +
                                      "Host: far.example:8080\r\n\r\n"}));
  HTTPSocket fresh;
  fresh.HTTPProxyAddress = "\x01";
  fresh.Get("http://far.example:8080/p?q", 1);
  EXPECT_EQ(fresh.Port, 80) << "of a proxy without a port";
}

TEST_F(HTTP, HeadHasHeadersAndNoBody) {
  server.Answer("HTTP/1.0 200 OK\r\nContent-Length: 99\r\nX: y\r\n\r\n");
  socket.SetRequestContent("dropped", "text/plain");
  const auto headers = socket.GetHeaders(Url("/h"), kPatience);
  ASSERT_NE(headers, nullptr);
  EXPECT_EQ(headers->_FormatHTTPHeaders(), "Content-Length: 99\r\nX: y");
  EXPECT_EQ(server.Requests(), Lines({"HEAD /h HTTP/1.0\r\n" + kDefaults + HostLine() + "\r\n\r\n"}));
  EXPECT_EQ(socket.ErrorCode(), 0);
  EXPECT_EQ(socket.GetHeaders("127.0.0.1:1/", kPatience), nullptr) << "these are of the request before";
}

TEST_F(HTTP, EveryStatusIsAPage) {
  for (const std::string& row :
       Split("404~HTTP/1.0 404 Not Found|302~HTTP/1.1 302 Found\r\nLocation: /x|500~ICY 500|401~HTTP/1.0 401 "
             "Who|0~HTTP/1.0|0~nonsense \xFF|204~HTTP/1.0 204.9 x|2147483647~HTTP/1.0 4294967697 "
             "x|-7~HTTP/1.0 -7",
             "|")) {
    const int status = std::stoi(row);
    const std::string head = NthField(row, "~", 2);
    LoopbackServer own;
    own.Answer(head + "\r\nContent-Length: 4\r\n\r\npage"s);
    EXPECT_EQ(socket.Get(own.Host() + "/", kPatience), "page") << head;
    EXPECT_EQ(socket.HTTPStatusCode(), status) << head;
    EXPECT_EQ(socket.ErrorCode(), 0) << head;
    EXPECT_EQ(own.Requests().size(), 1u) << head;
  }
}

TEST_F(HTTP, TheBodyEndsAtItsLengthOrAtTheClose) {
  // The stalled ones end by their length alone.
  const std::string ok = "HTTP/1.0 200 OK\r\n";
  const struct {
    std::string reply;
    Reply::End end;
    const char* body;
  } cases[] = {
      {ok + "Content-Length: 5\r\n\r\nhello", Reply::End::Stall, "hello"},
      {ok + "content-length:5\r\n\r\nhello, world", Reply::End::Stall, "hello"},
      {"HTTP/1.0 200 OK\nContent-Length: 5\n\nhello", Reply::End::Stall, "hello"},
      {"HTTP/1.0 200 OK\rContent-Length: 5\r\rhello", Reply::End::Stall, "hello"},
      {ok + "X: y\n\nhello", Reply::End::Close, "hello"},
      {"\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "\r\nhello\r\n\r\n", Reply::End::Close, "hello\r\n\r\n"},
      {ok + "Content-Length: 0\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: 99\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: 99\r\n\r\nhello", Reply::End::Reset, "hello"},
      {ok + "Content-Length: 99999999999999999999999\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: -99999999999999999999999\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: -3\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: five\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: 5x\r\nContent-Length: 7\r\n\r\nhello", Reply::End::Stall, "hello"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n", Reply::End::Close,
       "5\r\nhello\r\n0\r\n\r\n"},
      {ok + "\r\n", Reply::End::Close, ""},
      {"", Reply::End::Close, ""},
  };
  for (const auto& c : cases) {
    for (const std::size_t piece : {0U, 1U, 7U}) {
      LoopbackServer own;
      own.Answer(Reply{c.reply, c.end, piece});
      HTTPSocket fresh;
      EXPECT_EQ(fresh.Get(own.Host() + "/", kPatience), c.body) << c.reply << piece;
      EXPECT_EQ(fresh.ErrorCode(), 0) << c.reply;
      EXPECT_FALSE(fresh.IsConnected()) << c.reply;
    }
  }
}

TEST_F(HTTP, OneObjectMakesManyRequests) {
  for (const std::string& reply : {"HTTP/1.0 404 No\r\nX: 1\r\nContent-Length: 3\r\n\r\none"s,
                                   OpenPage("second"), OpenPage(""), Page("4")}) {
    server.Answer(reply);
  }
  EXPECT_EQ(socket.Get(Url("/1"), kPatience), "one");
  EXPECT_EQ(socket.LastErrorCode(), 0) << "ended by the length";
  EXPECT_EQ(socket.Get(Url("/2"), kPatience), "second");
  EXPECT_EQ(socket.ErrorCode(), 0);
  EXPECT_EQ(socket.LastErrorCode(), 10001) << "ended by the peer";
  EXPECT_EQ(socket.HTTPStatusCode(), 200);
  EXPECT_EQ(socket.PageHeaders(), nullptr) << "nil for a reply without headers";
  EXPECT_EQ(socket.Get(Url("/3"), kPatience), "");
  EXPECT_EQ(socket.Get(Url("/4"), kPatience), "4");
  EXPECT_EQ(socket.Get("127.0.0.1:1/", kPatience), "") << "nothing of the earlier page";
  EXPECT_EQ(socket.ErrorCode(), ECONNREFUSED);
  EXPECT_EQ(socket.HTTPStatusCode(), 200) << "of the last reply until a connection stands";
}

TEST_F(HTTP, ALengthThatWasNotReachedBoundsNoLaterPage) {
  server.Answer("HTTP/1.0 200 OK\r\nContent-Length: 99\r\n\r\nhello");
  server.Answer(OpenPage(std::string(200, 'b')));
  EXPECT_EQ(socket.Get(Url("/"), kPatience), "hello");
  EXPECT_EQ(socket.Get(Url("/"), 5), std::string(200, 'b'));
  EXPECT_EQ(socket.ErrorCode(), 0);
}

TEST_F(HTTP, DownloadsIntoAFile) {
  const std::string body(700'000, 'b');
  server.Answer(Page(body));
  WriteFile(folder / "f", "old");
  EXPECT_TRUE(socket.Get(Url("/"), File("f"), kPatience));
  EXPECT_EQ(ReadFile(folder / "f"), body);
  EXPECT_EQ(folder.Count(), 1u);
  EXPECT_EQ(socket.Get(Url("/"), kPatience), body) << "the next page is kept in memory again";
  const std::size_t before = server.Requests().size();
  EXPECT_FALSE(socket.Get(Url("/"), File(""), kPatience));
  EXPECT_FALSE(socket.Post(Url("/"), File("none/f"), kPatience));
  EXPECT_EQ(socket.ErrorCode(), kErrorDownloadFile);
  EXPECT_EQ(server.Requests().size(), before) << "no connection";
  EXPECT_FALSE(socket.Get(Url("/"), std::make_shared<FolderItem>("/dev/full"), kPatience));
  EXPECT_EQ(socket.ErrorCode(), ENOSPC);
}

// The event road: what was raised, one line each.
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
  server.Answer(Page("hello"));
  server.Answer(OpenPage("open"));
  socket.Get(Url("/1"));
  EXPECT_EQ(seen, Lines()) << "the call only starts it";
  EXPECT_EQ(Wait(), Lines({"connected", "headers 200 1", "progress 5/5 hello", "page http:///1 hello"}));
  socket.Get(Url("/2"), File("f"));
  EXPECT_EQ(Wait(), Lines({"connected", "headers 200 0", "progress 4/0 open", "file open"}));
  socket.Get("127.0.0.1:1/");
  EXPECT_EQ(Wait(), Lines({"error 111"}));
  socket.Get(Url("/3"), File(""));
  EXPECT_EQ(Wait(), Lines({"error 1"}));
  socket.Get(Url("/a\rb"));
  EXPECT_EQ(Wait(), Lines({"error 10004"}));
  EXPECT_EQ(socket.Get(Url("/4"), kPatience), "open");
  EXPECT_EQ(seen, Lines()) << "the blocking road raises none";
}

TEST_F(Events, BeginEachKindOfRequest) {
  server.Answer(Page("ok"));
  socket.Post(Url("/1"));
  Wait();
  socket.Post(Url("/2"), File("f"));
  Wait();
  EXPECT_TRUE(socket.Post(Url("/3"), File("f"), kPatience));
  socket.HeadersReceived = [this](const InternetHeaders&, int) { done = true; };
  socket.GetHeaders(Url("/4"));
  Wait();
  std::string begun;
  for (const std::string& request : server.Requests())
    begun += request.substr(0, request.find(" HTTP")) + "|";
  EXPECT_EQ(begun, "POST /1|POST /2|POST /3|HEAD /4|");
}

// As a disk does that keeps a quota only when the file is closed.
TEST_F(Events, ADownloadThatCantBeClosedIsAnError) {
  server.Answer(Page("body"));
  closesBadly = folder / "f";
  EXPECT_FALSE(socket.Get(Url("/"), File("f"), kPatience));
  EXPECT_EQ(socket.ErrorCode(), EDQUOT);
  socket.Get(Url("/"), File("f"));
  EXPECT_EQ(Wait().back(), "error " + std::to_string(EDQUOT));
  closesBadly.clear();
  EXPECT_TRUE(socket.Get(Url("/"), File("f"), kPatience));
}

TEST_F(Events, AHandlerMayAskForTheNextPage) {
  server.Answer(Page("one"));
  server.Answer(OpenPage("two"));
  Lines pages;
  socket.PageReceived = [&](const std::string&, int, HTTPSocket::HeadersPtr, const std::string& content) {
    pages.push_back(content);
    if (pages.size() < 3) {
      socket.Get(Url("/"));
    } else {
      done = true;
    }
  };
  socket.Get(Url("/"));
  Wait();
  EXPECT_EQ(pages, Lines({"one", "two", "two"}));
}

}  // namespace
