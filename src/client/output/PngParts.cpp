#include "client/output/PngParts.h"

#include <algorithm>
#include <array>
#include <future>
#include <new>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <cpl_vsi.h>
#include <zlib.h>

#include "client/output/PngRows.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Bytes = std::string;
using namespace std::string_view_literals;

constexpr std::string_view signature = "\x89PNG\r\n\x1A\n"sv;
constexpr std::string_view streamHead = "\x78\x01"sv;  // packed fast, with a window of 32 KB
constexpr std::string_view lastBlock = "\x03\x00"sv;   // empty, behind a whole number of bytes
constexpr std::size_t chunkFrame = 12;                 // length, name and sum

[[noreturn]] void failAtHead() {
  throw RuntimeFailure("The image could not be written: the head of a PNG is of another kind");
}

[[noreturn]] void failOnDisk() {
  throw RuntimeFailure("The image could not be written: the disk took not all of it");
}

Bytes fourBytes(std::uint32_t value) {
  return {static_cast<char>(value >> 24U), static_cast<char>(value >> 16U), static_cast<char>(value >> 8U),
          static_cast<char>(value)};
}

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
  if (at + 4 > bytes.size()) failAtHead();
  std::uint32_t value = 0;
  for (const char byte : bytes.substr(at, 4)) value = value << 8U | static_cast<unsigned char>(byte);
  return value;
}

Bytes chunk(std::string_view name, std::string_view data) {
  Bytes named(name);
  named += data;
  const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(named.data()), named.size());
  return fourBytes(static_cast<std::uint32_t>(data.size())) + named +
         fourBytes(static_cast<std::uint32_t>(sum));
}

Bytes contentOf(const std::string& file) {
  VSILFILE* const opened = VSIFOpenL(file.c_str(), "rb");
  if (opened == nullptr) failAtHead();
  Bytes bytes;
  Bytes piece(std::size_t{1} << 16U, '\0');
  while (const std::size_t count = VSIFReadL(piece.data(), 1, piece.size(), opened)) {
    bytes.append(piece, 0, count);
  }
  VSIFCloseL(opened);
  return bytes;
}

// A file in three pieces, of which the pixels are dropped.
struct Around {
  Bytes header;  ///< the data of the first chunk
  Bytes before;  ///< chunks between it and the pixels
  Bytes behind;
};

Around aroundPixels(std::string_view png) {
  if (!png.starts_with(signature)) failAtHead();
  Around around;
  bool isBehind = false;
  for (std::size_t at = signature.size(); at < png.size();) {
    const std::size_t length = numberAt(png, at);
    if (at + chunkFrame + length > png.size()) failAtHead();
    const std::string_view name = png.substr(at + 4, 4);
    const std::string_view whole = png.substr(at, chunkFrame + length);
    if (name == "IHDR") {
      around.header = png.substr(at + 8, length);
    } else if (name == "IDAT") {
      isBehind = true;
    } else {
      (isBehind ? around.behind : around.before) += whole;
    }
    at += whole.size();
  }
  if (!isBehind) failAtHead();
  return around;
}

// What is packed at a time, and what it is packed from.
struct PngPart {
  const WindowPixels& pixels;
  std::size_t firstRow;  ///< in the window
  std::size_t rows;
};

struct Packed {
  Bytes bytes;
  uLong sum = 0;
  std::size_t length = 0;  ///< of what was packed
};

struct PngLayout {
  std::size_t columns;
  std::size_t samples;
  std::size_t sampleBytes;
  bool isPalette;

  [[nodiscard]] std::size_t pixelBytes() const { return samples * sampleBytes; }
};

// Of one band into a row of pixels, the higher byte first.
void placeBand(const std::byte* values, const PngLayout& layout, std::uint8_t* to) {
  if (layout.sampleBytes == 1) {
    for (std::size_t x = 0; x < layout.columns; ++x, to += layout.samples)
      *to = static_cast<std::uint8_t>(values[x]);
    return;
  }
  const auto* const wide = reinterpret_cast<const std::uint16_t*>(values);
  for (std::size_t x = 0; x < layout.columns; ++x, to += layout.pixelBytes()) {
    to[0] = static_cast<std::uint8_t>(wide[x] >> 8U);
    to[1] = static_cast<std::uint8_t>(wide[x]);
  }
}

