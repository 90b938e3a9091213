// Challenges and the answers to them, recomputed from the fields that were sent (RFC 2617).

#include <gtest/gtest.h>

#include <set>

#include "http/HTTPSocket.h"
#include "runtime/Digest.h"
#include "runtime/Text.h"
#include "support/LoopbackServer.h"
#include "support/rows.h"

namespace {

constexpr std::int64_t kPatience = 60;  // seconds; no test takes as long
const std::string kName = "Mu, \xC3\xA9", kPassword = "pass:word";

std::string Challenge(const std::string& kind, const std::string& value) {
  return "HTTP/1.0 " + std::string(kind == "WWW" ? "401" : "407") + " No\r\n" + kind +
         "-Authenticate: " + value + "\r\nContent-Length: 4\r\n\r\nlock";
}

std::string Hash(const std::string& text) { return HTTPSocket::_EncodeHex(MD5(text)); }

// The Digest value of these, with the client's nonce of the one that was sent.
std::string Digest(const std::string& sent, const std::string& realm, const std::string& nonce,
                   const std::string& count, const std::string& method, const std::string& uri) {
  const std::string own = NthField(NthField(sent, "cnonce=\"", 2), "\"", 1);
  const std::string response = Hash(Hash(kName + ":" + realm + ":" + kPassword) + ":" + nonce + ":" + count +
                                    ":" + own + ":auth:" + Hash(method + ":" + uri));
  return "Digest username=\"" + kName + "\", realm=\"" + realm + "\", nonce=\"" + nonce + "\", uri=\"" + uri +
         "\", qop=auth, nc=" + count + ", cnonce=\"" + own + "\", response=\"" + response + "\", ";
}

struct Authentication : testing::Test {
  Authentication() {
    for (const std::string kind : {"WWW", "Proxy"}) {
      (kind == "WWW" ? socket.AuthenticationRequired : socket.ProxyAuthenticationRequired) =
          [this, kind](const std::string& realm, const InternetHeaders& headers, std::string& name,
                       std::string& password) {
            asked.push_back(kind + " " + realm + "|" + headers.Value(kind + "-authenticate"));
            for (int i = 0; i < 500 && pollsInHandler && socket.IsConnected(); ++i)
              socket.Poll(), socket.Wait(100);
            name = kName, password = kPassword;
            return hasCredentials;
          };
    }
    socket.PageReceived = [this](const std::string&, int, HTTPSocket::HeadersPtr,
                                 const std::string& content) { page = content; };
  }
  // The page, by a blocking request or by events.
  std::string Ask(bool blocking) {
    page = "";
    if (blocking) return socket.Post(url, kPatience);
    socket.Post(url);
    for (int i = 0; i < 500 && page.empty(); ++i) socket.Wait(100), socket.Poll();
    return page;
  }

  LoopbackServer server;
  HTTPSocket socket;
  std::string url = "http://" + server.Host() + "/a,b?c=\xC3\xA9";
  std::vector<std::string> asked;
  std::string page;
  bool hasCredentials = true, pollsInHandler = false;
};

struct BothKinds : Authentication, testing::WithParamInterface<std::tuple<bool, std::string>> {
  const bool blocking = std::get<0>(GetParam());
  const std::string kind = std::get<1>(GetParam());
  const std::string header = kind == "WWW" ? "Authorization" : "Proxy-Authorization";
};

TEST_P(BothKinds, BasicCredentialsAreSentAndKept) {
  server.Answer(Challenge(kind, "Basic realm=\"a, b\""));
  server.Answer(Page("open"));
  EXPECT_EQ(Ask(blocking), "open");
  EXPECT_EQ(Ask(blocking), "open");
  EXPECT_EQ(asked, std::vector<std::string>({kind + " a, b|Basic realm=\"a, b\""}));
  const std::string first = server.Requests().at(0);
  const std::string key = header + ": Basic " + EncodeBase64(kName + ":" + kPassword, 0);
  const std::string answer = Replace(first, "\r\n\r\n", "\r\n" + key + "\r\n\r\n");
  EXPECT_EQ(server.Requests(), std::vector({first, answer, answer}));
  EXPECT_EQ(socket.GetRequestHeaders()->NameCount(header), 0) << "the key is sent, but not kept as a header";
}

TEST_P(BothKinds, DigestGetsTheRightResponse) {
  const std::string first = "Digest realm=\"r, s\", nonce=\"n1,=\", qop=auth, algorithm=MD5, opaque=\"o==\"";
  server.Answer(Challenge(kind, first));
  server.Answer(Challenge(kind, first));
  server.Answer(Challenge(kind, "Digest realm=\"r, s\",nonce=\"n2\",stale=true"));
  server.Answer(Challenge(kind, "Digest realm=\"r, s\", opaque=\"\""));
  server.Answer(Page("open"));
  EXPECT_EQ(Ask(blocking), "open");
  const auto requests = server.Requests();
  ASSERT_EQ(requests.size(), 5u);
  const auto rows =
      Rows("n1,=~00000001~opaque=\"o==\"|n1,=~00000002~opaque=\"o==\"|n2~00000001~|n2~00000002~opaque=\"\"");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string sent = NthField(NthField(requests[i + 1], header + ": ", 2), "\r\n", 1);
    EXPECT_EQ(sent, Digest(sent, "r, s", rows[i][0], rows[i][1], "POST", url) + rows[i][2]);
  }
}

