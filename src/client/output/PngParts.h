#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "client/raster/WindowReader.h"

namespace vlclientui::client {

/// GDAL's own PNG writer filters and packs in one thread, which takes nearly all the time of an export. Here
/// parts of the rows are filtered and packed side by side, each as pieces of one stream, into a file whose
/// head GDAL wrote.
class PngParts {
 public:
  /// @param file GDAL's path of a PNG with one row of 8 or 16 bits a sample. What stands before and behind
  /// its pixels stays; it is written anew. @param rows of the whole image.
  /// @throws RuntimeFailure when it is of another kind, or cannot be written.
  PngParts(const std::string& file, int rows);
  ~PngParts();
  PngParts(const PngParts&) = delete;
  PngParts& operator=(const PngParts&) = delete;

  /// The next rows of full width, from the top. A mask becomes transparency where the file has one sample
  /// more than there are bands. @throws RuntimeFailure when the file cannot be written.
  void add(const WindowPixels& pixels);
  /// @pre all rows were added. @throws RuntimeFailure when the file cannot be written.
  void close();

 private:
  class File;

  std::unique_ptr<File> file_;
  std::string tail_;
  std::size_t columns_ = 0;
  std::size_t samples_ = 0;  ///< of a pixel
  std::size_t sampleBytes_ = 1;
  bool isPalette_ = false;
  std::vector<std::uint8_t> above_;  ///< the row above the next one; empty before the first
  std::uint32_t sum_ = 1;            ///< that the stream ends with
};

}  // namespace vlclientui::client