void fillRow(const WindowPixels& pixels, std::size_t row, const PngLayout& layout, PngRow& to) {
  const auto height = static_cast<std::size_t>(pixels.window.height);
  const std::size_t lineBytes = layout.columns * layout.sampleBytes;
  const std::size_t bands = pixels.values.size() / (lineBytes * height);
  for (std::size_t band = 0; band < bands; ++band) {
    placeBand(pixels.values.data() + (band * height + row) * lineBytes, layout,
              to.data() + layout.pixelBytes() + band * layout.sampleBytes);
  }
  if (bands == layout.samples) return;
  const std::uint8_t* const mask = pixels.mask.data() + row * layout.columns;
  std::uint8_t* out = to.data() + layout.pixelBytes() + bands * layout.sampleBytes;
  for (std::size_t x = 0; x < layout.columns; ++x, out += layout.pixelBytes()) {
    std::fill_n(out, layout.sampleBytes, mask[x]);
  }
}

// A piece of a stream that ends with a whole byte, so that the next one can follow.
class Packer {
 public:
  explicit Packer(bool isPlain) {
    constexpr int fastest = 1;
    constexpr int bareWindow = -15;
    constexpr int mostMemory = 9;
    if (deflateInit2(&stream_, fastest, Z_DEFLATED, bareWindow, mostMemory,
                     isPlain ? Z_DEFAULT_STRATEGY : Z_FILTERED) != Z_OK) {
      throw std::bad_alloc();
    }
  }
  ~Packer() { deflateEnd(&stream_); }
  Packer(const Packer&) = delete;
  Packer& operator=(const Packer&) = delete;

  void add(const std::vector<std::uint8_t>& row) { put(row.data(), row.size(), Z_NO_FLUSH); }
  [[nodiscard]] Bytes end() {
    put(nullptr, 0, Z_SYNC_FLUSH);
    return std::move(bytes_);
  }

 private:
  void put(const std::uint8_t* data, std::size_t size, int flush) {
    stream_.next_in = const_cast<Bytef*>(data);
    stream_.avail_in = static_cast<uInt>(size);
    do {
      stream_.next_out = reinterpret_cast<Bytef*>(room_.data());
      stream_.avail_out = static_cast<uInt>(room_.size());
      deflate(&stream_, flush);
      bytes_.append(room_, 0, room_.size() - stream_.avail_out);
    } while (stream_.avail_out == 0);
  }

  z_stream stream_{};
  Bytes room_ = Bytes(std::size_t{1} << 16U, '\0');
  Bytes bytes_;
};

Packed packed(const PngPart& part, const PngLayout& layout, PngRow above) {
  PngRow row(above.size());
  const std::size_t rowBytes = layout.columns * layout.pixelBytes();
  PngFilter filter(layout.pixelBytes(), rowBytes, layout.isPalette);
  Packer packer(layout.isPalette);
  Packed done;
  done.sum = adler32(0, nullptr, 0);
  for (std::size_t i = 0; i < part.rows; ++i) {
    fillRow(part.pixels, part.firstRow + i, layout, row);
    const std::vector<std::uint8_t>& filtered = filter.filtered(row, above);
    done.sum = adler32_z(done.sum, filtered.data(), filtered.size());
    packer.add(filtered);
    std::swap(row, above);
  }
  done.length = part.rows * (rowBytes + 1);
  done.bytes = packer.end();
  return done;
}

// Each begins without the rows before it to look back at, which much smaller ones would feel.
std::size_t partsOf(std::size_t rows, std::size_t bytes) {
  constexpr std::size_t leastBytes = std::size_t{512} << 10U;
  const std::size_t most = std::min(rows, bytes / leastBytes);
  return std::clamp<std::size_t>(most, 1, std::max(1U, std::thread::hardware_concurrency()));
}

