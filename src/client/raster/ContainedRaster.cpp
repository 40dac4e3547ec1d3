#include "client/raster/ContainedRaster.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include <cpl_string.h>
#include <cpl_vsi.h>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view archiveExtension = ".zip";
constexpr std::uint64_t mostFiles = 10000;
constexpr std::uint64_t mostUnpacked = std::uint64_t{4} << 30U;
constexpr std::uint64_t mostTimesItsSize = 100;

// What the raster library calls the archive as a folder. In braces no part of its own path is taken for the
// end.
std::string folderNameOf(const fs::path& archive) {
  const std::string path = archive.string();
  const bool hasBraces = path.find_first_of("{}") != std::string::npos;
  return hasBraces ? "/vsizip/" + path : "/vsizip/{" + path + "}";
}

std::string tailOf(const fs::path& file) {
  constexpr std::streamoff mostWithComment = 22 + 65535;
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  const std::streamoff size = stream.tellg();
  stream.seekg(std::max<std::streamoff>(0, size - mostWithComment));
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::uint64_t twoBytesAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]) |
         static_cast<std::uint64_t>(static_cast<unsigned char>(text[at + 1])) << 8U;
}

std::uint64_t fourBytesAt(std::string_view text, std::size_t at) {
  return twoBytesAt(text, at) | twoBytesAt(text, at + 2) << 16U;
}

/// Where an archive lists its files.
struct Directory {
  std::uint64_t count = 0;
  std::uint64_t size = 0;
  std::uint64_t start = 0;
};

// As the record at its end says; nothing for a file that has none.
std::optional<Directory> directoryOf(const fs::path& archive) {
  constexpr std::string_view signature = "PK\x05\x06";
  constexpr std::size_t recordSize = 22;
  const std::string tail = tailOf(archive);
  const std::size_t record = tail.rfind(signature);
  if (record == std::string::npos || record + recordSize > tail.size()) return std::nullopt;
  return Directory{twoBytesAt(tail, record + 10), fourBytesAt(tail, record + 12),
                   fourBytesAt(tail, record + 16)};
}

std::string entriesOf(const fs::path& archive, const Directory& directory) {
  constexpr std::uint64_t longest = std::uint64_t{16} << 20U;
  std::string entries(std::min(directory.size, longest), '\0');
  std::ifstream stream(archive, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(directory.start));
  stream.read(entries.data(), static_cast<std::streamsize>(entries.size()));
  entries.resize(static_cast<std::size_t>(stream.gcount()));
  return entries;
}

std::set<std::string> encryptedFiles(const fs::path& archive, const Directory& directory) {
  constexpr std::string_view signature = "PK\x01\x02";
  constexpr std::size_t headSize = 46;
  const std::string entries = entriesOf(archive, directory);
  std::set<std::string> names;
  std::size_t at = 0;
  while (at + headSize <= entries.size() && entries.compare(at, signature.size(), signature) == 0) {
    const std::uint64_t nameSize = twoBytesAt(entries, at + 28);
    const bool isEncrypted = (twoBytesAt(entries, at + 8) & 1U) != 0;
    if (isEncrypted) names.insert(entries.substr(at + headSize, nameSize));
    at += headSize + nameSize + twoBytesAt(entries, at + 30) + twoBytesAt(entries, at + 32);
  }
  return names;
}

void leaveOutEncrypted(ContainerContent& content, const std::set<std::string>& encrypted) {
  const auto left = std::erase_if(
      content.rasters, [&](const ContainedRaster& file) { return encrypted.contains(file.inner); });
  if (left == 0) return;
  content.problem = content.rasters.empty() ? "the archive is encrypted"
                                            : "the archive holds encrypted files, which are left out";
}

bool staysWithin(const std::string& inner) {
  const fs::path path(inner);
  return !path.is_absolute() && std::ranges::none_of(path, [](const fs::path& step) {
    return step == ".." || step == "." || step.empty();
  });
}

std::uint64_t unpackedSize(const std::vector<ContainedRaster>& files) {
  std::uint64_t sum = 0;
  for (const ContainedRaster& file : files) {
    VSIStatBufL status{};
    if (VSIStatExL(file.name.c_str(), &status, VSI_STAT_SIZE_FLAG) == 0) {
      sum += static_cast<std::uint64_t>(status.st_size);
    }
  }
  return sum;
}

std::string unpackedProblem(const fs::path& archive, const std::vector<ContainedRaster>& files) {
  std::error_code error;
  const std::uint64_t size = fs::file_size(archive, error);
  const std::uint64_t unpacked = unpackedSize(files);
  if (error || unpacked <= mostUnpacked || unpacked / mostTimesItsSize <= size) return {};
  return "the archive unpacks to " + std::to_string(unpacked >> 30U) +
         " GB, more than a hundred times its size, and is not read";
}

}  // namespace

// The system says so of a path that goes on behind a file.
fs::path containerOf(const fs::path& raster) {
  std::error_code error;
  static_cast<void>(fs::status(raster, error));
  if (error != std::errc::not_a_directory) return {};
  for (fs::path path = raster.parent_path(); path.has_relative_path(); path = path.parent_path()) {
    if (fs::is_regular_file(path, error)) return path;
  }
  return {};
}

fs::path fileOnDisk(const fs::path& raster) {
  fs::path container = containerOf(raster);
  return container.empty() ? raster : container;
}

std::string innerPathOf(const fs::path& raster) {
  const fs::path container = containerOf(raster);
  return container.empty() ? std::string() : raster.string().substr(container.string().size() + 1);
}

bool isNamedAsArchive(const fs::path& file) {
  return sameIgnoringCase(file.extension().string(), archiveExtension);
}

bool isArchive(const fs::path& file) { return isNamedAsArchive(file) && directoryOf(file); }

ContainerContent archiveContent(const fs::path& archive) {
  const Directory directory = directoryOf(archive).value_or(Directory());
  if (directory.count > mostFiles)
    return {{}, "the archive holds more than " + std::to_string(mostFiles) + " files"};
  const std::string folder = folderNameOf(archive);
  const CPLStringList names(VSIReadDirRecursive(folder.c_str()));
  ContainerContent content;
  for (int i = 0; i < names.Count(); ++i) {
    const std::string inner = names[i];
    if (inner.ends_with('/') || !staysWithin(inner)) continue;
    content.rasters.push_back({inner, folder + '/' + inner});
  }
  content.problem = unpackedProblem(archive, content.rasters);
  if (!content.problem.empty()) {
    content.rasters.clear();
  } else {
    leaveOutEncrypted(content, encryptedFiles(archive, directory));
  }
  return content;
}

}  // namespace vlclientui::client
