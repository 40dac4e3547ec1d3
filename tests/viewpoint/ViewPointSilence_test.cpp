// Each silent end of the viewpoint leaves its trace.

#include "support/HeardSilence.h"
#include "viewpoint/SteeringTest.h"

namespace vlclientui::test {
namespace {

class ViewPointSilence : public SteeringTest<ViewPointDialogForm> {};

TEST_F(ViewPointSilence, IsTold) {
  expectHeard({
      {"ViewPointSteering::loadViewPointData: no connection",
       [this] {
         service->duringCall = [] { throw RuntimeFailure("no connection"); };
         window.load();
         service->duringCall = nullptr;
       }},
      {"ViewPointSteering::readCenter: an extent that lies evenly about 0 has no center",
       [this] {
         service->metadata = basicMetadata({"-100", "10", "100", "30"});
         click("Center");
       }},
      {"ViewPointSteering::readExtent: a text of 5 bytes is no XML document",
       [this] {
         service->metadata = "<open";
         window.RefReshViewpoints();
       }},
      {R"(ViewPointSteering::move: Type mismatch: "north" is not a number)",
       [this] {
         click("MoveRight");
         typeX("north");
         click("MoveRight");
       }},
  });
}

TEST_F(ViewPointSilence, IsNotTheLotOfAVisitThatGoesWell) {
  HeardSilence heard;
  click("MoveUp");
  click("Center");
  click("uibtnok");
  EXPECT_THAT(heard.take(), testing::IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
