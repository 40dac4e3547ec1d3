// Lists of coverages as they come from servers that differ from each other.
#include <utility>

#include <gtest/gtest.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageDocuments.h"

namespace vlclientui::client::network {
namespace {

using Words = std::vector<std::string>;

CoverageCapabilities read(const std::string& document) {
  auto found = readCapabilities(document);
  const auto* problem = std::get_if<CoverageProblem>(&found);
  EXPECT_EQ(problem, nullptr) << (problem != nullptr ? problem->text : "");
  return problem == nullptr ? std::get<CoverageCapabilities>(found) : CoverageCapabilities();
}

/// The only coverage of a list whose entry holds this.
CoverageSummary summaryOf(const std::string& content) {
  const auto found = read(capabilities201("<wcs:CoverageSummary>" + content + "</wcs:CoverageSummary>"));
  EXPECT_EQ(found.coverages.size(), 1U) << content;
  return found.coverages.empty() ? CoverageSummary() : found.coverages.front();
}

std::string boxOf(const std::string& low, const std::string& high) {
  return "<wcs:CoverageId>a</wcs:CoverageId><ows:WGS84BoundingBox><ows:LowerCorner>" + low +
         "</ows:LowerCorner><ows:UpperCorner>" + high + "</ows:UpperCorner></ows:WGS84BoundingBox>";
}

std::string listOf100(const std::string& contents) {
  return R"(<WCS_Capabilities version="1.0.0" xmlns:gml="g" xmlns:xlink="x"><ContentMetadata>)" + contents +
         "</ContentMetadata></WCS_Capabilities>";
}

TEST(CapabilitiesForms, CountAsTheNearestVersionThatIsSpoken) {
  const std::vector<std::pair<std::string, CoverageVersion>> table = {
      {R"(<Capabilities version="2.0.1"/>)", CoverageVersion::V201},
      {R"(<Capabilities version="2.1.0"/>)", CoverageVersion::V201},
      {R"(<Capabilities version=" 2.0.0 "/>)", CoverageVersion::V201},
      {R"(<w:Capabilities xmlns:w="u" version="2"/>)", CoverageVersion::V201},
      {R"(<Capabilities version="1.1.0"/>)", CoverageVersion::V111},
      {R"(<Capabilities version="1.1.2"/>)", CoverageVersion::V111},
      {R"(<Capabilities/>)", CoverageVersion::V111},
      {R"(<WCS_Capabilities/>)", CoverageVersion::V100},
      {R"(<WCS_Capabilities version="2.0.1"/>)", CoverageVersion::V100},
  };
  for (const auto& [document, version] : table) {
    const auto found = read(document);
    EXPECT_EQ(found.version, version) << document;
    EXPECT_TRUE(found.coverages.empty()) << document;
    EXPECT_EQ(found.title, "") << document;
    EXPECT_EQ(found.getAddress, "") << document;
  }
}

TEST(CapabilitiesForms, OfBoxesThatAreNoneTellNoPlace) {
  EXPECT_EQ(summaryOf(boxOf(" 7,46 ", "8\n47")).geographic, (Bounds{7, 46, 8, 47}));
  EXPECT_EQ(summaryOf(boxOf("7 46 0", "8 47 900")).geographic, (Bounds{7, 46, 8, 47})) << "heights";
  EXPECT_EQ(summaryOf(boxOf("7 46", "7 46")).geographic, (Bounds{7, 46, 7, 46})) << "a point";
  const std::vector<std::pair<std::string, std::string>> wrong = {
      {"8 46", "7 47"}, {"7 47", "8 46"},   {"7", "8 47"},        {"7 46", ""},
      {"west", "east"}, {"nan 46", "8 47"}, {"7 46", "1e300 47"}, {"452000 5142960", "475040 5166000"}};
  for (const auto& [low, high] : wrong)
    EXPECT_FALSE(summaryOf(boxOf(low, high)).geographic) << low << ' ' << high;
}

TEST(CapabilitiesForms, WithSeveralBoxesTellTheFirst) {
  const std::string second =
      "<ows:WGS84BoundingBox><ows:LowerCorner>0 0</ows:LowerCorner>"
      "<ows:UpperCorner>1 1</ows:UpperCorner></ows:WGS84BoundingBox>";
  EXPECT_EQ(summaryOf(boxOf("7 46", "8 47") + second).geographic, (Bounds{7, 46, 8, 47}));
  const std::string other =
      "<ows:BoundingBox><ows:LowerCorner>452000 5142960</ows:LowerCorner>"
      "<ows:UpperCorner>475040 5166000</ows:UpperCorner></ows:BoundingBox>";
  EXPECT_EQ(summaryOf(other + boxOf("7 46", "8 47")).geographic, (Bounds{7, 46, 8, 47}));
  EXPECT_FALSE(summaryOf(other + "<wcs:CoverageId>a</wcs:CoverageId>").geographic);
}

TEST(CapabilitiesForms, TellTheFirstTitleAndAllKeywords) {
  const auto found = summaryOf(
      "<ows:Title> Sheet\n</ows:Title><ows:Title "
      "xml:lang=\"de\">Blatt</ows:Title><ows:Abstract>one</ows:Abstract>"
      "<ows:Abstract>two</ows:Abstract><ows:Keywords><ows:Keyword>a</ows:Keyword><ows:Keyword> </ows:Keyword>"
      "</ows:Keywords><ows:Keywords><ows:Keyword>b &amp; c</ows:Keyword></ows:Keywords>"
      "<wcs:CoverageId><![CDATA[x<y>]]></wcs:CoverageId>");
  EXPECT_EQ(found.id, "x<y>");
  EXPECT_EQ(found.title, "Sheet");
  EXPECT_EQ(found.abstract, "one");
  EXPECT_EQ(found.keywords, (Words{"a", "b & c"}));
}

TEST(CapabilitiesForms, OfTheFirstVersionTellDates) {
  const auto datesOf = [](const std::string& positions) {
    return read(
               "<WCS_Capabilities version=\"1.0.0\"><ContentMetadata><CoverageOfferingBrief><name>a</name>"
               "<lonLatEnvelope><pos>7 46</pos><pos>8 47</pos>" +
               positions + "</lonLatEnvelope></CoverageOfferingBrief></ContentMetadata></WCS_Capabilities>")
        .coverages.at(0)
        .dates;
  };
  EXPECT_EQ(datesOf("<timePosition>2021-08-30</timePosition><timePosition> 2021-07-14\n</timePosition>"),
            (CoverageDates{"2021-07-14", "2021-08-30"}));
  EXPECT_EQ(datesOf("<timePosition>2021</timePosition>"), (CoverageDates{"2021", "2021"}));
  EXPECT_FALSE(datesOf("<timePosition>soon</timePosition>"));
  EXPECT_FALSE(datesOf(""));
}

TEST(CapabilitiesForms, NameCoveragesByTheirIdBeforeOtherIdentifiers) {
  EXPECT_EQ(summaryOf("<Identifier>i</Identifier><wcs:CoverageId>c</wcs:CoverageId>").id, "c");
  EXPECT_EQ(summaryOf("<wcs:CoverageId>c</wcs:CoverageId><Identifier>i</Identifier>").id, "c");
  EXPECT_EQ(summaryOf("<Identifier>i</Identifier><Identifier>j</Identifier>").id, "i");
  EXPECT_EQ(
      summaryOf("<Other><wcs:CoverageId>deep</wcs:CoverageId></Other><wcs:CoverageId>c</wcs:CoverageId>").id,
      "c");
}

TEST(CapabilitiesForms, LeaveOutCoveragesWithoutAName) {
  const auto found = read(capabilities201(
      "<wcs:CoverageSummary/><wcs:CoverageSummary><wcs:CoverageId> </wcs:CoverageId></wcs:CoverageSummary>"
      "<wcs:CoverageSummary><ows:Title>t</ows:Title></wcs:CoverageSummary>"));
  EXPECT_TRUE(found.coverages.empty());
  EXPECT_EQ(found.title, "Survey") << "no title of a coverage";
}

TEST(CapabilitiesForms, KeepWhatGroupsTellApartFromTheirCoverages) {
  const auto found = read(capabilities201(
      "<wcs:CoverageSummary><ows:Title>Group</ows:Title><Identifier>g</Identifier><wcs:CoverageSummary>"
      "<Identifier>in</Identifier><ows:Keywords><ows:Keyword>k</ows:Keyword></ows:Keywords></"
      "wcs:CoverageSummary>"
      "<ows:Abstract>of the group</ows:Abstract></wcs:CoverageSummary>"));
  ASSERT_EQ(found.coverages.size(), 2U);
  EXPECT_EQ(found.coverages[0].id, "g");
  EXPECT_EQ(found.coverages[0].title, "Group");
  EXPECT_EQ(found.coverages[0].abstract, "of the group");
  EXPECT_TRUE(found.coverages[0].keywords.empty());
  EXPECT_EQ(found.coverages[1].id, "in");
  EXPECT_EQ(found.coverages[1].title, "");
  EXPECT_EQ(found.coverages[1].keywords, Words{"k"});
}

TEST(CapabilitiesForms, ListTheSameIdAsOftenAsTheServerDoes) {
  const std::string twice = "<wcs:CoverageSummary><wcs:CoverageId>a</wcs:CoverageId></wcs:CoverageSummary>";
  EXPECT_EQ(read(capabilities201(twice + twice)).coverages.size(), 2U);
}

TEST(CapabilitiesForms, OfTenThousandCoveragesAreReadInOrder) {
  std::string list;
  for (int i = 0; i < 10000; ++i)
    list += "<wcs:CoverageSummary><wcs:CoverageId>c" + std::to_string(i) +
            "</wcs:CoverageId></wcs:CoverageSummary>";
  const auto found = read(capabilities201(list));
  ASSERT_EQ(found.coverages.size(), 10000U);
  EXPECT_EQ(found.coverages[1].id, "c1");
  EXPECT_EQ(found.coverages.back().id, "c9999");
}

TEST(CapabilitiesForms, BrokenOffAreNoList) {
  const std::string whole =
      capabilities201("<wcs:CoverageSummary><wcs:CoverageId>a</wcs:CoverageId></wcs:CoverageSummary>");
  for (std::size_t size = 0; size < whole.size(); size += 37) {
    const auto found = readCapabilities(whole.substr(0, size));
    ASSERT_TRUE(std::holds_alternative<CoverageProblem>(found)) << size;
    EXPECT_EQ(std::get<CoverageProblem>(found).text, "the answer is no document of a coverage service");
  }
  EXPECT_EQ(read(whole).coverages.size(), 1U);
}

TEST(CapabilitiesForms, OfTheFirstVersionNeedBothCornersForAPlace) {
  const auto found = read(listOf100(
      "<CoverageOfferingBrief><name>both</name><lonLatEnvelope><gml:pos>8 46</gml:pos><gml:pos>9 47</gml:pos>"
      "<gml:timePosition>2021</gml:timePosition></lonLatEnvelope></"
      "CoverageOfferingBrief><CoverageOfferingBrief>"
      "<name>one</name><lonLatEnvelope><gml:pos>8 46</gml:pos></lonLatEnvelope></CoverageOfferingBrief>"
      "<CoverageOfferingBrief><name>none</name><description>d</description><keywords><keyword>k</keyword>"
      "<type>theme</type></keywords></CoverageOfferingBrief>"));
  ASSERT_EQ(found.coverages.size(), 3U);
  EXPECT_EQ(found.coverages[0].geographic, (Bounds{8, 46, 9, 47}));
  EXPECT_FALSE(found.coverages[1].geographic);
  EXPECT_FALSE(found.coverages[2].geographic);
  EXPECT_EQ(found.coverages[2].abstract, "d");
}

TEST(CapabilitiesForms, OfTheFirstVersionFallBackToTheServicesName) {
  const auto found = read(
      R"(<WCS_Capabilities xmlns:x="u"><Service><name>short</name></Service><Capability><Request><DescribeCoverage>
      <DCPType><HTTP><Post><OnlineResource x:href="http://h/post?"/></Post></HTTP></DCPType><DCPType><HTTP><Get>
      <OnlineResource x:href="http://h/d?"/></Get></HTTP></DCPType></DescribeCoverage></Request></Capability></WCS_Capabilities>)");
  EXPECT_EQ(found.title, "short");
  EXPECT_EQ(found.getAddress, "");
  EXPECT_TRUE(found.versions.empty());
  EXPECT_TRUE(found.canScale) << "that version always does";
}

TEST(CapabilitiesForms, OfTheMiddleVersionTellFormatsOfTheOperation) {
  const auto found = read(
      R"(<Capabilities version="1.1.1" xmlns:ows="o" xmlns:x="u"><ows:ServiceIdentification><ows:Profile>core</ows:Profile>
      </ows:ServiceIdentification><ows:OperationsMetadata><ows:Operation name="GetCapabilities"><ows:Parameter name="format">
      <ows:AllowedValues><ows:Value>text/xml</ows:Value></ows:AllowedValues></ows:Parameter></ows:Operation>
      <ows:Operation name="GetCoverage"><ows:DCP><ows:HTTP><ows:Get x:href=" http://h/g? "/></ows:HTTP></ows:DCP>
      <ows:Parameter name="store"><ows:AllowedValues><ows:Value>false</ows:Value></ows:AllowedValues></ows:Parameter>
      <ows:Parameter name="format"><ows:AllowedValues><ows:Value>image/tiff</ows:Value><ows:Value/>
      <ows:Value>image/png</ows:Value></ows:AllowedValues></ows:Parameter></ows:Operation></ows:OperationsMetadata></Capabilities>)");
  EXPECT_EQ(found.formats, (Words{"image/tiff", "image/png"}));
  EXPECT_EQ(found.getAddress, "http://h/g?");
  EXPECT_EQ(found.describeAddress, "");
  EXPECT_TRUE(found.canScale) << "profiles count in the newest version alone";
}

TEST(Exceptions, AreToldByTheFirstOfThem) {
  struct Row {
    std::string document;
    std::string code;
    std::string text;
  };
  const std::string nothing = "the server refuses without a reason";
  const std::vector<Row> table = {
      {"<ExceptionReport><Exception exceptionCode='A'><ExceptionText>one</ExceptionText></Exception>"
       "<Exception exceptionCode='B'><ExceptionText>two</ExceptionText></Exception></ExceptionReport>",
       "A", "one"},
      {"<ExceptionReport><Exception exceptionCode='A'/></ExceptionReport>", "A", nothing},
      {"<ExceptionReport><Exception code='A' exceptionCode='B'/></ExceptionReport>", "B", nothing},
      {"<ServiceExceptionReport><ServiceException><![CDATA[ a <b> "
       "]]></ServiceException></ServiceExceptionReport>",
       "", "a <b>"},
      {"<o:ExceptionReport xmlns:o='u'><o:Exception><o:ExceptionText> </o:ExceptionText></o:Exception>"
       "</o:ExceptionReport>",
       "", nothing},
      {"<ServiceExceptionReport/>", "", nothing},
  };
  for (const auto& [document, code, text] : table) {
    const auto problem = readException(document);
    ASSERT_TRUE(problem) << document;
    EXPECT_EQ(problem->code, code) << document;
    EXPECT_EQ(problem->text, text) << document;
  }
}

TEST(Exceptions, AreNoneInOtherDocuments) {
  for (const std::string text :
       {"", "<Capabilities/>", "<R><ExceptionReport/></R>", "<ExceptionReport>", "Exception"})
    EXPECT_FALSE(readException(text)) << text;
}

}  // namespace
}  // namespace vlclientui::client::network
