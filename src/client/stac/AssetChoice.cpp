#include "client/stac/AssetChoice.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "client/raster/Text.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

bool hasRole(const StacAsset& asset, std::string_view role) {
  return std::ranges::find(asset.kind->roles, role) != asset.kind->roles.end();
}

bool isTiff(const StacAsset& asset) {
  return startsIgnoringCase(asset.kind->type, "image/tiff") ||
         startsIgnoringCase(asset.kind->type, "image/vnd.stac.geotiff");
}

bool isCloudOptimized(const StacAsset& asset) {
  return isTiff(asset) && lowered(asset.kind->type).find("cloud-optimized") != std::string::npos;
}

std::string_view pathOf(std::string_view address) { return address.substr(0, address.find_first_of("?#")); }

bool hasRasterEnding(std::string_view address) {
  constexpr std::array<std::string_view, 5> endings = {".tif", ".tiff", ".vrt", ".jp2", ".img"};
  return std::ranges::any_of(endings, [&](auto ending) { return endsIgnoringCase(pathOf(address), ending); });
}

// Small pictures are in these formats as often as data; where nobody says "data" they are left alone.
bool isPictureFormat(const StacAsset& asset) {
  return startsIgnoringCase(asset.kind->type, "image/png") ||
         startsIgnoringCase(asset.kind->type, "image/jpeg") ||
         startsIgnoringCase(asset.kind->type, "image/jpg") ||
         startsIgnoringCase(asset.kind->type, "image/webp") ||
         startsIgnoringCase(asset.kind->type, "image/gif");
}

int meaningRank(const StacAsset& asset) {
  if (hasRole(asset, "visual")) return 0;
  if (asset.key() == "visual") return 1;
  if (hasRole(asset, "data")) return 2;
  return asset.key() == "data" || asset.key() == "image" ? 3 : 4;
}

int formatRank(const StacAsset& asset) {
  if (isCloudOptimized(asset)) return 0;
  return isTiff(asset) ? 1 : 2;
}

}  // namespace

bool isRasterAsset(const StacAsset& asset) {
  for (const std::string_view other : {"thumbnail", "overview", "metadata"}) {
    if (hasRole(asset, other) || asset.key() == other) return false;
  }
  if (isPictureFormat(asset)) return hasRole(asset, "data") || hasRole(asset, "visual");
  if (startsIgnoringCase(asset.kind->type, "image/")) return true;
  return asset.kind->type.empty() && hasRasterEnding(asset.address);
}

const StacAsset* chosenAsset(const std::vector<StacAsset>& assets) {
  const auto rank = [](const StacAsset& asset) { return std::pair(meaningRank(asset), formatRank(asset)); };
  const auto best = std::ranges::min_element(assets, {}, rank);
  return best == assets.end() ? nullptr : &*best;
}

const StacAsset* assetOf(const std::vector<StacAsset>& assets, const std::string& key) {
  const auto found = std::ranges::find(assets, key, &StacAsset::key);
  return found == assets.end() ? nullptr : &*found;
}

OrStacProblem<std::string> assetAddress(const std::string& base, const StacAsset& asset) {
  const auto address = resolvedAddress(base, asset.address);
  const auto parsed = address ? parsedAddress(*address) : std::nullopt;
  if (!parsed) return StacProblem{"\"" + withoutSecrets(asset.address) + "\" is no http or https address"};
  if (parsed->hasUser) return StacProblem{"its address holds a user or password"};
  return *address;
}

}  // namespace vlclientui::client
