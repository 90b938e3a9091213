// An HTTP/1.0 client over plain TCP (RFC 1945). No TLS, redirects or chunks: a reply ends at its
// Content-Length or when the peer closes, and a reply with any status is a page.
//
// A blocking request takes a time-out in seconds and returns the result. The time-out restarts when the
// connection is made or lost, when bytes are sent and when the body in memory grows; below 1 there is none.
// The other requests return at once and raise events while the caller calls Wait and Poll. The program itself
// only uses the blocking Get into memory, with Yield.
//
//   request = method " " path " HTTP/1.0" CRLF headers CRLF CRLF content
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "http/HeaderEnd.h"
#include "http/InternetHeaders.h"
#include "runtime/Dictionary.h"
#include "runtime/FolderItem.h"
#include "runtime/Streams.h"
#include "runtime/TCPSocket.h"

// ErrorCode is 0 for no error, the socket's LastErrorCode if no connection was made, the errno of a
// download's file (a full disk, a quota), or one of these.
inline constexpr int kErrorTimeOut = -1;
inline constexpr int kErrorDownloadFile = 1;  // the file is a folder, or cannot be created or opened
// These two are in LastErrorCode as well.
inline constexpr int kErrorBadURL = 10004;         // method or URL contains CR, LF or NUL: not sent
inline constexpr int kErrorReplyTooLarge = 10005;  // a limit below was exceeded: closed, body discarded

class HTTPSocket : public TCPSocket {
 public:
  using HeadersPtr = std::shared_ptr<InternetHeaders>;
  static constexpr std::int64_t kLargestBody = std::int64_t{256} << 20;  // bytes of a page in memory
  static constexpr std::size_t kLargestHeaders = std::size_t{1} << 20;   // bytes

  HTTPSocket();

  std::string HTTPProxyAddress;  // "" for none
  std::int64_t HTTPProxyPort = 0;
  bool Yield = false;  // a blocking request also runs the application's event loop

  // The body, or what arrived of it before the time-out; "" for none.
  std::string Get(const std::string& url, std::int64_t timeout) { return SendRequest("GET", url, timeout); }
  std::string Post(const std::string& url, std::int64_t timeout) { return SendRequest("POST", url, timeout); }
  std::string SendRequest(const std::string& method, const std::string& url, std::int64_t timeout);
  // Downloads into file, which is emptied first; true if ErrorCode is 0.
  bool Get(const std::string& url, const FolderItemPtr& file, std::int64_t timeout);
  bool Post(const std::string& url, const FolderItemPtr& file, std::int64_t timeout);
  bool SendRequest(const std::string& method, const std::string& url, const FolderItemPtr& file,
                   std::int64_t timeout);
  // nil if no reply arrived.
  HeadersPtr GetHeaders(const std::string& url, std::int64_t timeout);

  void Get(const std::string& url) { SendRequest("GET", url); }
  void Get(const std::string& url, const FolderItemPtr& file) { SendRequest("GET", url, file); }
  void Post(const std::string& url) { SendRequest("POST", url); }
  void Post(const std::string& url, const FolderItemPtr& file) { SendRequest("POST", url, file); }
  void GetHeaders(const std::string& url) { SendRequest("HEAD", url); }
  void SendRequest(const std::string& method, const std::string& url) { SendRequest(method, url, nullptr); }
  void SendRequest(const std::string& method, const std::string& url, const FolderItemPtr& file);

  // The events; may be empty. A blocking request only raises the two of authentication.
  std::function<void()> Connected;
  std::function<void(const InternetHeaders& headers, int status)> HeadersReceived;
  std::function<void(std::int64_t soFar, std::int64_t total, const std::string& newData)> ReceiveProgress;
  std::function<void(const std::string& url, int status, HeadersPtr, const std::string& content)>
      PageReceived;
  std::function<void(const std::string& url, int status, HeadersPtr, const FolderItemPtr&)> DownloadComplete;
  std::function<void(int code)> Error;
  // Fills in name and password and returns true to send the request again. Raised for every challenge.
  using Credentials = std::function<bool(const std::string& realm, const InternetHeaders& headers,
                                         std::string& name, std::string& password)>;
  Credentials AuthenticationRequired;
  Credentials ProxyAuthenticationRequired;

  int ErrorCode() const { return mErrorCode; }
  // Of the last reply, until the next connection is made; 0 and nil before the first.
  int HTTPStatusCode() const { return _httpStatusCode; }
  HeadersPtr PageHeaders() const;
  HeadersPtr GetRequestHeaders() const { return requestHeaders; }
  void ClearRequestHeaders();
  // An empty value deletes the header. CR, LF and NUL in a value are dropped.
  void SetRequestHeader(const std::string& name, std::string value);
  void SetRequestContent(const std::string& content, const std::string& contentType);
  [[deprecated("use SetRequestContent")]] void SetPostContent(const std::string& content,
                                                              const std::string& contentType);
  void SetFormData(const std::optional<Dictionary>& form);  // nullopt removes the content
  std::string EncodeFormData(const Dictionary& form) const;
  void SetError(int code);
  void WaitForPage();

  // Parts of authentication (RFC 2617).
  Dictionary _ParseAuthenticationParams(const std::string& text) const;
  std::string _CreateAuthenticationData(const std::string& scheme, const std::string& name,
                                        const std::string& password, const Dictionary& params);
  static std::string _CreateNonce();
  static std::string _EncodeHex(const std::string& bytes);

 protected:
  void Event_Connected() override;
  void Event_DataAvailable() override;
  void Event_Error() override;

 private:
  void _ResetVariables();
  void _InitializeRequestHeaders();
  void _DoConnect(const std::string& url, const std::string& action, FolderItemPtr file);
  void _ParseURL(const std::string& url);
  bool _SetDownloadFile(const FolderItemPtr& file);
  // Closes the file; gives the errno of a failure, or 0.
  int _KillDownloadStream();
  void _SendRequest(const std::string& action);
  void _HandleNewData();
  void _ParseHeaders(const std::string& text);
  void _ProcessData(const std::string& data);
  void _ProcessPage();
  bool _SetAuthentication(const std::string& kind);
  void Refuse(int code);
  // CR, LF and NUL: they could add lines to a request.
  static bool BreaksLines(char c) { return c == '\r' || c == '\n' || c == '\0'; }
  std::string PageText();

  int mErrorCode = 0;
  HeadersPtr requestHeaders;
  bool synchronous = false;
  bool threadProtection = false;  // ignores a nested _HandleNewData
  std::int64_t timeoutSeconds = 0;
  std::string _authenticationKey;  // kept for later requests
  std::string _proxyAuthenticationKey;
  std::string _lastServerNonce;
  Dictionary _Nonces;  // uses of each server nonce
  bool _connectionValid = false;
  std::int64_t _contentlength = 0;  // bytes of the body that are missing
  std::int64_t _currentLength = 0;  // bytes of the body so far
  std::int64_t _totalLength = 0;    // declared bytes of the body; 0 if none
  static constexpr std::int64_t _DefaultPort = 80;
  FolderItemPtr _downloadFile;
  std::shared_ptr<BinaryStream> _downloadStream;
  std::string _httpAction;
  int _httpStatusCode = 0;
  std::shared_ptr<MemoryBlock> _pageBuffer;
  std::shared_ptr<BinaryStream> _pageBufferStream;
  bool _pageComplete = false;
  HeadersPtr _pageHeaders;  // nil until parsed
  HeaderEnd _headerEnd;
  std::string _path;
  std::string _postContent;
  std::string _postContentType;
  std::string _processingURL;
  std::string _server;
};
