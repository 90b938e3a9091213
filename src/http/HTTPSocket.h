// An HTTP/1.0 client on a plain TCP connection (RFC 1945). No TLS, no redirects, no chunks: a
// reply ends at its Content-Length or at the peer's close, and every status is a page.
//
// The blocking road takes a time-out in seconds and hands the result back. It counts silence, from the
// last change of the connection, of what is still to be sent, or of the body in memory; below 1 there
// is none. The other road returns at once and raises the events while its user calls Wait and Poll.
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

// ErrorCode beyond 0, none, the socket's LastErrorCode of a connection that never stood, and the errno with
// which a download's file could not take the bytes (a full disk, a quota).
inline constexpr int kErrorTimeOut = -1;
inline constexpr int kErrorDownloadFile = 1;  // is a folder, or can't be created or opened
// These two stand in LastErrorCode as well.
inline constexpr int kErrorBadURL = 10004;         // method or URL hold CR, LF or NUL: not sent
inline constexpr int kErrorReplyTooLarge = 10005;  // past a limit below: closed, the body dropped

class HTTPSocket : public TCPSocket {
 public:
  using HeadersPtr = std::shared_ptr<InternetHeaders>;
  static constexpr std::int64_t kLargestBody = std::int64_t{256} << 20;  // bytes of a page in memory
  static constexpr std::size_t kLargestHeaders = std::size_t{1} << 20;   // bytes

  HTTPSocket();

  std::string HTTPProxyAddress;  // "" for none
  std::int64_t HTTPProxyPort = 0;
  bool Yield = false;  // the wait runs the application's event loop as well

  // The body, or what came of it before the time-out; "" if nothing did.
  std::string Get(const std::string& url, std::int64_t timeoutSeconds);
  std::string Post(const std::string& url, std::int64_t timeoutSeconds);
  std::string SendRequest(const std::string& method, const std::string& url, std::int64_t timeoutSeconds);
  // Into file, which is emptied first; true if ErrorCode is 0.
  bool Get(const std::string& url, const FolderItemPtr& file, std::int64_t timeoutSeconds);
  bool Post(const std::string& url, const FolderItemPtr& file, std::int64_t timeoutSeconds);
  bool SendRequest(const std::string& method, const std::string& url, const FolderItemPtr& file,
                   std::int64_t timeoutSeconds);
  // nil if none came for this request.
  HeadersPtr GetHeaders(const std::string& url, std::int64_t timeoutSeconds);

  void Get(const std::string& url) { SendRequest("GET", url); }
  void Get(const std::string& url, const FolderItemPtr& file) { SendRequest("GET", url, file); }
  void Post(const std::string& url) { SendRequest("POST", url); }
  void Post(const std::string& url, const FolderItemPtr& file) { SendRequest("POST", url, file); }
  void GetHeaders(const std::string& url) { SendRequest("HEAD", url); }
  void SendRequest(const std::string& method, const std::string& url) { SendRequest(method, url, nullptr); }
  void SendRequest(const std::string& method, const std::string& url, const FolderItemPtr& file);

  // Raised where they are set; on the blocking road only the two of authentication are.
  std::function<void()> Connected;
  std::function<void(const InternetHeaders& headers, int status)> HeadersReceived;
  std::function<void(std::int64_t soFar, std::int64_t total, const std::string& newData)> ReceiveProgress;
  std::function<void(const std::string& url, int status, HeadersPtr, const std::string& content)>
      PageReceived;
  std::function<void(const std::string& url, int status, HeadersPtr, const FolderItemPtr&)> DownloadComplete;
  std::function<void(int code)> Error;
  // True once name and password are filled in: the request is sent again, as often as it takes.
  using Credentials = std::function<bool(const std::string& realm, const InternetHeaders& headers,
                                         std::string& name, std::string& password)>;
  Credentials AuthenticationRequired;
  Credentials ProxyAuthenticationRequired;

  int ErrorCode() const { return mErrorCode; }
  // Of the last reply, until the next connection stands; 0 and nil before the first.
  int HTTPStatusCode() const { return _httpStatusCode; }
  HeadersPtr PageHeaders() const;
  HeadersPtr GetRequestHeaders() const { return requestHeaders; }
  void ClearRequestHeaders();
  // A value of "" deletes the header. CR, LF and NUL in a value are dropped.
  void SetRequestHeader(const std::string& name, const std::string& value);
  void SetRequestContent(const std::string& content, const std::string& contentType);
  [[deprecated("use SetRequestContent")]] void SetPostContent(const std::string& content,
                                                              const std::string& contentType);
  void SetFormData(const std::optional<Dictionary>& form);  // nullopt is nil: no content
  std::string EncodeFormData(const Dictionary& form) const;
  void SetError(int code);
  void WaitForPage();

  // The pieces of authentication (RFC 2617).
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
  // The errno if the file could not be closed well, 0 if it could.
  int _KillDownloadStream();
  void _SendRequest(const std::string& action);
  void _HandleNewData();
  void _ParseHeaders(const std::string& text);
  void _ProcessData(const std::string& data);
  void _ProcessPage();
  bool _SetAuthentication(const std::string& kind);
  void Refuse(int code);
  bool KeepsWithinLimits();
  std::string PageText();

  int mErrorCode = 0;
  HeadersPtr requestHeaders;
  bool synchronous = false;
  bool threadProtection = false;  // turns away a second _HandleNewData while one runs
  std::int64_t timeoutSeconds = 0;
  std::string _authenticationKey;  // stays for later requests of this object
  std::string _proxyAuthenticationKey;
  std::string _lastServerNonce;
  std::optional<Dictionary> _Nonces;  // how often each server nonce was used
  bool _connectionValid = false;
  std::int64_t _contentlength = 0;  // bytes of the body still to come
  std::int64_t _currentLength = 0;  // bytes of the body so far
  std::int64_t _totalLength = 0;    // as declared; 0 if it was not
  std::int64_t _DefaultPort = 0;
  FolderItemPtr _downloadFile;
  std::shared_ptr<BinaryStream> _downloadStream;
  std::string _httpAction;
  int _httpStatusCode = 0;
  std::shared_ptr<MemoryBlock> _pageBuffer;
  std::shared_ptr<BinaryStream> _pageBufferStream;
  bool _pageComplete = false;
  HeadersPtr _pageHeaders;  // nil until they have been parsed
  HeaderEnd _headerEnd;
  std::string _path;
  std::string _postContent;
  std::string _postContentType;
  std::string _processingURL;
  std::string _server;
};
