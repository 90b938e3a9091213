// The reply: a state machine over incoming bytes. Its only state is whether the headers are complete.

#include <algorithm>
#include <climits>
#include <utility>

#include "http/HTTPSocket.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

namespace {
constexpr std::int64_t kReserveFrom = 1 << 20;  // bytes of the body
}

void HTTPSocket::Event_Connected() {
  _connectionValid = true;
  _ResetVariables();
  if (!synchronous && Connected) Connected();
  if (_httpAction.empty()) _httpAction = "GET";
  _SendRequest(_httpAction);
}

void HTTPSocket::Event_DataAvailable() { _HandleNewData(); }

void HTTPSocket::Event_Error() {
  const bool wasValid = _connectionValid;
  _connectionValid = false;
  if (!wasValid) {
    SetError(LastErrorCode());
  } else if (!Lookahead().empty()) {
    _HandleNewData();
  } else {
    _ProcessPage();
  }
}

void HTTPSocket::_HandleNewData() {
  if (std::exchange(threadProtection, true)) return;
  struct Protection {
    bool& held;
    ~Protection() { held = false; }
  } protection{threadProtection};

  if (_pageHeaders) return _ProcessData(Read(_contentlength));

  const bool found = _headerEnd.FindIn(Lookahead());
  const std::size_t length = found ? _headerEnd.Position() : Lookahead().size();
  if (length > kLargestHeaders) return Close(), Purge(), Refuse(kErrorReplyTooLarge);
  if (!found) return;
  _ParseHeaders(length == 0 ? "" : Read(static_cast<std::int64_t>(length)));
  const char* kind = _httpStatusCode == 401 ? "WWW" : _httpStatusCode == 407 ? "Proxy" : nullptr;
  if (kind && _SetAuthentication(kind)) return _DoConnect(_processingURL, _httpAction, _downloadFile);
  if (!synchronous && HeadersReceived) HeadersReceived(*_pageHeaders, _httpStatusCode);
  Read(Len(_headerEnd.Eol()) * 2);
  if (_pageHeaders->_HasHeader("content-length")) {
    // Below 1 means no length; clamping also prevents overflow.
    _contentlength = std::max<std::int64_t>(ToInteger(CDbl(_pageHeaders->Value("content-length"))), 0);
  }
  _ProcessData(_contentlength != 0 ? Read(_contentlength) : ReadAll());
}

void HTTPSocket::_ParseHeaders(const std::string& text) {
  const std::string eol = InternetHeaders::_DetermineEOLCharacter(text);
  _pageHeaders = std::make_shared<InternetHeaders>();
  const std::int64_t status = ToInteger(Val(NthField(NthField(text, eol, 1), " ", 2)));
  _httpStatusCode = static_cast<int>(std::clamp<std::int64_t>(status, INT_MIN, INT_MAX));
  _pageHeaders->_ParseHeaders(text);
  if (_pageHeaders->NameCount("Content-length") >= 1) {
    _totalLength = ToInteger(Val(_pageHeaders->Value("Content-length")));
  }
}

void HTTPSocket::_ProcessData(const std::string& data) {
  if (_httpAction == "HEAD") return;
  _currentLength += LenB(data);
  _contentlength -= LenB(data);
  // The limit applies to a body in memory only; a file may fill the disk.
  if (!_downloadStream && _currentLength > kLargestBody) {
    _pageBuffer->Bytes() = std::string();
    _currentLength = 0;
    return Close(), Purge(), Refuse(kErrorReplyTooLarge);
  }
  // Reserves the declared length once part of the body has arrived, so that growth does not move it.
  if (!_downloadStream && _currentLength >= kReserveFrom && _totalLength <= kLargestBody) {
    _pageBuffer->Bytes().reserve(static_cast<std::size_t>(std::max<std::int64_t>(_totalLength, 0)));
  }
  try {
    (_downloadStream ? _downloadStream : _pageBufferStream)->Write(data);
  } catch (const IOException& e) {
    // Such as a full disk: the download ends.
    Close();
    _KillDownloadStream();
    return SetError(e.ErrorNumber());
  }
  if (!synchronous && ReceiveProgress) ReceiveProgress(_currentLength, _totalLength, data);
  if ((_httpStatusCode == 401 || _httpStatusCode == 407) && !IsConnected()) return _ProcessPage();
  if (_totalLength >= 1 && _totalLength <= _currentLength) {
    Close();
    _ProcessPage();
  }
}

void HTTPSocket::_ProcessPage() {
  if (_pageComplete) return;
  _pageComplete = true;
  const FolderItemPtr file = _downloadFile;
  if (const int error = _KillDownloadStream()) return SetError(error);
  if (_httpAction == "HEAD" || synchronous) return;
  if (file) {
    if (DownloadComplete) DownloadComplete(_processingURL, _httpStatusCode, _pageHeaders, file);
  } else if (PageReceived) {
    PageReceived(_processingURL, _httpStatusCode, _pageHeaders, PageText());
  }
}

// Moves the body out; the buffer is empty until the next request.
std::string HTTPSocket::PageText() {
  return _currentLength < 1 ? "" : std::exchange(_pageBuffer->Bytes(), {});
}
