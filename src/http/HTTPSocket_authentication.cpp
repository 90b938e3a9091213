// Basic and Digest authentication (RFC 2617): the caller provides name and password for a challenge, and the
// request is sent again.

#include "http/HTTPSocket.h"
#include "runtime/Application.h"
#include "runtime/Digest.h"
#include "runtime/Numbers.h"
#include "runtime/Random.h"
#include "runtime/Text.h"

namespace {

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

}  // namespace

bool HTTPSocket::_SetAuthentication(const std::string& kind) {
  const std::string challenge = _pageHeaders->Value(kind + "-Authenticate");
  const std::string scheme = Left(challenge, InStr(0, challenge, " ") - 1);
  Dictionary params = _ParseAuthenticationParams(Mid(challenge, Len(scheme) + 2));
  params.SetValue("method", _httpAction);
  params.SetValue("uri", _processingURL);
  _lastServerNonce = ToString(params.Lookup("nonce", _lastServerNonce));
  params.SetValue("nonce", _lastServerNonce);
  const Credentials& ask = kind == "Proxy" ? ProxyAuthenticationRequired : AuthenticationRequired;
  std::string name, password;
  if (!ask || !ask(ToString(params.Lookup("realm", "")), *_pageHeaders, name, password)) return false;
  const std::string data = _CreateAuthenticationData(scheme, name, password, params);
  if (data.empty()) return false;
  (kind == "Proxy" ? _proxyAuthenticationKey : _authenticationKey) = data;
  return true;
}

// Each item between commas outside quotation marks is name=value or name="value", with blanks around either.
// An item without "=" is skipped.
Dictionary HTTPSocket::_ParseAuthenticationParams(const std::string& text) const {
  Dictionary params;
  std::string item;
  const auto finish = [&] {
    if (const std::size_t equals = item.find('='); equals != std::string::npos) {
      const std::string value = Trim(item.substr(equals + 1));
      const bool hasMarks = value.size() >= 2 && value.front() == '"' && value.back() == '"';
      params.SetValue(Trim(item.substr(0, equals)), hasMarks ? value.substr(1, value.size() - 2) : value);
      RuntimeBackgroundTask();
    }
    item.clear();
  };
  bool quoted = false, escaped = false;
  for (const char c : text) {
    if (c == '"' && !escaped) quoted = !quoted;
    escaped = quoted && c == '\\' && !escaped;
    if (c == ',' && !quoted) {
      finish();
    } else {
      item += c;
    }
  }
  finish();
  return params;
}

std::string HTTPSocket::_CreateAuthenticationData(const std::string& scheme, const std::string& name,
                                                  const std::string& password, const Dictionary& params) {
  if (scheme == "Basic") return "Basic " + EncodeBase64(name + ":" + password, 0);
  if (scheme != "Digest") return "";
  const auto param = [&](const char* key, const char* fallback) {
    return ToString(params.Lookup(key, fallback));
  };
  const std::string nonce = param("nonce", "");
  const std::int64_t count = std::get<std::int64_t>(_Nonces.Lookup(nonce, std::int64_t{0})) + 1;
  _Nonces.SetValue(nonce, count);
  const std::string nc = Format(static_cast<double>(count), "00000000");
  const std::string cnonce = _CreateNonce();
  const std::string realm = param("realm", "");
  const std::string uri = param("uri", "/");
  const std::string ha1 = _EncodeHex(MD5(name + ":" + realm + ":" + password));
  const std::string ha2 = _EncodeHex(MD5(param("method", "GET") + ":" + uri));
  const std::string response = _EncodeHex(MD5(ha1 + ":" + nonce + ":" + nc + ":" + cnonce + ":auth:" + ha2));
  return "Digest username=" + Quoted(name) + ", realm=" + Quoted(realm) + ", nonce=" + Quoted(nonce) +
         ", uri=" + Quoted(uri) + ", qop=auth, nc=" + nc + ", cnonce=" + Quoted(cnonce) +
         ", response=" + Quoted(response) + ", " +
         (params.HasKey("opaque") ? "opaque=" + Quoted(param("opaque", "")) : "");
}

std::string HTTPSocket::_CreateNonce() {
  static Random random;
  std::string nonce;
  for (int i = 0; i < 25; ++i) {
    const std::int64_t r = random.InRange(0, 61);
    nonce += Chr(r + (r <= 9 ? 48 : r <= 35 ? 55 : 61));
    RuntimeBackgroundTask();
  }
  return nonce;
}

std::string HTTPSocket::_EncodeHex(const std::string& bytes) {
  std::string out;
  for (const char c : bytes) {
    out += Right("00" + Hex(static_cast<unsigned char>(c)), 2);
    RuntimeBackgroundTask();
  }
  return Lowercase(out);
}
