#include "client/stac/AssetChoice.h"

#include <gtest/gtest.h>

#include "client/stac/AddressParameters.h"
#include "client/stac/StacFixture.h"

namespace vlclientui::client::stac {
namespace {

constexpr auto tiff = "image/tiff; application=geotiff";
constexpr auto cloudOptimized = "image/tiff; application=geotiff; profile=cloud-optimized";

StacAsset asset(const std::string& key, const std::string& type, const std::vector<std::string>& roles = {}) {
  return assetOfKind({key, type, roles}, key + ".tif");
}

std::string chosen(const std::vector<StacAsset>& assets) {
  const StacAsset* const found = chosenAsset(assets);
  return found == nullptr ? "(none)" : found->key();
}

TEST(AssetChoice, TakesTrueColorsBeforeData) {
  EXPECT_EQ(chosen({asset("B04", cloudOptimized, {"data"}), asset("tci", tiff, {"visual"})}), "tci");
  EXPECT_EQ(chosen({asset("B04", cloudOptimized, {"data"}), asset("visual", tiff)}), "visual");
  EXPECT_EQ(chosen({asset("visual", tiff), asset("tci", tiff, {"visual"})}), "tci");
}

TEST(AssetChoice, TakesDataBeforeWhatTellsNoRole) {
  EXPECT_EQ(chosen({asset("mask", cloudOptimized), asset("B04", tiff, {"data"})}), "B04");
  EXPECT_EQ(chosen({asset("mask", cloudOptimized), asset("image", tiff)}), "image");
}

TEST(AssetChoice, TakesCloudOptimizedTiffsBeforeOthersAndThenTheFirst) {
  EXPECT_EQ(chosen({asset("a", "image/jp2", {"data"}), asset("b", tiff, {"data"})}), "b");
  EXPECT_EQ(chosen({asset("a", tiff, {"data"}), asset("b", cloudOptimized, {"data"})}), "b");
  EXPECT_EQ(chosen({asset("a", tiff, {"data"}), asset("b", tiff, {"data"})}), "a");
  EXPECT_EQ(chosen({}), "(none)");
}

TEST(AssetChoice, FindsAnAssetByItsKey) {
  const std::vector<StacAsset> assets = {asset("a", tiff), asset("b", tiff)};
  ASSERT_NE(assetOf(assets, "b"), nullptr);
  EXPECT_EQ(assetOf(assets, "b")->key(), "b");
  EXPECT_EQ(assetOf(assets, "c"), nullptr);
}

std::string addressOf(const std::string& base, const std::string& told) {
  const auto address = assetAddress(base, assetOfKind({}, told));
  const auto* problem = std::get_if<StacProblem>(&address);
  return problem != nullptr ? problem->text : std::get<std::string>(address);
}

TEST(AssetChoice, SeesAddressesFromTheirItem) {
  EXPECT_EQ(addressOf("https://h/a/items/i.json?x=1", "../img/i.tif"), "https://h/a/img/i.tif");
  EXPECT_EQ(addressOf("https://h/a/i.json", "/img/i.tif?k=2"), "https://h/img/i.tif?k=2");
  EXPECT_EQ(addressOf("https://h/a/i.json", "http://other:8080/i.tif"), "http://other:8080/i.tif");
}

TEST(AssetChoice, RefusesWhatIsNoAddressOfTheWebInWords) {
  for (const char* const told : {"s3://bucket/i.tif", "gs://bucket/i.tif", "file:///etc/passwd",
                                 "C:\\maps\\i.tif", "/vsicurl/http://h/i.tif\n"}) {
    EXPECT_NE(addressOf("https://h/a/i.json", told).find("is no http or https address"), std::string::npos)
        << told << ": " << addressOf("https://h/a/i.json", told);
  }
  EXPECT_EQ(addressOf("https://h/a/i.json", "https://me:secret@h/i.tif"),
            "its address holds a user or password");
}

TEST(AddressParameters, AreReadAndReplaced) {
  const std::string address = "http://h/search?collections=a%2Cb&limit=5&bbox=1,2,3,4";
  EXPECT_EQ(parameterOf(address, "collections"), "a,b");
  EXPECT_EQ(parameterOf(address, "limits"), "");
  EXPECT_EQ(withReplacedParameter(address, "limit", "10"),
            "http://h/search?collections=a%2Cb&bbox=1,2,3,4&limit=10");
  EXPECT_EQ(withReplacedParameter("http://h/items", "bbox", "1,2,3,4"), "http://h/items?bbox=1%2C2%2C3%2C4");
  EXPECT_EQ(splitAtCommas("a,,b,"), (std::vector<std::string>{"a", "b"}));
}

}  // namespace
}  // namespace vlclientui::client::stac
