#include "client/output/JpegStrips.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <cpl_vsi.h>
#include <gdal_priv.h>

#include "client/raster/GdalScope.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Bytes = std::string;
using namespace std::string_view_literals;

constexpr std::string_view startOfImage = "\xFF\xD8"sv;
constexpr std::string_view endOfImage = "\xFF\xD9"sv;
// Version 1.1, no density, no thumbnail. Readers take it as a sign that colors are YCbCr.
constexpr std::string_view jfif = "\xFF\xE0\x00\x10JFIF\x00\x01\x01\x00\x00\x01\x00\x01\x00\x00"sv;
constexpr unsigned char baselineFrame = 0xC0;
// At low qualities tables have numbers above 255, which only this kind of frame allows.
constexpr unsigned char extendedFrame = 0xC1;
constexpr unsigned char scan = 0xDA;
constexpr int restartMarkers = 8;

[[noreturn]] void fail() {
  throw RuntimeFailure("The image could not be written: its strips cannot be joined");
}

std::size_t byteAt(const Bytes& bytes, std::size_t at) {
  if (at >= bytes.size()) fail();
  return static_cast<unsigned char>(bytes[at]);
}

Bytes twoBytes(int value) { return {static_cast<char>(value / 256), static_cast<char>(value % 256)}; }

// A stream in three pieces: everything before the scan, the scan's header, its data.
struct Stream {
  Bytes frame;
  Bytes scanHeader;
  Bytes data;
};

Stream parsed(const Bytes& bytes) {
  if (!bytes.starts_with(startOfImage) || !bytes.ends_with(endOfImage)) fail();
  Stream stream;
  std::size_t at = startOfImage.size();
  while (stream.scanHeader.empty()) {
    const std::size_t marker = byteAt(bytes, at + 1);
    const std::size_t length = byteAt(bytes, at + 2) * 256 + byteAt(bytes, at + 3) + 2;
    if (marker == baselineFrame || marker == extendedFrame) stream.frame = bytes.substr(at, length);
    if (marker == scan) stream.scanHeader = bytes.substr(at, length);
    at += length;
  }
  if (stream.frame.empty() || at + endOfImage.size() > bytes.size()) fail();
  stream.data = bytes.substr(at, bytes.size() - at - endOfImage.size());
  return stream;
}

Bytes fromHex(std::string_view text) {
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    bytes += static_cast<char>(std::strtol(std::string(text.substr(i, 2)).c_str(), nullptr, 16));
  }
  return bytes;
}

struct FileCloser {
  void operator()(VSILFILE* file) const { VSIFCloseL(file); }
};
using FilePtr = std::unique_ptr<VSILFILE, FileCloser>;

class StripFile {
 public:
  explicit StripFile(const std::string& file)
      : dataset_(openRaster(file)), file_(VSIFOpenL(file.c_str(), "rb")) {
    if (!dataset_ || !file_) fail();
  }

  [[nodiscard]] int columns() const { return dataset_->GetRasterXSize(); }
  [[nodiscard]] int rows() const { return dataset_->GetRasterYSize(); }
  [[nodiscard]] int count() const { return (rows() + jpegStripRows - 1) / jpegStripRows; }

  /// Quantization and Huffman tables without the markers around them.
  [[nodiscard]] Bytes tables() const {
    const Bytes whole = fromHex(item("JPEGTABLES"));
    if (!whole.starts_with(startOfImage) || !whole.ends_with(endOfImage)) fail();
    return whole.substr(startOfImage.size(), whole.size() - startOfImage.size() - endOfImage.size());
  }

  [[nodiscard]] Bytes strip(int index) {
    const std::string place = "_0_" + std::to_string(index);
    const auto offset = std::strtoull(item("BLOCK_OFFSET" + place).c_str(), nullptr, 10);
    const auto size = std::strtoull(item("BLOCK_SIZE" + place).c_str(), nullptr, 10);
    Bytes bytes(size, '\0');
    const bool isRead = VSIFSeekL(file_.get(), offset, SEEK_SET) == 0 &&
                        VSIFReadL(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size();
    if (!isRead) fail();
    return bytes;
  }

 private:
  [[nodiscard]] std::string item(const std::string& name) const {
    const char* value = dataset_->GetRasterBand(1)->GetMetadataItem(name.c_str(), "TIFF");
    if (value == nullptr) fail();
    return value;
  }

  DatasetPtr dataset_;
  FilePtr file_;
};

class JpegFile {
 public:
  explicit JpegFile(const std::string& file) : file_(VSIFOpenL(file.c_str(), "wb")) {
    if (!file_) failWriting();
  }

  void write(const Bytes& bytes) {
    if (VSIFWriteL(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) failWriting();
  }

  void close() {
    if (VSIFCloseL(file_.release()) != 0) failWriting();
  }

 private:
  [[noreturn]] static void failWriting() {
    throw RuntimeFailure("The image could not be written: the disk took not all of it");
  }

  FilePtr file_;
};

// A coding unit spans as many 8-pixel blocks as the first component has more samples than the others.
int unitsOfStrip(const Bytes& frame, int columns) {
  constexpr std::size_t componentCount = 9;
  constexpr std::size_t firstSampling = 11;
  const bool isAlone = byteAt(frame, componentCount) == 1;
  const auto sampling = byteAt(frame, firstSampling);
  const int across = isAlone ? 8 : 8 * static_cast<int>(sampling / 16);
  const int down = isAlone ? 8 : 8 * static_cast<int>(sampling % 16);
  return (columns + across - 1) / across * (jpegStripRows / down);
}

Bytes withRows(Bytes frame, int rows) {
  constexpr std::size_t place = 5;
  return frame.replace(place, 2, twoBytes(rows));
}

}  // namespace

std::vector<std::string> jpegStripOptions(const std::string& quality, int bands) {
  std::vector<std::string> options = {"COMPRESS=JPEG",    "JPEG_QUALITY=" + quality,
                                      "JPEGTABLESMODE=3", "BLOCKYSIZE=" + std::to_string(jpegStripRows),
                                      "BIGTIFF=IF_SAFER", "NUM_THREADS=ALL_CPUS",
                                      "INTERLEAVE=PIXEL"};
  options.push_back(bands == 3 ? "PHOTOMETRIC=YCBCR" : "PHOTOMETRIC=MINISBLACK");
  return options;
}

void joinJpegStrips(const std::string& strips, const std::string& jpeg) {
  const GdalScope scope;
  StripFile file(strips);
  const Stream first = parsed(file.strip(0));
  JpegFile out(jpeg);
  Bytes head(startOfImage);
  head.append(jfif).append(file.tables()).append(withRows(first.frame, file.rows()));
  head.append("\xFF\xDD\x00\x04"sv).append(twoBytes(unitsOfStrip(first.frame, file.columns())));
  out.write(head + first.scanHeader + first.data);
  for (int index = 1; index < file.count(); ++index) {
    const Bytes restart = {'\xFF', static_cast<char>(0xD0 + (index - 1) % restartMarkers)};
    out.write(restart + parsed(file.strip(index)).data);
  }
  out.write(Bytes(endOfImage));
  out.close();
}

}  // namespace vlclientui::client
