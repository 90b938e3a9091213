// Challenges and the answers to them, recomputed from the fields that were sent (RFC 2617).

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "http/HTTPSocket.h"
#include "runtime/Digest.h"
#include "runtime/Text.h"
#include "support/LoopbackServer.h"

namespace {

constexpr std::int64_t kPatience = 60;  // seconds; no test takes as long
using Fields = std::map<std::string, std::string>;

std::string Challenge(const std::string& kind, const std::string& value) {
  return "HTTP/1.0 " + std::string(kind == "WWW" ? "401" : "407") + " No\r\n" + kind +
         "-Authenticate: " + value + "\r\nContent-Length: 4\r\n\r\nlock";
}

// The value of a header of a request, "" if it has none.
std::string Sent(const std::string& request, const std::string& name) {
  return NthField(NthField(request, "\r\n" + name + ": ", 2), "\r\n", 1);
}

// The fields of a Digest value as a server reads them: without quotation marks, cut at commas outside them.
Fields Read(const std::string& value) {
  Fields fields;
  std::string name, text, *into = &name;
  bool quoted = false;
  for (const char c : value.substr(value.find(' ') + 1)) {
    if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && c == '=') {
      into = &text;
    } else if (!quoted && c == ',') {
      fields[Trim(name)] = text, name.clear(), text.clear(), into = &name;
    } else {
      *into += c;
    }
  }
  if (!Trim(name).empty()) fields[Trim(name)] = text;
  return fields;
}

std::string Hash(const std::string& text) { return HTTPSocket::_EncodeHex(MD5(text)); }

std::string ResponseOf(Fields f, const std::string& method, const std::string& password) {
  return Hash(Hash(f["username"] + ":" + f["realm"] + ":" + password) + ":" + f["nonce"] + ":" + f["nc"] +
              ":" + f["cnonce"] + ":" + f["qop"] + ":" + Hash(method + ":" + f["uri"]));
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
            name = "Mu, \xC3\xA9", password = "pass:word";
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
  const auto requests = server.Requests();
  ASSERT_EQ(requests.size(), 3u);
  const std::string key = "Basic " + EncodeBase64("Mu, \xC3\xA9:pass:word", 0);
  EXPECT_EQ(Sent(requests[0], header) + Sent(requests[1], header) + Sent(requests[2], header), key + key);
  EXPECT_EQ(socket.GetRequestHeaders()->NameCount(header), 0) << "the key is sent, but not kept as a header";
  EXPECT_EQ(requests[0], Replace(requests[1], header + ": " + Sent(requests[1], header) + "\r\n", "")
                             .substr(0, requests[0].size()))
      << "otherwise the same request";
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
  const Fields expected[] = {{{"nonce", "n1,="}, {"nc", "00000001"}, {"opaque", "o=="}},
                             {{"nonce", "n1,="}, {"nc", "00000002"}, {"opaque", "o=="}},
                             {{"nonce", "n2"}, {"nc", "00000001"}},
                             {{"nonce", "n2"}, {"nc", "00000002"}, {"opaque", ""}}};
  for (std::size_t i = 1; i < requests.size(); ++i) {
    const std::string value = Sent(requests[i], header);
    Fields sent = Read(value);
    EXPECT_EQ(sent["response"], ResponseOf(sent, "POST", "pass:word")) << value;
    EXPECT_EQ(sent["cnonce"].size(), 25u);
    Fields all = expected[i - 1];
    all.insert({{"username", "Mu, \xC3\xA9"}, {"realm", "r, s"}, {"uri", url}, {"qop", "auth"}});
    all.insert({{"cnonce", sent["cnonce"]}, {"response", sent["response"]}});
    EXPECT_EQ(sent, all) << value;
    EXPECT_EQ(Right(value, 2) == ", ", i == 3) << "a trailing comma without opaque";
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
  for (const std::string& request : server.Requests()) EXPECT_EQ(Sent(request, header), "");
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
  EXPECT_EQ(socket._CreateAuthenticationData("BASIC", "a", "b", Dictionary()), "");
  const Fields bare = Read(socket._CreateAuthenticationData("Digest", "u", "p", Dictionary()));
  EXPECT_EQ(bare.at("uri") + bare.at("realm") + bare.at("nonce") + bare.at("nc"), "/00000001");
  EXPECT_EQ(bare.at("response"), ResponseOf(bare, "GET", "p"));
  const Fields published = {{"username", "Mufasa"}, {"realm", "testrealm@host.com"},
                            {"nc", "00000001"},     {"nonce", "dcd98b7102dd2f0e8b11d0f600bfb0c093"},
                            {"cnonce", "0a4f113b"}, {"uri", "/dir/index.html"},
                            {"qop", "auth"}};
  EXPECT_EQ(ResponseOf(published, "GET", "Circle Of Life"), "6629fae49393a05397450978507c4ef1")
      << "RFC 2617's example confirms this check";
  std::set<char> letters;
  for (int i = 0; i < 400; ++i) {
    const std::string nonce = HTTPSocket::_CreateNonce();
    EXPECT_EQ(nonce.size(), 25u);
    letters.insert(nonce.begin(), nonce.end());
  }
  EXPECT_EQ(std::string(letters.begin(), letters.end()),
            "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
}

TEST_F(Authentication, NoncesAreCountedForEachObjectWithoutCase) {
  for (const auto& [nonce, count] : {std::pair("a", "00000001"), {"b", "00000001"}, {"A", "00000002"}}) {
    const Dictionary challenge({{"nonce", std::string(nonce)}});
    EXPECT_EQ(Read(socket._CreateAuthenticationData("Digest", "u", "p", challenge)).at("nc"), count);
  }
}

}  // namespace
