#include "client/transport/DocumentMemory.h"

#include <iterator>

#include "client/transport/HttpText.h"

namespace vlclientui::client {
namespace {

// One large document must not drive out all others.
constexpr std::size_t largestShare = 4;

std::size_t sizeOf(const std::string& key, const HttpAnswer& answer) {
  std::size_t bytes = key.size() + answer.body.size();
  for (const HttpHeader& header : answer.headers) bytes += header.name.size() + header.value.size();
  return bytes;
}

bool mayKeep(const HttpAnswer& answer) {
  const bool isKnownAgain = !answer.header("ETag").empty() || !answer.header("Last-Modified").empty();
  const std::string control = smallLetters(answer.header("Cache-Control"));
  return answer.status == 200 && isKnownAgain && control.find("no-store") == std::string::npos &&
         answer.header("Vary") != "*";
}

}  // namespace

DocumentMemory::Documents::iterator DocumentMemory::find(const std::string& key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return documents_.end();
  documents_.splice(documents_.begin(), documents_, found->second);
  return documents_.begin();
}

void DocumentMemory::drop(Documents::iterator document) {
  bytes_ -= document->bytes;
  byKey_.erase(document->key);
  documents_.erase(document);
}

std::vector<HttpHeader> DocumentMemory::conditions(const std::string& key) {
  const auto document = find(key);
  if (document == documents_.end()) return {};
  std::vector<HttpHeader> headers;
  const std::string tag = document->answer.header("ETag");
  const std::string date = document->answer.header("Last-Modified");
  if (!tag.empty()) headers.push_back({"If-None-Match", tag});
  if (!date.empty()) headers.push_back({"If-Modified-Since", date});
  return headers;
}

void DocumentMemory::keep(const std::string& key, const HttpAnswer& answer) {
  const auto former = find(key);
  if (former != documents_.end()) drop(former);
  const std::size_t bytes = sizeOf(key, answer);
  if (!mayKeep(answer) || bytes > mostBytes_ / largestShare) return;
  documents_.push_front({key, answer, bytes});
  byKey_[key] = documents_.begin();
  bytes_ += bytes;
  while (bytes_ > mostBytes_) drop(std::prev(documents_.end()));
}

std::optional<HttpAnswer> DocumentMemory::confirmed(const std::string& key) {
  const auto document = find(key);
  if (document == documents_.end()) return std::nullopt;
  return document->answer;
}

}  // namespace vlclientui::client