// Where the system gives no thread, it is done when it is asked for.
template <class Work>
std::future<Packed> sideBySide(Work work) {
  try {
    return std::async(std::launch::async, work);
  } catch (const std::system_error&) {
    return std::async(std::launch::deferred, work);
  }
}

}  // namespace

class PngParts::File {
 public:
  explicit File(const std::string& file) : file_(VSIFOpenL(file.c_str(), "wb")) {
    if (file_ == nullptr) failOnDisk();
  }
  ~File() {
    if (file_ != nullptr) VSIFCloseL(file_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  void write(std::string_view bytes) {
    if (VSIFWriteL(bytes.data(), 1, bytes.size(), file_) != bytes.size()) failOnDisk();
  }
  void close() {
    if (VSIFCloseL(std::exchange(file_, nullptr)) != 0) failOnDisk();
  }

 private:
  VSILFILE* file_;
};

PngParts::PngParts(const std::string& file, int rows) {
  constexpr std::size_t headerBytes = 13;
  constexpr std::size_t rowsAt = 4;
  constexpr std::size_t depthAt = 8;
  constexpr std::size_t kindAt = 9;
  constexpr std::size_t interlaceAt = 12;
  Around around = aroundPixels(contentOf(file));
  Bytes& header = around.header;
  if (header.size() != headerBytes || header[interlaceAt] != 0) failAtHead();
  if (header[depthAt] != 8 && header[depthAt] != 16) failAtHead();
  // By the kind: gray, none, red with green and blue, palette, gray and transparency, none, all four.
  static constexpr std::array<std::size_t, 7> samplesOfKind = {1, 0, 3, 1, 2, 0, 4};
  const auto kind = static_cast<std::size_t>(header[kindAt]);
  if (kind >= samplesOfKind.size() || samplesOfKind.at(kind) == 0) failAtHead();
  samples_ = samplesOfKind.at(kind);
  isPalette_ = kind == 3;
  sampleBytes_ = static_cast<std::size_t>(header[depthAt]) / 8;
  columns_ = numberAt(header, 0);
  tail_ = std::move(around.behind);
  header.replace(rowsAt, 4, fourBytes(static_cast<std::uint32_t>(rows)));
  file_ = std::make_unique<File>(file);
  file_->write(Bytes(signature) + chunk("IHDR", header) + around.before + chunk("IDAT", streamHead));
}

PngParts::~PngParts() = default;

void PngParts::add(const WindowPixels& pixels) {
  const PngLayout layout{columns_, samples_, sampleBytes_, isPalette_};
  const auto rows = static_cast<std::size_t>(pixels.window.height);
  if (rows == 0) return;
  const std::size_t parts = partsOf(rows, rows * columns_ * layout.pixelBytes());
  PngRow above = std::exchange(above_, {});
  above.resize(layout.pixelBytes() * (columns_ + 1));
  std::vector<std::future<Packed>> running;
  for (std::size_t i = 0; i < parts; ++i) {
    const std::size_t first = rows * i / parts;
    const PngPart part{pixels, first, rows * (i + 1) / parts - first};
    if (i > 0) fillRow(pixels, first - 1, layout, above);
    running.push_back(sideBySide([part, layout, above] { return packed(part, layout, above); }));
  }
  fillRow(pixels, rows - 1, layout, above);
  above_ = std::move(above);
  for (std::future<Packed>& one : running) {
    const Packed done = one.get();
    sum_ = static_cast<std::uint32_t>(adler32_combine(sum_, done.sum, static_cast<z_off_t>(done.length)));
    file_->write(chunk("IDAT", done.bytes));
  }
}

void PngParts::close() {
  file_->write(chunk("IDAT", Bytes(lastBlock) + fourBytes(sum_)) + tail_);
  file_->close();
}

}  // namespace vlclientui::client
