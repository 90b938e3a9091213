#include "CurlClient.h"

#include <curl/curl.h>

#include <stdexcept>

namespace {

std::size_t TakeBytes(char* bytes, std::size_t size, std::size_t count, void* into) {
  static_cast<std::string*>(into)->append(bytes, size * count);
  return size * count;
}

}  // namespace

CurlClient::CurlClient() : handle_(curl_easy_init()) {
  if (!handle_) throw std::runtime_error("libcurl gives no handle");
  curl_easy_setopt(handle_, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
  curl_easy_setopt(handle_, CURLOPT_FRESH_CONNECT, 1L);
  curl_easy_setopt(handle_, CURLOPT_FORBID_REUSE, 1L);
  curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle_, CURLOPT_PROXY, "");
  curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, &TakeBytes);
}

CurlClient::~CurlClient() { curl_easy_cleanup(handle_); }

std::string CurlClient::Get(const std::string& url, long timeoutSeconds) {
  std::string body;
  curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(handle_, CURLOPT_TIMEOUT, timeoutSeconds);
  curl_easy_setopt(handle_, CURLOPT_WRITEDATA, &body);
  curl_easy_perform(handle_);
  return body;
}
