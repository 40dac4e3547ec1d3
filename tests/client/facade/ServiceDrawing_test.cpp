#include "client/facade/ServiceDrawing.h"

#include <filesystem>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/facade/CancelSwitch.h"
#include "client/raster/RasterFacts.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

class ServiceDrawings : public test::ServiceFixture {
 protected:
  ServiceDrawings() { makeNumbered("a.tif"); }

  [[nodiscard]] static std::string failureOf(const ServiceDrawing& drawing, const Bounds& extent, int columns,
                                             int rows) {
    try {
      (void)drawing.draw(extent, columns, rows);
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return {};
  }
};

TEST_F(ServiceDrawings, GiveThePixelsThatTheServiceGives) {
  const auto made = service("ImageService://localhost/a");
  const ServiceDrawing apart = made->drawing();
  EXPECT_EQ(apart.facts().envelope, made->facts().envelope);
  EXPECT_EQ(apart.draw(apart.facts().envelope, 8, 6).rgba,
            made->drawImage(made->facts().envelope, 8, 6).rgba);
}

TEST_F(ServiceDrawings, LeaveTheImageLastReturnedAloneUntilTheServiceIsTold) {
  const auto made = service("ImageService://localhost/a");
  const std::string before = made->GetImageMetadata("Basic");
  const ServiceDrawing apart = made->drawing();
  const Bounds part{500000, 5149400, 500200, 5149600};
  (void)apart.draw(part, 2, 2);
  EXPECT_EQ(made->GetImageMetadata("Basic"), before);
  made->showDrawn(apart, part, 2, 2);
  const std::string told = made->GetImageMetadata("Basic");
  EXPECT_NE(told, before);
  (void)made->drawImage(part, 2, 2);
  EXPECT_EQ(made->GetImageMetadata("Basic"), told);
}

TEST_F(ServiceDrawings, OutliveTheServiceAndItsLaterProperties) {
  auto made = service("ImageService://localhost/a");
  const ServiceDrawing apart = made->drawing();
  const auto pixels = apart.draw(apart.facts().envelope, 8, 6).rgba;
  made->setServiceProperties(
      "<Vorlane><ImageServiceProperties><NoDataValue>3</NoDataValue></ImageServiceProperties></Vorlane>");
  made.reset();
  std::thread([&] { EXPECT_EQ(apart.draw(apart.facts().envelope, 8, 6).rgba, pixels); }).join();
}

TEST_F(ServiceDrawings, RefuseAnImageWithoutPixelsOrExtent) {
  const ServiceDrawing apart = service("ImageService://localhost/a")->drawing();
  const Bounds whole = apart.facts().envelope;
  EXPECT_NE(failureOf(apart, whole, 0, 6), "");
  EXPECT_NE(failureOf(apart, whole, 8, 0), "");
  EXPECT_NE(failureOf(apart, {whole.xMax, whole.yMin, whole.xMin, whole.yMax}, 8, 6), "");
}

TEST_F(ServiceDrawings, AreGivenUpBySwitchAndDrawnAgainWithoutIt) {
  const ServiceDrawing apart = service("ImageService://localhost/a")->drawing();
  const CancelSwitch canceling;
  {
    const CancelScope scope(canceling);
    EXPECT_EQ(failureOf(apart, apart.facts().envelope, 8, 6), "");
    EXPECT_FALSE(canceling.isCanceled());
    canceling.cancel();
    EXPECT_TRUE(canceling.isCanceled());
    EXPECT_NE(failureOf(apart, apart.facts().envelope, 8, 6), "");
  }
  EXPECT_EQ(failureOf(apart, apart.facts().envelope, 8, 6), "");
}

TEST_F(ServiceDrawings, AreNotGivenUpByASwitchOfOtherWork) {
  const ServiceDrawing apart = service("ImageService://localhost/a")->drawing();
  const CancelSwitch mine;
  const CancelSwitch other;
  const CancelScope scope(mine);
  other.cancel();
  EXPECT_EQ(failureOf(apart, apart.facts().envelope, 8, 6), "");
}

}  // namespace
}  // namespace vlclientui::client
