#pragma once

#include <string>
#include <variant>

#include "client/transport/Address.h"

namespace vlclientui::client {

/// Where the rasters lie that a document of the web is made of. Whoever wrote it is a stranger, so all of
/// them lie on the server that it comes from.
class WebSources {
 public:
  /// Whether a name counts from the document, or is an address or nothing.
  enum class Told { FromDocument, Whole };
  /// Why a source is not used, as the end of a sentence about it: "lies on another server".
  struct Refusal {
    std::string text;
  };

  /// @param address of the document, absolute.
  explicit WebSources(std::string address);

  /// The whole address of a source.
  [[nodiscard]] std::variant<std::string, Refusal> addressOf(const std::string& told, Told how) const;

 private:
  std::string address_;
  Server server_;
};

}  // namespace vlclientui::client
