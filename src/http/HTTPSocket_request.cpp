// The request: connecting, sending and the wait for the reply.

#include <algorithm>
#include <cerrno>
#include <limits>

#include "http/HTTPSocket.h"
#include "runtime/Application.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

namespace {

std::int64_t Deadline(std::int64_t seconds) {
  constexpr std::int64_t kFarAway = std::numeric_limits<std::int64_t>::max() / 120;
  return Ticks() + std::clamp<std::int64_t>(seconds, 0, kFarAway) * 60;
}

// The time until the clock has passed deadline; 0 afterwards.
int MillisecondsPast(std::int64_t deadline) {
  const std::int64_t ticks = std::clamp<std::int64_t>(deadline + 1 - Ticks(), 0, kForever / 1000);
  return static_cast<int>((ticks * 1000 + 59) / 60);
}

}  // namespace

void HTTPSocket::_ResetVariables() {
  if (_pageBufferStream) _pageBufferStream->Close();
  _pageBuffer = std::make_shared<MemoryBlock>(0);
  _pageBufferStream = std::make_shared<BinaryStream>(_pageBuffer);
  _pageHeaders = nullptr;
  _headerEnd.Reset();
  _httpStatusCode = 0;
  _totalLength = 0;
  _currentLength = 0;
  _pageComplete = false;
}

void HTTPSocket::_DoConnect(const std::string& url, const std::string& action, FolderItemPtr file) {
  mErrorCode = 0;
  // Otherwise the previous page would end this request. Its headers and status stay until the next
  // connection is made.
  _pageComplete = false;
  _connectionValid = false;
  _pageBuffer->Bytes().clear();
  _currentLength = 0;
  _contentlength = 0;
  Close();
  if (std::ranges::any_of(url + action, BreaksLines)) return Refuse(kErrorBadURL);
  _ParseURL(url);
  _processingURL = url;
  if (!_SetDownloadFile(file)) return;
  if (!HTTPProxyAddress.empty()) {
    Address = HTTPProxyAddress;
    Port = HTTPProxyPort == 0 ? _DefaultPort : HTTPProxyPort;
  }
  _httpAction = action;
  Purge();
  Connect();
}

void HTTPSocket::_ParseURL(const std::string& url) {
  constexpr std::string_view kSchemeEnd = "://";
  const std::int64_t scheme = InStr(0, url, kSchemeEnd);
  const std::string rest = scheme >= 1 ? Mid(url, scheme + Len(kSchemeEnd)) : url;
  _server = NthField(rest, "/", 1);
  _path = Mid(rest, Len(_server) + 1);
  if (_path.empty()) _path = "/";
  const std::int64_t port = ToInteger(Val(NthField(_server, ":", 2)));
  if (port != 0) Port = port;
  if (Port == 0) Port = _DefaultPort;
  Address = NthField(_server, ":", 1);
}

bool HTTPSocket::_SetDownloadFile(const FolderItemPtr& file) {
  _KillDownloadStream();  // of the previous request; its failure does not count here
  if (!file) return true;
  try {
    if (file->Directory()) throw IOException(EISDIR);
    TextOutputStream::Create(file)->Close();
    _downloadStream = BinaryStream::Create(file, true);
  } catch (const IOException&) {
    SetError(kErrorDownloadFile);
    return false;
  }
  _downloadFile = file;
  return true;
}

int HTTPSocket::_KillDownloadStream() {
  _downloadFile = nullptr;
  const auto stream = std::move(_downloadStream);
  try {
    if (stream) stream->Close();
  } catch (const IOException& e) {
    return e.ErrorNumber();
  }
  return 0;
}

void HTTPSocket::_SendRequest(const std::string& action) {
  requestHeaders->SetHeader("Host", _server);
  if (!_authenticationKey.empty()) SetRequestHeader("Authorization", _authenticationKey);
  if (!_proxyAuthenticationKey.empty()) SetRequestHeader("Proxy-Authorization", _proxyAuthenticationKey);
  if (action == "HEAD") SetRequestContent("", "");
  if (!Trim(_postContentType).empty()) SetRequestHeader("Content-type", _postContentType);
  if (!_postContent.empty()) {
    SetRequestHeader("Content-length", Format(static_cast<double>(LenB(_postContent)), "0"));
  }
  if (!HTTPProxyAddress.empty()) _path = _processingURL;
  const std::string request =
      action + " " + _path + " HTTP/" + Str(1.0, "0.0") + "\r\n" + requestHeaders->_FormatHTTPHeaders();
  if (!_authenticationKey.empty()) SetRequestHeader("Authorization", "");
  if (!_proxyAuthenticationKey.empty()) SetRequestHeader("Proxy-Authorization", "");
  Write(request + "\r\n\r\n" + _postContent);
  SetRequestHeader("Content-length", "");
}

void HTTPSocket::WaitForPage() {
  std::int64_t deadline = Deadline(timeoutSeconds);
  bool lastConnected = false;
  std::int64_t lastSize = 0;
  std::size_t lastToSend = 0;
  while (!_pageComplete && mErrorCode == 0) {
    Wait(timeoutSeconds >= 1 ? MillisecondsPast(deadline) : kForever);
    Poll();
    if (Yield) Application::Current().DoEvents(-1);
    if (_connectionValid != lastConnected) {
      lastConnected = _connectionValid;
      deadline = Deadline(timeoutSeconds);
    } else if (_pageBuffer->Size() != lastSize || BytesToSend() != lastToSend) {
      lastSize = _pageBuffer->Size();
      lastToSend = BytesToSend();
      deadline = Deadline(timeoutSeconds);
    }
    if (timeoutSeconds >= 1 && deadline < Ticks()) {
      Close();
      SetError(kErrorTimeOut);
      break;
    }
    RuntimeBackgroundTask();
  }
}
