#include "client/reach/NestedMosaics.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <string_view>
#include <system_error>
#include <vector>

#include "client/reach/MosaicNames.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr int deepest = 32;
constexpr std::uint64_t mostSources = 10'000'000;  // each as often as it is reached
constexpr std::size_t mostLookedInto = 1000;       // of those that are not named as virtual rasters
constexpr std::uintmax_t mostBytes = std::uintmax_t{256} << 20U;

bool isNamedAsMosaic(const fs::path& file) {
  const std::string ending = file.extension().string();
  return ending == ".vrt" || ending == ".VRT" || ending == ".Vrt";
}

std::string textOfMosaic(const fs::path& file) {
  constexpr std::size_t longestStart = 64;
  std::error_code error;
  if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > mostBytes) return {};
  std::ifstream stream(file, std::ios::binary);
  std::string text(longestStart, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  if (text.find("<VRTDataset") == std::string::npos) return {};
  stream.clear();
  text.append(std::istreambuf_iterator<char>(stream), {});
  return text;
}

/// What virtual rasters lead to, each counted once and added up as often as it is named.
class MosaicWeights {
 public:
  /// Of a virtual raster all that it leads to, of other files one.
  std::uint64_t weightOf(const fs::path& file, int depth) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(file, error);
    if (const auto known = known_.find(real); known != known_.end()) return known->second;
    if (!isNamedAsMosaic(real) && ++lookedInto_ > mostLookedInto) return 1;
    const std::string text = textOfMosaic(real);
    const std::uint64_t weight = text.empty() ? 1 : weightOfText(text, real.parent_path(), depth + 1);
    known_[real] = weight;
    return weight;
  }

  std::uint64_t weightOfText(const std::string& text, const fs::path& folder, int depth) {
    isTooDeep_ = isTooDeep_ || depth > deepest;
    std::uint64_t sum = 1;
    for (const fs::path& source : sourcesOfMosaic(text, folder)) {
      if (isTooDeep_ || sum > mostSources) break;
      sum += weightOf(source, depth);
    }
    return std::min(sum, mostSources + 1);
  }

  [[nodiscard]] bool isTooDeep() const { return isTooDeep_; }

 private:
  std::map<fs::path, std::uint64_t> known_;
  std::size_t lookedInto_ = 0;
  bool isTooDeep_ = false;
};

}  // namespace

std::string refusalOfNesting(const std::string& text, const fs::path& folder) {
  MosaicWeights weights;
  const std::uint64_t weight = weights.weightOfText(text, folder, 1);
  if (weights.isTooDeep()) {
    return "it holds itself, or virtual rasters in each other more than " + std::to_string(deepest) + " deep";
  }
  return weight <= mostSources ? std::string()
                               : "it leads to more than " + std::to_string(mostSources) + " sources";
}

}  // namespace vlclientui::client
