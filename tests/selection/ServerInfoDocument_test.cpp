#include "selection/ServerInfoDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "selection/XmlForTests.h"
#include "support/SelectionFixture.h"

namespace vlclientui {
namespace {

using test::infoWithEnvelope;
using test::parsed;
using test::serverInfo;
using test::serverInfoOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

const ServiceExtent view{0, 10, 0, 10};

ExtentTest inView() {
  return [](const ServiceExtent& service) { return IsInViewExtent(view, service); };
}

std::optional<std::vector<std::string>> names(const std::string& xml, const ExtentTest& test = {}) {
  const auto document = parsed(xml);
  return readServiceNames(*document, test);
}

std::string title(const std::string& xml, const std::string& name) {
  return FindServiceTitle(*parsed(xml), name);
}

std::string infoXml(const std::string& xml, const std::string& name) {
  return FindServiceInfoXml(*parsed(xml), name);
}

std::string providers(const std::string& inner) {
  return "<Vorlane><Server><Info><Detailed><ServiceProviders>" + inner +
         "</ServiceProviders></Detailed></Info></Server></Vorlane>";
}

TEST(IsInViewExtent, IsTrueForOverlapAndForAServiceAroundOrWithinTheView) {
  EXPECT_TRUE(IsInViewExtent(view, {5, 15, 5, 15}));
  EXPECT_TRUE(IsInViewExtent(view, {-5, 15, -5, 15}));
  EXPECT_TRUE(IsInViewExtent(view, {4, 5, 4, 5}));
}

TEST(IsInViewExtent, TouchingAlongAnEdgeOrCornerCounts) {
  EXPECT_TRUE(IsInViewExtent(view, {10, 20, 0, 10}));
  EXPECT_TRUE(IsInViewExtent(view, {-9, 0, 0, 10}));
  EXPECT_TRUE(IsInViewExtent(view, {0, 10, 10, 20}));
  EXPECT_TRUE(IsInViewExtent(view, {0, 10, -9, 0}));
  EXPECT_TRUE(IsInViewExtent(view, {10, 20, 10, 20}));
}

TEST(IsInViewExtent, IsFalseOnEachSideThatIsStrictlyApart) {
  EXPECT_FALSE(IsInViewExtent(view, {10.001, 20, 0, 10}));
  EXPECT_FALSE(IsInViewExtent(view, {-9, -0.001, 0, 10}));
  EXPECT_FALSE(IsInViewExtent(view, {0, 10, 10.001, 20}));
  EXPECT_FALSE(IsInViewExtent(view, {0, 10, -9, -0.001}));
}

TEST(ReadServiceNames, GivesAllProvidersInDocumentOrder) {
  EXPECT_THAT(names(providers("<ServiceProvider><Services><Service><Name>b</Name></Service>"
                              "<Service><Name>a\\x</Name></Service></Services></ServiceProvider>"
                              "<ServiceProvider/>"
                              "<ServiceProvider><Services><Service><Name>a</Name></Service></Services>"
                              "</ServiceProvider>")),
              Optional(ElementsAre("b", "a\\x", "a")));
}

TEST(ReadServiceNames, AServiceWithoutNameGivesNoneAndDoubledNamesStay) {
  EXPECT_THAT(names(providers("<ServiceProvider><Services><Service/><Service><Name>a</Name></Service>"
                              "<Service><Name>a</Name></Service></Services></ServiceProvider>")),
              Optional(ElementsAre("a", "a")));
}

TEST(ReadServiceNames, AreNothingWithoutTheElementForProviders) {
  EXPECT_EQ(names("<Vorlane/>"), std::nullopt);
  EXPECT_EQ(
      names("<vorlane><Server><Info><Detailed><ServiceProviders/></Detailed></Info></Server></vorlane>"),
      std::nullopt);
  EXPECT_EQ(names("no document"), std::nullopt);
  EXPECT_EQ(names("<Vorlane><Server>"), std::nullopt);
}

TEST(ReadServiceNames, AreAnEmptyListWithoutServices) {
  EXPECT_THAT(names(providers("")), Optional(IsEmpty()));
}

TEST(ReadServiceNames, WithATestLeaveOutWhatFailsIt) {
  const auto xml = serverInfo({{"in", infoWithEnvelope(1, 2, 1, 2)},
                               {"out", infoWithEnvelope(20, 30, 1, 2)},
                               {"edge", infoWithEnvelope(10, 30, 1, 2)}});
  EXPECT_THAT(names(xml, inView()), Optional(ElementsAre("in", "edge")));
  EXPECT_THAT(names(xml), Optional(ElementsAre("in", "out", "edge")));
}

TEST(ReadServiceNames, AMissingEnvelopeValueKeepsTheNumberOfTheServiceBefore) {
  const std::string onlyXMax =
      "<ImageServiceInfo><GeographicEnvelope><XMax>40</XMax></GeographicEnvelope></ImageServiceInfo>";
  const auto xml = serverInfo({{"first", ""},
                               {"out", infoWithEnvelope(20, 30, 1, 2)},
                               {"still out", ""},
                               {"its XMin is 20", onlyXMax},
                               {"in", infoWithEnvelope(5, 6, 5, 6)},
                               {"its XMin is 5", onlyXMax}});
  EXPECT_THAT(names(xml, inView()), Optional(ElementsAre("first", "in", "its XMin is 5")))
      << "the first service without an envelope stands at zeros";
}

TEST(ReadServiceNames, EnvelopeValuesHaveAPointAndExponentsUnderEveryLocale) {
  const std::string info =
      "<ImageServiceInfo><GeographicEnvelope><XMin>1.05E1</XMin><XMax>20.5</XMax><YMin>-1.5</YMin>"
      "<YMax>2</YMax></GeographicEnvelope></ImageServiceInfo>";
  EXPECT_THAT(names(serverInfo({{"apart", info}}), inView()), Optional(IsEmpty()));
}

TEST(ReadServiceNames, AnEnvelopeValueThatIsNoNumberIsAFailureOnlyWhenItIsRead) {
  const std::string info =
      "<ImageServiceInfo><GeographicEnvelope><XMin>west</XMin></GeographicEnvelope></ImageServiceInfo>";
  const auto xml = serverInfo({{"a", info}});
  EXPECT_THROW(static_cast<void>(names(xml, inView())), RuntimeFailure);
  EXPECT_THAT(names(xml), Optional(ElementsAre("a")));
}

TEST(FindServiceTitle, ComparesTheWholeNameInAnyCase) {
  const std::string info =
      "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>The Alps</Title></KeyDetails></ImageServiceInfo>";
  const auto xml = serverInfo({{"Roads\\West", info}});
  EXPECT_EQ(title(xml, "roads/WEST"), "The Alps");
  EXPECT_EQ(title(xml, "west"), "") << "no match on the leaf";
  EXPECT_EQ(title(xml, "/roads/west"), "");
}

TEST(FindServiceTitle, IsEmptyWithoutTitleAndWithoutMatch) {
  EXPECT_EQ(title(serverInfoOf({"a"}), "a"), "");
  EXPECT_EQ(title(serverInfoOf({"a"}), "b"), "");
  EXPECT_EQ(title("<broken", "a"), "");
  EXPECT_EQ(title("<Other/>", "a"), "");
}

TEST(FindServiceTitle, TheFirstMatchEndsTheSearchAlsoWithoutTitle) {
  const std::string titled =
      "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>T</Title></KeyDetails></ImageServiceInfo>";
  const std::string untitled = "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>";
  EXPECT_EQ(title(serverInfo({{"a", untitled}, {"A", titled}}), "a"), "");
  EXPECT_EQ(title(serverInfo({{"A", titled}, {"a", untitled}}), "a"), "T");
}

TEST(FindServiceTitle, PassesByServicesWithoutInfoName) {
  const std::string nameless =
      "<ImageServiceInfo><KeyDetails><Title>no</Title></KeyDetails></ImageServiceInfo>";
  const std::string titled =
      "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>yes</Title></KeyDetails></ImageServiceInfo>";
  EXPECT_EQ(title(serverInfo({{"a", nameless}, {"a", titled}}), "a"), "yes");
}

TEST(FindServiceTitle, SearchesProvidersOfThatNameOnly) {
  const std::string services =
      "<Services><Service><Name>a</Name><ImageServiceInfo><Name>n</Name><KeyDetails><Title>T</Title>"
      "</KeyDetails></ImageServiceInfo></Service></Services>";
  EXPECT_EQ(title(providers("<Other>" + services + "</Other>"), "a"), "");
  EXPECT_EQ(title(providers("<Other/><ServiceProvider>" + services + "</ServiceProvider>"), "a"), "T");
}

TEST(FindServiceInfoXml, GivesTheWholeElement) {
  const std::string info = "<ImageServiceInfo kind=\"x\"><Name>n</Name><NBands>3</NBands></ImageServiceInfo>";
  EXPECT_EQ(infoXml(serverInfo({{"z", ""}, {"F/a", info}}), "f/A"), info);
  EXPECT_EQ(infoXml(serverInfo({{"F/a", info}}), "a"), "");
}

}  // namespace
}  // namespace vlclientui
