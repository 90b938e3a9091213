// The public operations.

#include "http/HTTPSocket.h"

#include "runtime/Text.h"

HTTPSocket::HTTPSocket() {
  _ResetVariables();
  _InitializeRequestHeaders();
}

void HTTPSocket::_InitializeRequestHeaders() {
  requestHeaders = std::make_shared<InternetHeaders>();
  requestHeaders->SetHeader("Accept", "*/*");
  requestHeaders->SetHeader("Accept-Language", "en");
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
  const HeadersPtr earlier = _pageHeaders;  // kept until a connection is made
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

void HTTPSocket::ClearRequestHeaders() { requestHeaders->DeleteAllHeaders(); }

void HTTPSocket::SetRequestHeader(const std::string& name, std::string value) {
  std::erase_if(value, BreaksLines);
  value.empty() ? requestHeaders->Delete(name) : requestHeaders->SetHeader(name, value);
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

// Reports a failure as one of the connection.
void HTTPSocket::Refuse(int code) {
  SetLastErrorCode(code);
  SetError(code);
}
