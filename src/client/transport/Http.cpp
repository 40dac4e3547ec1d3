#include "client/transport/Http.h"

#include "client/transport/HttpText.h"

namespace vlclientui::client {

std::string headerValue(const std::vector<HttpHeader>& headers, std::string_view name) {
  for (const HttpHeader& header : headers) {
    if (isSameWord(header.name, name)) return header.value;
  }
  return {};
}

std::string HttpAnswer::header(std::string_view name) const { return headerValue(headers, name); }

}  // namespace vlclientui::client