TEST_P(BothKinds, AnUnansweredChallengeIsAPage) {
  const auto isPage = [&](const std::string& reply) {
    server.AnswerAt("/a,b?c=\xC3\xA9", Reply{reply, Reply::End::Close, 1});
    EXPECT_EQ(Ask(blocking), "lock") << reply;
    EXPECT_EQ(socket.HTTPStatusCode(), kind == "WWW" ? 401 : 407);
    EXPECT_EQ(socket.ErrorCode(), 0);
  };
  for (const char* challenge : {"Basic", "Negotiate abc", "basic realm=\"x\"", "Digest", ""})
    isPage(Challenge(kind, challenge));
  EXPECT_EQ(asked.size(), 5u) << "credentials were requested all the same";
  hasCredentials = false;
  isPage(Challenge(kind, "Basic realm=\"x\""));
  pollsInHandler = true;  // so that the reply ends before the answer to its challenge
  isPage(Replace(Challenge(kind, "Basic realm=\"x\""), "Content-Length", "X"));
  socket.AuthenticationRequired = socket.ProxyAuthenticationRequired = nullptr;
  isPage(Challenge(kind, "Basic realm=\"x\""));
  for (const std::string& request : server.Requests()) EXPECT_EQ(request.find(header), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(, BothKinds, testing::Combine(testing::Bool(), testing::Values("WWW", "Proxy")));

TEST_F(Authentication, ChallengesAreCutAtCommasOutsideQuotationMarks) {
  const Dictionary params = socket._ParseAuthenticationParams(
      "\"k,k\"=v, Realm=\"a, b\\\", c=d\" ,nonce = \"x=y\",qop=auth,  algorithm=MD5 , empty=\"\", bare, none=,=v, "
      "last=\"z\\\\\", end=e\"");
  std::string read;
  for (std::int64_t i = 0; i < params.Count(); ++i) {
    read += ToString(params.Key(i)) + "<" + ToString(params.Value(params.Key(i))) + ">";
  }
  EXPECT_EQ(
      read,
      "\"k,k\"<v>Realm<a, b\\\", c=d>nonce<x=y>qop<auth>algorithm<MD5>empty<>none<><v>last<z\\\\>end<e\">");
}

TEST_F(Authentication, ValuesMatchThePublishedExamples) {
  EXPECT_EQ(socket._CreateAuthenticationData("Basic", "Aladdin", "open sesame", Dictionary()),
            "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
  EXPECT_EQ(Hash("Mufasa:testrealm@host.com:Circle Of Life"), "939e7578ed9e3c518a452acee763bce9");
}

TEST_F(Authentication, NoncesAreCountedForEachObjectWithoutCase) {
  for (const auto& row : Rows("~00000001|a~00000001|b~00000001|A~00000002")) {
    const Dictionary challenge({{"nonce", row[0]}});
    const std::string value = socket._CreateAuthenticationData("Digest", kName, kPassword, challenge);
    EXPECT_EQ(value, Digest(value, "", row[0], row[1], "GET", "/"));
  }
}

TEST_F(Authentication, OwnNoncesConsistOfLettersAndDigits) {
  std::set<char> letters;
  for (int i = 0; i < 400; ++i)
    for (const char letter : HTTPSocket::_CreateNonce()) letters.insert(letter);
  EXPECT_EQ(std::string(letters.begin(), letters.end()),
            "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
}

}  // namespace
