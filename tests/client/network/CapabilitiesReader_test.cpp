#include <gtest/gtest.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageDocuments.h"

namespace vlclientui::client::network {
namespace {

CoverageCapabilities capabilitiesOf(const std::string& document) {
  auto read = readCapabilities(document);
  const auto* problem = std::get_if<CoverageProblem>(&read);
  EXPECT_EQ(problem, nullptr) << (problem != nullptr ? problem->text : "");
  return problem == nullptr ? std::get<CoverageCapabilities>(read) : CoverageCapabilities();
}

CoverageProblem problemOf(const std::string& document) {
  auto read = readCapabilities(document);
  const auto* problem = std::get_if<CoverageProblem>(&read);
  EXPECT_NE(problem, nullptr);
  return problem != nullptr ? *problem : CoverageProblem();
}

TEST(CapabilitiesReader, ReadsTheNewestVersion) {
  const auto found = capabilitiesOf(capabilities201(
      "<wcs:CoverageSummary><wcs:CoverageId>a</wcs:CoverageId></wcs:CoverageSummary><wcs:CoverageSummary>"
      "<ows:Title>Sheet B</ows:Title><ows:Keywords><ows:Keyword>k</ows:Keyword></ows:Keywords>"
      "<ows:WGS84BoundingBox><ows:LowerCorner>7 46</ows:LowerCorner><ows:UpperCorner>8 47</ows:UpperCorner>"
      "</ows:WGS84BoundingBox><wcs:CoverageId>b</wcs:CoverageId></wcs:CoverageSummary>"));
  EXPECT_EQ(found.version, CoverageVersion::V201);
  EXPECT_EQ(found.title, "Survey");
  EXPECT_EQ(found.abstract, "All sheets");
  EXPECT_EQ(found.keywords, std::vector<std::string>{"elevation"});
  EXPECT_EQ(found.versions, (std::vector<std::string>{"2.0.1", "1.1.1"}));
  EXPECT_EQ(found.describeAddress, "http://inside/d?");
  EXPECT_EQ(found.getAddress, "http://inside/g?");
  EXPECT_EQ(found.formats, (std::vector<std::string>{"image/png", "image/tiff"}));
  ASSERT_EQ(found.coverages.size(), 2U);
  EXPECT_EQ(found.coverages[0].id, "a");
  EXPECT_FALSE(found.coverages[0].geographic);
  EXPECT_EQ(found.coverages[1].title, "Sheet B");
  EXPECT_EQ(found.coverages[1].keywords, std::vector<std::string>{"k"});
  EXPECT_EQ(found.coverages[1].geographic, (Bounds{7, 46, 8, 47}));
}

TEST(CapabilitiesReader, TellsWhetherAServerScales) {
  const std::string core = "<ows:Profile>http://www.opengis.net/spec/WCS/2.0/conf/core</ows:Profile>";
  const std::string scaling =
      "<ows:Profile>http://www.opengis.net/spec/WCS_service-extension_scaling/1.0</ows:Profile>";
  EXPECT_TRUE(capabilitiesOf(capabilities201("")).canScale) << "nothing told is tried";
  EXPECT_FALSE(capabilitiesOf(capabilities201("", core)).canScale);
  EXPECT_TRUE(capabilitiesOf(capabilities201("", core + scaling)).canScale);
}

TEST(CapabilitiesReader, ReadsSummariesWithinSummaries) {
  const auto found = capabilitiesOf(
      R"(<Capabilities version="1.1.1" xmlns:ows="o"><Contents><CoverageSummary><ows:Title>Group</ows:Title>
      <CoverageSummary><ows:Title>Inner</ows:Title><Identifier>in</Identifier></CoverageSummary></CoverageSummary>
      <CoverageSummary><Identifier>out</Identifier></CoverageSummary></Contents></Capabilities>)");
  EXPECT_EQ(found.version, CoverageVersion::V111);
  ASSERT_EQ(found.coverages.size(), 2U);
  EXPECT_EQ(found.coverages[0].id, "in");
  EXPECT_EQ(found.coverages[0].title, "Inner");
  EXPECT_EQ(found.coverages[1].id, "out");
}

TEST(CapabilitiesReader, ReadsTheFirstVersion) {
  const auto found = capabilitiesOf(
      R"(<WCS_Capabilities version="1.0.0" xmlns:xlink="x" xmlns:gml="g"><Service><description>d</description>
      <name>n</name><label>Server</label><keywords><keyword>k</keyword></keywords></Service><Capability><Request>
      <GetCoverage><DCPType><HTTP><Get><OnlineResource xlink:href="http://h/g?"/></Get></HTTP></DCPType></GetCoverage>
      </Request></Capability><ContentMetadata><CoverageOfferingBrief><name>s</name><label>Scene</label>
      <lonLatEnvelope><gml:pos>8 46</gml:pos><gml:pos>9 47</gml:pos></lonLatEnvelope></CoverageOfferingBrief>
      <CoverageOfferingBrief><label>without a name</label></CoverageOfferingBrief></ContentMetadata></WCS_Capabilities>)");
  EXPECT_EQ(found.version, CoverageVersion::V100);
  EXPECT_EQ(found.title, "Server");
  EXPECT_EQ(found.keywords, std::vector<std::string>{"k"});
  EXPECT_EQ(found.getAddress, "http://h/g?");
  ASSERT_EQ(found.coverages.size(), 1U);
  EXPECT_EQ(found.coverages[0].title, "Scene");
  EXPECT_EQ(found.coverages[0].geographic, (Bounds{8, 46, 9, 47}));
}

TEST(CapabilitiesReader, TellsAnExceptionInTheServersWords) {
  const auto newer = problemOf(
      R"(<ows:ExceptionReport xmlns:ows="o"><ows:Exception exceptionCode="mapserv" locator="Internal">
      <ows:ExceptionText> the name is wrong </ows:ExceptionText></ows:Exception></ows:ExceptionReport>)");
  EXPECT_EQ(newer.code, "mapserv");
  EXPECT_EQ(newer.text, "the name is wrong");
  const auto older = problemOf(
      R"(<ServiceExceptionReport><ServiceException code="NoMap">no map</ServiceException></ServiceExceptionReport>)");
  EXPECT_EQ(older.code, "NoMap");
  EXPECT_EQ(older.text, "no map");
  EXPECT_EQ(problemOf("<ExceptionReport/>").text, "the server refuses without a reason");
}

TEST(CapabilitiesReader, RefusesWhatIsNoDocumentOfAServer) {
  for (const std::string text : {"", "plain", "<html><body/></html>", "<Capabilities>", "{}"}) {
    const auto problem = problemOf(text);
    EXPECT_EQ(problem.code, "") << text;
    EXPECT_EQ(problem.text, "the answer is no document of a coverage service") << text;
  }
}

TEST(CapabilitiesReader, ExpandsNoEntities) {
  const auto found = capabilitiesOf(
      R"(<!DOCTYPE c [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;"><!ENTITY f SYSTEM "file:///etc/passwd">]>
      <Capabilities version="2.0.1"><ServiceIdentification><Title>x&b;&f;</Title></ServiceIdentification></Capabilities>)");
  EXPECT_EQ(found.title, "x");
}

}  // namespace
}  // namespace vlclientui::client::network
