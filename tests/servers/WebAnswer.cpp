#include "servers/WebAnswer.h"

#include <memory>

#include <curl/curl.h>

namespace vlclientui::test {
namespace {

constexpr long patience = 60;  // seconds; some faults of servers are that they never answer

std::size_t keep(const char* bytes, std::size_t size, std::size_t count, void* body) {
  static_cast<std::string*>(body)->append(bytes, size * count);
  return size * count;
}

}  // namespace

WebAnswer fetchPlainly(const std::string& address, const std::string& range) {
  const std::unique_ptr<CURL, void (*)(CURL*)> handle(curl_easy_init(), curl_easy_cleanup);
  WebAnswer answer;
  curl_easy_setopt(handle.get(), CURLOPT_URL, address.c_str());
  curl_easy_setopt(handle.get(), CURLOPT_PROXY, "");
  curl_easy_setopt(handle.get(), CURLOPT_TIMEOUT, patience);
  curl_easy_setopt(handle.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, keep);
  curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &answer.body);
  if (!range.empty()) curl_easy_setopt(handle.get(), CURLOPT_RANGE, range.c_str());
  if (curl_easy_perform(handle.get()) != CURLE_OK) return {};
  curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &answer.status);
  char* type = nullptr;
  curl_easy_getinfo(handle.get(), CURLINFO_CONTENT_TYPE, &type);
  if (type != nullptr) answer.type = type;
  return answer;
}

}  // namespace vlclientui::test
