#include "client/reach/RasterNames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <system_error>
#include <vector>

#include "client/reach/MosaicNames.h"
#include "client/reach/Places.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view virtualFiles = "/vsi";
constexpr std::string_view memoryFiles = "/vsimem/";
constexpr std::string_view partsOfFiles = "/vsisubfile/";
constexpr std::string_view mosaicPrefix = "vrt://";

std::string small(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](unsigned char c) { return std::tolower(c); });
  return result;
}

// Without what may be secret: names of users, and questions, which hold keys.
std::string shownName(std::string_view name) {
  constexpr std::size_t longest = 200;
  std::string shown(name.substr(0, std::min(name.find('?'), longest)));
  const std::size_t start = shown.find("://");
  const std::size_t user = start == std::string::npos ? start : shown.find('@', start);
  if (user != std::string::npos) shown.erase(start + 3, user - start - 2);
  std::ranges::replace_if(
      shown, [](unsigned char c) { return std::iscntrl(c) != 0; }, ' ');
  return "\"" + shown + "\"";
}

std::string outside(std::string_view name) {
  return shownName(name) +
         " lies outside of the folders that were opened; VLCLIENTUI_ALLOW_OUTSIDE may name its folder";
}

std::string address(std::string_view name) {
  return shownName(name) +
         " is an address, which files do not open by themselves; VLCLIENTUI_ALLOW_OUTSIDE may say "
         "\"addresses\"";
}

// Also where it stands behind something else, as of formats that hold several rasters.
bool holdsAddress(std::string_view name) {
  constexpr auto schemes = std::to_array<std::string_view>(
      {"http:/", "https:/", "ftp:/", "ftps:/", "ecwp:/", "ecwps:/", "jpip:/", "jpips:/", "dods:/", "s3:/",
       "gs:/", "az:/", "file:/", "mongodb:/", "mongodb+srv:/"});
  const std::string text = small(name);
  return std::ranges::any_of(schemes,
                             [&](std::string_view scheme) { return text.find(scheme) != std::string::npos; });
}

std::string_view behind(std::string_view text, char mark) {
  const std::size_t at = text.find(mark);
  return at == std::string_view::npos ? std::string_view() : text.substr(at + 1);
}

// Where the file lies that an archive is in, or that the part is of; empty for other kinds of virtual files.
std::string_view withoutArchive(std::string_view name) {
  constexpr auto archives = std::to_array<std::string_view>({"/vsizip/", "/vsitar/", "/vsigzip/"});
  if (name.starts_with(partsOfFiles)) return behind(name, ',');
  const auto* const archive =
      std::ranges::find_if(archives, [&](std::string_view one) { return name.starts_with(one); });
  if (archive == archives.end()) return {};
  std::string_view rest = name.substr(archive->size());
  // Kinds of virtual files are chained with one slash as well.
  if (rest.starts_with("vsi")) return name.substr(archive->size() - 1);
  if (!rest.starts_with('{')) return rest;
  rest.remove_prefix(1);
  return rest.substr(0, rest.find('}'));
}

bool isThere(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

// A path may go on behind a file, into an archive.
fs::path partThatIsThere(std::string_view path) {
  fs::path part(path);
  while (part.has_relative_path() && !isThere(part)) part = part.parent_path();
  return part;
}

std::string refusalOfPath(const fs::path& path, const Places& places, NameOrigin origin) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return {};
  if (!fs::is_regular_file(status) && !fs::is_directory(status)) {
    return shownName(path.string()) + " is neither a file nor a folder";
  }
  const bool isChosen = origin == NameOrigin::Opened && places.hold(path);
  return isChosen || places.reach(path) ? std::string() : outside(path.string());
}

// All pieces between the marks that formats put around the names of their files.
std::vector<std::string> filesWithin(std::string_view name) {
  constexpr std::string_view marks = ":\",";
  constexpr std::ptrdiff_t mostMarks = 32;  // each pair of them asks the disk
  std::vector<std::string> files;
  if (std::ranges::count_if(name, [marks](char c) { return marks.find(c) != std::string_view::npos; }) >
      mostMarks)
    return files;
  for (std::size_t start = name.find_first_of(marks); start < name.size();
       start = name.find_first_of(marks, start + 1)) {
    for (std::size_t end = name.size(); end > start + 1 && end != std::string_view::npos;
         end = name.find_last_of(marks, end - 1)) {
      const std::string piece(name.substr(start + 1, end - start - 1));
      if (piece.starts_with(virtualFiles) || (!piece.empty() && isThere(piece))) files.push_back(piece);
      if (end - 1 <= start) break;
    }
  }
  return files;
}

bool namesAFormat(std::string_view name) {
  const std::size_t end = name.find(':');
  const auto isLetter = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
  return end != std::string_view::npos && end > 1 && std::ranges::all_of(name.substr(0, end), isLetter);
}

std::string refusalOfVirtual(std::string_view name, const Places& places, NameOrigin origin) {
  std::string_view rest = name;
  while (rest.starts_with(virtualFiles) && !places.reachName(rest) && !rest.starts_with(memoryFiles)) {
    rest = withoutArchive(rest);
  }
  if (rest.empty()) return places.allowance()->addresses ? std::string() : address(name);
  if (rest.starts_with(virtualFiles)) return {};
  return refusalOfPath(partThatIsThere(rest), places, origin);
}

std::string refusalOfFormat(std::string_view name, const Places& places, NameOrigin origin) {
  const auto files = filesWithin(name);
  if (files.empty()) return shownName(name) + " tells no file that is there";
  for (const std::string& file : files) {
    const bool isVirtual = file.starts_with(virtualFiles);
    std::string refusal =
        isVirtual ? refusalOfVirtual(file, places, origin) : refusalOfPath(file, places, origin);
    if (!refusal.empty()) return refusal;
  }
  return {};
}

}  // namespace

std::string refusalOfName(const std::string& name, const Places& places, NameOrigin origin) {
  if (places.allowance()->everything || places.reachName(name)) return {};
  const std::size_t first = name.find_first_not_of(" \t\r\n");
  if (first != std::string::npos && name[first] == '<') {
    return refusalOfMosaic(name, {}, places);
  }
  constexpr std::size_t longest = 4096;
  if (name.size() > longest) return shownName(name) + " is too long for a name";
  if (name.starts_with(virtualFiles)) return refusalOfVirtual(name, places, origin);
  if (isThere(name)) return refusalOfPath(name, places, origin);
  if (small(name).starts_with(mosaicPrefix)) {
    const std::string inner = name.substr(mosaicPrefix.size(), name.find('?') - mosaicPrefix.size());
    if (small(inner).starts_with(mosaicPrefix)) return shownName(name) + " names a virtual raster of another";
    return refusalOfName(inner, places, origin);
  }
  if (holdsAddress(name)) return places.allowance()->addresses ? std::string() : address(name);
  return namesAFormat(name) ? refusalOfFormat(name, places, origin) : std::string();
}

}  // namespace vlclientui::client
