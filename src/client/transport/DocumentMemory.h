#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "client/transport/Http.h"

namespace vlclientui::client {

/// Documents seen before, so that a server need only say that they still hold. What was asked for last stays
/// longest. Belongs to one thread.
class DocumentMemory {
 public:
  /// @param mostBytes of all that is kept; a document of more than a quarter of it is not kept.
  explicit DocumentMemory(std::size_t mostBytes) : mostBytes_(mostBytes) {}

  /// The headers that ask the server whether it still holds; none for what is unknown.
  /// @param key what makes an answer what it is: address, who asks, and in which form.
  [[nodiscard]] std::vector<HttpHeader> conditions(const std::string& key);

  /// Takes note of a whole answer. Without ETag and Last-Modified, or where the server forbids it, nothing is
  /// kept.
  void keep(const std::string& key, const HttpAnswer& answer);

  /// The answer that a 304 stands for; nothing if it was forgotten meanwhile.
  [[nodiscard]] std::optional<HttpAnswer> confirmed(const std::string& key);

  [[nodiscard]] std::size_t bytes() const { return bytes_; }

 private:
  struct Document {
    std::string key;
    HttpAnswer answer;
    std::size_t bytes = 0;
  };
  using Documents = std::list<Document>;

  [[nodiscard]] Documents::iterator find(const std::string& key);
  void drop(Documents::iterator document);

  std::size_t mostBytes_;
  std::size_t bytes_ = 0;
  Documents documents_;  ///< used last stands first
  std::unordered_map<std::string, Documents::iterator> byKey_;
};

}  // namespace vlclientui::client
