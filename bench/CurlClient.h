// The peer of our HTTP client: libcurl's easy interface with one handle, HTTP/1.0, and a new connection for
// each request.
#pragma once

#include <cstddef>
#include <string>

class CurlClient {
 public:
  CurlClient();
  ~CurlClient();
  CurlClient(const CurlClient&) = delete;
  CurlClient& operator=(const CurlClient&) = delete;

  // The body, in a string that grows; incomplete if the whole request takes longer than timeoutSeconds.
  std::string Get(const std::string& url, long timeoutSeconds);

 private:
  void* handle_;
};
