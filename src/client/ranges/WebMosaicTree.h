#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace vlclientui::client {

/// What one virtual raster names.
struct MosaicNode {
  std::size_t bytes = 0;                  ///< of its text
  std::size_t sources = 0;                ///< of all kinds, however often
  std::vector<std::string> mayBeMosaics;  ///< names, however often
};

/// Virtual rasters within virtual rasters, counted before the raster library opens any of them: a few short
/// ones that name each other several times would keep it busy for years.
class MosaicTree {
 public:
  static constexpr int deepest = 8;                       ///< in each other
  static constexpr std::size_t mostSources = 100'000;     ///< each as often as it is reached
  static constexpr std::size_t mostMosaics = 1'000;       ///< different ones
  static constexpr std::size_t mostBytes = 64UL << 20UL;  ///< of their texts

  /// Reads what stands under a name: a virtual raster, something else, or why nothing more is to be read.
  struct Other {};
  using Found = std::variant<MosaicNode, Other, std::string>;
  using Read = std::function<Found(const std::string& name)>;

  explicit MosaicTree(Read read) : read_(std::move(read)) {}

  /// @returns why it is not opened, for a person; empty when all is well.
  [[nodiscard]] std::string refusal(const MosaicNode& root);

 private:
  /// Of a virtual raster with all below it.
  struct Weight {
    int height = 0;
    std::size_t sources = 0;
  };

  [[nodiscard]] Weight weightOf(const MosaicNode& node, int depth);
  [[nodiscard]] Weight weightBelow(const std::string& name, int depth);
  void refuse(std::string why);

  Read read_;
  std::map<std::string, Weight> known_;
  std::size_t mosaics_ = 0;
  std::size_t bytes_ = 0;
  std::string refusal_;
};

}  // namespace vlclientui::client
