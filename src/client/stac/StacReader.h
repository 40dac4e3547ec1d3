#pragma once

#include <memory>
#include <string_view>

#include "client/stac/StacDocuments.h"

namespace vlclientui::client {

/// Reads the documents of STAC 1.0 and 1.1, and of their like as far as they are told in the same words:
/// members of other types than expected count as missing. A document that nests more than 64 deep, or holds
/// numbers that no program can hold, is refused. Keeps its memory from one document to the next; belongs to
/// one thread.
class StacReader {
 public:
  StacReader();
  StacReader(const StacReader&) = delete;
  StacReader& operator=(const StacReader&) = delete;
  ~StacReader();

  [[nodiscard]] OrStacProblem<StacDocument> read(std::string_view text);

 private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
};

}  // namespace vlclientui::client
