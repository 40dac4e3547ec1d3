#include "ServicesCommand.h"

#include <gtest/gtest.h>

#include "ServiceReport.h"
#include "contracts/RuntimeFailure.h"
#include "support/TestFolders.h"

namespace vlclientui::vlhost {
namespace {

host::Installation withoutSamples() {
  host::Installation installation;
  installation.catalogue = "/nowhere/samples/catalogue";
  return installation;
}

host::Installation withSamples() {
  host::Installation installation;
  installation.catalogue = sourceFolder();
  return installation;
}

TEST(ReasonOfSilence, TellsThatTheSamplesAreMissing) {
  for (const char* const server : {"127.0.0.1", "localhost"}) {
    const std::string reason = reasonOfSilence(withoutSamples(), server);
    EXPECT_TRUE(
        reason.starts_with("The samples are missing: there is no folder '/nowhere/samples/catalogue'"))
        << reason;
  }
}

TEST(ReasonOfSilence, TellsThatAHostDoesNotAnswer) {
  EXPECT_EQ(reasonOfSilence(withoutSamples(), "server.example"),
            "the server 'server.example' does not answer");
}

TEST(RefuseMissingSamples, LooksAtReferencesIntoTheBuiltInCatalogue) {
  EXPECT_THROW(refuseMissingSamples(withoutSamples(), "ImageService://127.0.0.1/World/EGM96_Geoid"),
               RuntimeFailure);
  EXPECT_THROW(refuseMissingSamples(withoutSamples(), "ImageService://localhost/A"), RuntimeFailure);
  EXPECT_NO_THROW(refuseMissingSamples(withSamples(), "ImageService://127.0.0.1/World/EGM96_Geoid"));
}

TEST(RefuseMissingSamples, LeavesOtherReferencesAlone) {
  EXPECT_NO_THROW(refuseMissingSamples(withoutSamples(), "ImageService:///data/maps/North"));
  EXPECT_NO_THROW(refuseMissingSamples(withoutSamples(), "/data/north.tif"));
}

TEST(ServiceJson, TellsNothingOfWhatIsNotKnown) {
  host::ServiceDescription service;
  service.name = "North";
  EXPECT_EQ(
      serviceJson({service}, {}, "localhost"),
      "[\n  {\n    \"name\": \"North\",\n    \"reference\": \"ImageService://localhost/North\"\n  }\n]\n");
}

TEST(ServiceJson, IsADocumentWhateverTheTextsHold) {
  host::ServiceDescription service;
  service.name = "gr\xFC\xDF \"and\\\n";
  EXPECT_NE(serviceJson({service}, {}, "localhost")
                .find(R"("gr)"
                      "\uFFFD\uFFFD"
                      R"( \"and\\\n")"),
            std::string::npos);
}

TEST(ServiceJson, IsAnEmptyListForNoServices) { EXPECT_EQ(serviceJson({}, {}, "localhost"), "[]\n"); }

}  // namespace
}  // namespace vlclientui::vlhost
