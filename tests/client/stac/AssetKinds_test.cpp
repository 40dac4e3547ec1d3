// Which files of items count as pixels, and what their addresses come to.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/AddressParameters.h"
#include "client/stac/AssetChoice.h"
#include "client/stac/StacFetcher.h"
#include "client/stac/StacFixture.h"

namespace vlclientui::client::stac {
namespace {

using Names = std::vector<std::string>;

struct Kind {
  std::string label;
  std::string key;
  std::string type;
  std::string address;
  Names roles;
  bool isRaster = false;
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.label; }

class AssetKind : public testing::TestWithParam<Kind> {};

TEST_P(AssetKind, IsOfPixelsOrNot) {
  EXPECT_EQ(
      isRasterAsset(assetOfKind({GetParam().key, GetParam().type, GetParam().roles}, GetParam().address)),
      GetParam().isRaster);
}

INSTANTIATE_TEST_SUITE_P(
    Each, AssetKind,
    testing::Values(Kind{"Tiff", "a", "image/tiff", "a", {}, true},
                    Kind{"TiffInCapitals", "a", "IMAGE/TIFF; application=geotiff", "a", {}, true},
                    Kind{"OlderTiff", "a", "image/vnd.stac.geotiff", "a", {}, true},
                    Kind{"Jp2", "a", "image/jp2", "a", {"data"}, true},
                    Kind{"PngOfData", "a", "image/png", "a.png", {"data"}, true},
                    Kind{"JpegToLookAt", "a", "image/jpeg", "a.jpg", {"visual"}, true},
                    Kind{"PngOfNothing", "a", "image/png", "a.png", {}, false},
                    Kind{"WebpOfAMask", "a", "image/webp", "a.webp", {"mask"}, false},
                    Kind{"Gif", "a", "image/gif", "a.gif", {}, false},
                    Kind{"SmallPictureByRole", "a", "image/tiff", "a.tif", {"data", "thumbnail"}, false},
                    Kind{"SmallPictureByName", "thumbnail", "image/tiff", "a.tif", {}, false},
                    Kind{"OverviewByName", "overview", "image/tiff", "a.tif", {"data"}, false},
                    Kind{"MetadataByRole", "a", "image/tiff", "a.tif", {"metadata"}, false},
                    Kind{"Document", "a", "application/json", "a.tif", {"data"}, false},
                    Kind{"Text", "a", "text/html", "a.tif", {"data"}, false},
                    Kind{"UntypedTiff", "a", "", "https://h/a.TIF?v=1.2#x", {}, true},
                    Kind{"UntypedMosaic", "a", "", "a.vrt", {}, true},
                    Kind{"UntypedPng", "a", "", "a.png", {"data"}, false},
                    Kind{"UntypedTiffInQuery", "a", "", "https://h/get?file=a.tif", {}, false},
                    Kind{"UntypedNothing", "a", "", "", {"data"}, false}),
    [](const auto& each) { return each.param.label; });

StacAsset asset(const std::string& key, const std::string& type, const Names& roles = {}) {
  return assetOfKind({key, type, roles});
}

TEST(AssetKinds, AreRankedByMeaningBeforeFormat) {
  const std::string best = "image/tiff; application=geotiff; profile=cloud-optimized";
  const std::vector<StacAsset> fromBest = {asset("a", "image/jp2", {"visual"}),
                                           asset("visual", "image/jp2"),
                                           asset("b", best, {"data"}),
                                           asset("c", "image/tiff", {"data"}),
                                           asset("d", "image/jp2", {"data"}),
                                           asset("image", best),
                                           asset("e", best),
                                           asset("f", "image/jp2")};
  for (std::size_t first = 0; first < fromBest.size(); ++first) {
    std::vector<StacAsset> rest(fromBest.rbegin(), fromBest.rend() - static_cast<std::ptrdiff_t>(first));
    ASSERT_NE(chosenAsset(rest), nullptr);
    EXPECT_EQ(chosenAsset(rest)->key(), fromBest[first].key());
  }
}

std::string addressOf(const std::string& base, const std::string& told) {
  const auto address = assetAddress(base, assetOfKind({}, told));
  const auto* problem = std::get_if<StacProblem>(&address);
  return problem != nullptr ? "!" + problem->text : std::get<std::string>(address);
}

TEST(AssetAddresses, AreSeenFromTheirDocument) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a.tif", "https://h/c/items/a.tif"},      {"./a.tif", "https://h/c/items/a.tif"},
      {"../../a.tif", "https://h/a.tif"},        {"../../../../a.tif", "https://h/a.tif"},
      {"//other/a.tif", "https://other/a.tif"},  {"a%20b.tif", "https://h/c/items/a%20b.tif"},
      {"a.tif#band", "https://h/c/items/a.tif"}, {"http://h:81/a.tif?k=1", "http://h:81/a.tif?k=1"}};
  for (const auto& [told, expected] : cases)
    EXPECT_EQ(addressOf("https://h/c/items/i.json?f=json", told), expected) << told;
}

TEST(AssetAddresses, OfNoWebServerAreRefusedWithoutTheirSecrets) {
  for (const std::string told : {"s3://b/a.tif", "ftp://h/a.tif", "data:image/tiff;base64,AA", "a b.tif", "",
                                 "azure://x?sig=geheim", "http://h%2fx/a.tif", "file:///a.tif"}) {
    const std::string text = addressOf("https://h/c/i.json", told);
    EXPECT_TRUE(text.starts_with("!\"") && text.ends_with("is no http or https address")) << text;
    EXPECT_EQ(text.find("geheim"), std::string::npos) << text;
  }
  EXPECT_EQ(addressOf("https://h/i.json", "//me@h/a.tif"), "!its address holds a user or password");
}

TEST(Parameters, AreFoundByTheirWholeName) {
  const std::string address = "http://h/s?a=1&ab=2&b&c=&a=3&d=x=y&e=%26%2C#a=9";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a", "1"}, {"ab", "2"}, {"b", ""}, {"c", ""}, {"A", ""}, {"d", "x=y"}, {"e", "&,"}, {"", ""}};
  for (const auto& [name, value] : cases) EXPECT_EQ(parameterOf(address, name), value) << name;
  EXPECT_EQ(parameterOf("no address?a=1", "a"), "");
}

TEST(Parameters, AreReplacedWhereverTheyStandAndHoweverOften) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"http://h/s", "http://h/s?p=n%20w"},
      {"http://h/s?", "http://h/s?p=n%20w"},
      {"http://h/s?p=1", "http://h/s?p=n%20w"},
      {"http://h/s?p=1&a=2&p=3", "http://h/s?a=2&p=n%20w"},
      {"http://h/s?pp=1&p", "http://h/s?pp=1&p=n%20w"},
      {"http://h/s?a=%26p%3D1", "http://h/s?a=%26p%3D1&p=n%20w"},
      {"no address", "no address"}};
  for (const auto& [address, expected] : cases)
    EXPECT_EQ(withReplacedParameter(address, "p", "n w"), expected);
}

TEST(Parameters, OfSeveralValuesAreSplitAtCommas) {
  const std::vector<std::pair<std::string, Names>> cases = {{"", {}},
                                                            {",", {}},
                                                            {",,a", {"a"}},
                                                            {"a", {"a"}},
                                                            {"a,b", {"a", "b"}},
                                                            {"a,", {"a"}},
                                                            {" a, b", {" a", " b"}}};
  for (const auto& [text, parts] : cases) EXPECT_EQ(splitAtCommas(text), parts) << text;
}

}  // namespace
}  // namespace vlclientui::client::stac
