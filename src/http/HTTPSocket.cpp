// The public operations and the request.

#include "http/HTTPSocket.h"

#include <algorithm>
#include <limits>

#include "runtime/Application.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

namespace {

constexpr std::string_view kLineBreakers("\r\n\0", 3);

std::int64_t Deadline(std::int64_t seconds) {
  constexpr std::int64_t kFarAway = std::numeric_limits<std::int64_t>::max() / 120;
  return Ticks() + std::clamp<std::int64_t>(seconds, 0, kFarAway) * 60;
}

// Until the clock has gone past deadline; 0 once it has.
int MillisecondsPast(std::int64_t deadline) {
  const std::int64_t ticks = std::clamp<std::int64_t>(deadline + 1 - Ticks(), 0, kForever / 1000);
  return static_cast<int>((ticks * 1000 + 59) / 60);
}

}  // namespace

HTTPSocket::HTTPSocket() {
  _ResetVariables();
  _InitializeRequestHeaders();
  _DefaultPort = 80;
}

void HTTPSocket::_InitializeRequestHeaders() {
  requestHeaders = std::make_shared<InternetHeaders>();
  requestHeaders->SetHeader("Accept", "*/*");
  requestHeaders->SetHeader("Accept-Language", "en");
}

std::string HTTPSocket::Get(const std::string& url, std::int64_t timeout) {
  return SendRequest("GET", url, timeout);
}

std::string HTTPSocket::Post(const std::string& url, std::int64_t timeout) {
  return SendRequest("POST", url, timeout);
}

std::string HTTPSocket::SendRequest(const std::string& method, const std::string& url, std::int64_t timeout) {
  SendRequest(method, url, nullptr, timeout);
  return PageText();
}

bool HTTPSocket::Get(const std::string& url, const FolderItemPtr& file, std::int64_t timeout) {
  return SendRequest("GET", url, file, timeout);
}

bool HTTPSocket::Post(const std::string& url, const FolderItemPtr& file, std::int64_t timeout) {
  return SendRequest("POST", url, file, timeout);
}

bool HTTPSocket::SendRequest(const std::string& method, const std::string& url, const FolderItemPtr& file,
                             std::int64_t timeout) {
  timeoutSeconds = timeout;
  synchronous = true;
  _DoConnect(url, method, file);
  WaitForPage();
  return mErrorCode == 0;
}

HTTPSocket::HeadersPtr HTTPSocket::GetHeaders(const std::string& url, std::int64_t timeout) {
  const HeadersPtr earlier = _pageHeaders;  // which stay until a connection stands
  SendRequest("HEAD", url, timeout);
  return _pageHeaders == earlier ? nullptr : _pageHeaders;
}

void HTTPSocket::SendRequest(const std::string& method, const std::string& url, const FolderItemPtr& file) {
  synchronous = false;
  _DoConnect(url, method, file);
}

HTTPSocket::HeadersPtr HTTPSocket::PageHeaders() const {
  return _pageHeaders && _pageHeaders->Count() > 0 ? _pageHeaders : nullptr;
}

void HTTPSocket::ClearRequestHeaders() {
  if (requestHeaders) requestHeaders->DeleteAllHeaders();
}

void HTTPSocket::SetRequestHeader(const std::string& name, const std::string& value) {
  if (!requestHeaders) _InitializeRequestHeaders();
  std::string oneLine = value;
  std::erase_if(oneLine, [](char c) { return kLineBreakers.find(c) != std::string_view::npos; });
  if (oneLine.empty()) {
    requestHeaders->Delete(name);
  } else {
    requestHeaders->SetHeader(name, oneLine);
  }
}

void HTTPSocket::SetRequestContent(const std::string& content, const std::string& contentType) {
  _postContent = content;
  _postContentType = contentType;
}

void HTTPSocket::SetPostContent(const std::string& content, const std::string& contentType) {
  SetRequestContent(content, contentType);
}

void HTTPSocket::SetFormData(const std::optional<Dictionary>& form) {
  if (form) {
    SetRequestContent(EncodeFormData(*form), "application/x-www-form-urlencoded");
  } else {
    SetRequestContent("", "");
  }
}

void HTTPSocket::SetError(int code) {
  mErrorCode = code;
  if (!synchronous && Error) Error(code);
}

// A failure that the person is told as one of the connection.
void HTTPSocket::Refuse(int code) {
  SetLastErrorCode(code);
  SetError(code);
}

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
  // What an earlier request left would end this one with the earlier page. Its headers and status
  // stay until the connection stands.
  _pageComplete = false;
  _connectionValid = false;
  _pageBuffer->Bytes().clear();
  _currentLength = 0;
  _contentlength = 0;
  Close();
  if ((url + action).find_first_of(kLineBreakers) != std::string::npos) return Refuse(kErrorBadURL);
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
  if (port != 0) {
    Port = port;
  } else if (Port == 0) {
    Port = _DefaultPort;
  }
  Address = NthField(_server, ":", 1);
}

bool HTTPSocket::_SetDownloadFile(const FolderItemPtr& file) {
  _KillDownloadStream();  // of an earlier request, whose failure is not this one's
  if (!file) return true;
  const auto failed = [this] {
    SetError(kErrorDownloadFile);
    return false;
  };
  if (file->Exists() && file->Directory()) return failed();
  const auto text = file->CreateTextFile();
  if (!text) return failed();
  try {
    text->Close();
    _downloadStream = BinaryStream::Create(file, true);
  } catch (const IOException&) {
    return failed();
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
  if (!requestHeaders) _InitializeRequestHeaders();
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
