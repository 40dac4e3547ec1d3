#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/network/CoverageReader.h"
#include "client/ranges/FileAhead.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// The coverages and files of the web that an export reads through. While this lives, what fetches them knows
/// which part of each is going to be read.
class SourcePassages {
 public:
  struct Each {
    std::shared_ptr<CoverageReader> reader;
    std::shared_ptr<CoveragePassage> passage;
  };

  /// Sources that cannot be had are left out: whoever reads them is told why.
  /// @param order of the service's sources, bottom first.
  SourcePassages(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                 const OutputGrid& grid, CoveragePassage::Kind kind);

  /// Whoever reads for the export works under a scope of it.
  [[nodiscard]] const CancelToken& readers() const { return readers_; }
  /// The coverages.
  [[nodiscard]] const std::vector<Each>& all() const { return all_; }
  /// Ends what is underway; whoever reads them fails.
  void giveUp() const;
  /// Made so far, and the bytes of their answers.
  [[nodiscard]] std::uint64_t requests() const;
  [[nodiscard]] std::uint64_t bytes() const;

 private:
  void addCoverage(const ImageSource& source, const OutputGrid& grid, CoveragePassage::Kind kind);
  void addFile(const ImageSource& source, const OutputGrid& grid);

  CancelToken readers_;
  std::vector<Each> all_;
  std::vector<std::shared_ptr<FileAhead>> files_;
};

}  // namespace vlclientui::client
