// What the list of services shows of the coverages of a server.
#include "client/network/CoverageListing.h"

#include <filesystem>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "client/network/CoverageFacts.h"
#include "client/network/CoverageRaster.h"
#include "client/network/ServiceNames.h"
#include "client/raster/GeographicBounds.h"

namespace vlclientui::client::network {
namespace {

using Words = std::vector<std::string>;

CoverageCapabilities serverOf(const Words& ids) {
  CoverageCapabilities capabilities;
  for (const std::string& id : ids) {
    CoverageSummary summary;
    summary.id = id;
    capabilities.coverages.push_back(summary);
  }
  return capabilities;
}

CoverageDescription scene() {
  CoverageDescription coverage;
  coverage.id = "scene";
  coverage.title = "A scene";
  coverage.system = "EPSG:32632";
  coverage.columns = 768;
  coverage.rows = 512;
  coverage.envelope = {452000, 5142960, 475040, 5158320};
  coverage.bands = {{"1", "", "m", {}}, {"2", "", "DN", {}}};
  return coverage;
}

RasterFacts factsOf(const CoverageSummary& summary, const CoverageDescription* description) {
  GeographicBounds geographic;
  return coverageFacts(summary, description, geographic);
}

TEST(NameSteps, BeginAtSeparatorsAlone) {
  const std::vector<std::pair<std::string, Words>> table = {
      {"a/b:c__d", {"a", "b", "c", "d"}},
      {"a_b", {"a_b"}},
      {"a___b", {"a", "_b"}},
      {"a____b", {"a", "b"}},
      {"a:/b", {"a", "b"}},
      {"a__", {"a"}},
      {"a/", {"a"}},
      {"/a", {"a"}},
      {"__a", {"a"}},
      {"__", {"__"}},
      {":::", {":::"}},
      {"Imagery.Valley", {"Imagery", "Valley"}},
      {"a.Valley.", {"a", "Valley."}},
      {".Valley", {".Valley"}},
      {"a..Valley", {"a..Valley"}},
      {"a.jp2", {"a.jp2"}},
      {"a.jpeg", {"a.jpeg"}},
      {"a.Tif", {"a", "Tif"}},
      {"a.shade", {"a", "shade"}},
      {"a.b2c.tif", {"a", "b2c.tif"}},
      {"1.Valley", {"1.Valley"}},
      {"a.1Valley", {"a.1Valley"}},
      {"H\xC3\xB6hen/S\xC3\xBC"
       "d",
       {"H\xC3\xB6hen",
        "S\xC3\xBC"
        "d"}},
  };
  for (const auto& [id, steps] : table) EXPECT_EQ(nameSteps(id), steps) << id;
}

TEST(CoverageTitles, AreOneLineWhateverTheServerWrites) {
  EXPECT_EQ(coverageTitle("A\ttab,\n  a line\r\nend ", "id"), "A tab, a line end");
  EXPECT_EQ(coverageTitle("", "id"), "id");
  EXPECT_EQ(coverageTitle("As it is", "id"), "As it is");
  CoverageSummary summary;
  summary.id = "scene";
  summary.title = "Scene\t2021";
  EXPECT_EQ(factsOf(summary, nullptr).title, "Scene 2021");
}

TEST(CoverageDates, StandBehindThePlaceInTheList) {
  CoverageSummary summary;
  summary.id = "scene";
  summary.geographic = Bounds{8, 46, 9, 47};
  summary.dates = CoverageDates{"2021-07-14", "2021-07-14"};
  EXPECT_EQ(factsOf(summary, nullptr).region, "46.5 N 8.5 E, 2021-07-14");
  CoverageDescription described = scene();
  EXPECT_EQ(factsOf(summary, &described).region, "46.5 N 8.5 E, 2021-07-14");
  described.dates = CoverageDates{"2021-07-14T10:00:00Z", ""};
  EXPECT_EQ(factsOf(summary, &described).region, "46.5 N 8.5 E, since 2021-07-14");
  summary.geographic.reset();
  EXPECT_EQ(factsOf(summary, nullptr).region, "2021-07-14");
}

TEST(CoverageNames, AreShownInOrderAndLeadToTheirIds) {
  const CoverageNames names = coverageNames(serverOf({"z:b", "z:a", "plain"}));
  ASSERT_EQ(names.size(), 3U);
  EXPECT_EQ(names.begin()->first, "plain");
  EXPECT_EQ(names.at("plain"), "plain");
  EXPECT_EQ(names.at("z/a"), "z:a");
  EXPECT_EQ(names.at("z/b"), "z:b");
}

TEST(CoverageNames, KeepEveryCoverageThatIsNamedAlike) {
  const Words ids = {"a:b", "a/b", "A/b", "a__b", "a.b c", "a.b?c", "[x]", "(x)", "x"};
  const CoverageNames names = coverageNames(serverOf(ids));
  std::set<std::string> found;
  for (const auto& [name, id] : names) found.insert(id);
  EXPECT_EQ(found, std::set<std::string>(ids.begin(), ids.end()));
}

TEST(CoverageNames, ShowACoverageOnceThatIsListedTwice) {
  const CoverageNames names = coverageNames(serverOf({"a:b", "c", "a:b"}));
  std::map<std::string, int> times;
  for (const auto& [name, id] : names) ++times[id];
  EXPECT_EQ(times, (std::map<std::string, int>{{"a:b", 1}, {"c", 1}}));
  EXPECT_TRUE(names.contains("a/b"));
}

TEST(CoverageNames, AreNoneOfAnEmptyServer) { EXPECT_TRUE(coverageNames({}).empty()); }

TEST(CoverageEntries, StandInTheFolderOfTheirName) {
  const std::string address = "http://h/wcs?map=/m/a.map";
  const CatalogueEntry deep = coverageEntry(address, "z/a/b", "z:a:b");
  EXPECT_EQ(deep.folder, "z/a");
  EXPECT_EQ(deep.name, "z/a/b");
  EXPECT_EQ(deep.kind, EntryKind::Raster);
  EXPECT_EQ(coverageOfRasterName(deep.file.string()), std::pair(address, std::string("z:a:b")));
  EXPECT_EQ(coverageEntry(address, "b", "b").folder, "");
}

TEST(CoverageContents, TellEachServiceWithTheDescriptionOfItsName) {
  const CoverageCapabilities capabilities = serverOf({"z:b", "a", "m"});
  const CoverageNames names = coverageNames(capabilities);
  auto described = std::make_shared<CoverageDescription>(scene());
  const CatalogueContent content =
      coverageContent("http://h/wcs", capabilities, names, {nullptr, nullptr, described});
  ASSERT_EQ(content.services.size(), 3U);
  EXPECT_TRUE(content.problems.empty());
  EXPECT_EQ(content.services[0].name, "a");
  EXPECT_EQ(content.services[0].facts.columns, 0) << "nobody asked";
  EXPECT_EQ(content.services[1].name, "m");
  const ServiceRecord& last = content.services[2];
  EXPECT_EQ(last.name, "z/b");
  EXPECT_EQ(last.entry.folder, "z");
  EXPECT_EQ(last.facts.columns, 768);
  EXPECT_EQ(last.facts.title, "A scene");
  EXPECT_EQ(last.place, std::filesystem::path(coverageRasterName("http://h/wcs", "z:b")));
}

TEST(CoverageFacts, TakeTheFirstTitleThatThereIs) {
  CoverageSummary summary;
  summary.id = "scene";
  CoverageDescription described = scene();
  EXPECT_EQ(factsOf(summary, nullptr).title, "scene");
  EXPECT_EQ(factsOf(summary, &described).title, "A scene");
  described.title.clear();
  EXPECT_EQ(factsOf(summary, &described).title, "scene");
  summary.title = "Listed";
  EXPECT_EQ(factsOf(summary, &described).title, "Listed");
  EXPECT_EQ(factsOf(summary, nullptr).title, "Listed");
}

TEST(CoverageFacts, AreUnknownWhereNobodyAsked) {
  CoverageSummary summary;
  summary.id = "scene";
  const RasterFacts facts = factsOf(summary, nullptr);
  EXPECT_EQ(facts.columns, 0);
  EXPECT_EQ(facts.bandCount, 0);
  EXPECT_EQ(facts.pixelType, "");
  EXPECT_EQ(facts.region, "");
  EXPECT_EQ(facts.srsId, "");
  EXPECT_FALSE(facts.geographicEnvelope);
}

TEST(CoverageFacts, TellPlaceSizeAndUnitOfADescription) {
  CoverageSummary summary;
  summary.id = "scene";
  const CoverageDescription described = scene();
  const RasterFacts facts = factsOf(summary, &described);
  EXPECT_EQ(facts.columns, 768);
  EXPECT_EQ(facts.fileRows, 512);
  EXPECT_EQ(facts.pixelSize, 30);
  EXPECT_EQ(facts.pixelHeight, 30);
  EXPECT_EQ(facts.envelope, described.envelope);
  EXPECT_EQ(facts.srsId, "EPSG:32632");
  EXPECT_EQ(facts.bandCount, 2);
  EXPECT_EQ(facts.pixelUnit, "m");
  ASSERT_TRUE(facts.geographicEnvelope);
  EXPECT_NEAR(facts.geographicEnvelope->xMin, 8.37, 0.01);
  EXPECT_NEAR(facts.geographicEnvelope->yMax, 46.58, 0.01);
  EXPECT_EQ(facts.region, "46.5 N 8.5 E");
}

TEST(CoverageFacts, BelieveTheListAboutThePlaceOnEarth) {
  CoverageSummary summary;
  summary.id = "scene";
  summary.geographic = Bounds{-71, -34, -70, -33};
  const CoverageDescription described = scene();
  EXPECT_EQ(factsOf(summary, &described).geographicEnvelope, summary.geographic);
  EXPECT_EQ(factsOf(summary, nullptr).region, "33.5 S 70.5 W");
}

TEST(CoverageFacts, HaveNoSystemWhereItIsNoneThatIsKnown) {
  CoverageSummary summary;
  summary.id = "scene";
  CoverageDescription described = scene();
  for (const std::string system : {"", "EPSG:999999"}) {
    described.system = system;
    const RasterFacts facts = factsOf(summary, &described);
    EXPECT_EQ(facts.columns, 768) << system;
    EXPECT_EQ(facts.srsId, "") << system;
    EXPECT_FALSE(facts.geographicEnvelope) << system;
    EXPECT_EQ(facts.bandCount, 2) << system;
  }
}

TEST(CoverageRasterNames, LeadBackFromAnyAddressAndId) {
  for (const std::string address :
       {"http://h/wcs", "https://[::1]:8443/a%20b?map=/m/a.map&x=%2F", "http://h/\xC3\xA4"}) {
    for (const std::string id :
         {"a", "/", "a/b//c", "%2F", "100%", "a b+c", "?&=#", "\xC3\xA4\xE2\x82\xAC", ".."}) {
      const std::string name = coverageRasterName(address, id);
      EXPECT_EQ(coverageOfRasterName(name), std::pair(address, id)) << name;
      EXPECT_EQ(std::filesystem::path(name).lexically_normal().string(),
                id == ".." ? "/vsivlcoverage/" : name);
    }
  }
}

TEST(CoverageRasterNames, AreUnlikeForOtherCoverages) {
  EXPECT_NE(coverageRasterName("http://h/a", "b"), coverageRasterName("http://h", "a/b"));
  EXPECT_NE(coverageRasterName("http://h/", "a b"), coverageRasterName("http://h/", "a%20b"));
  EXPECT_EQ(shownRasterPlace(coverageRasterName("http://h/wcs", "a/b")), "http://h/wcs a/b");
  EXPECT_EQ(shownRasterPlace("/vsivlcoverage/"), "/vsivlcoverage/");
}

}  // namespace
}  // namespace vlclientui::client::network
