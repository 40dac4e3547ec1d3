// Which services are opened while a person moves quickly down the list.

#include "viewer/map/PickedImage.h"

#include <QSemaphore>
#include <QStringList>
#include <mutex>

#include "apps/viewer/ViewerFixture.h"

namespace vlclientui::test {
namespace {

/// A slow fake that opens nothing and records what it was asked for.
class SlowOpener {
 public:
  viewer::PickedImage::Open function() {
    return [this](const QString& reference, const QString&) -> std::shared_ptr<viewer::PickedService> {
      {
        const std::lock_guard lock(mutex_);
        opened_ += reference;
      }
      begun.release();
      mayEnd.acquire();
      throw std::runtime_error("nothing there");
    };
  }
  [[nodiscard]] QStringList opened() {
    const std::lock_guard lock(mutex_);
    return opened_;
  }

  QSemaphore begun;
  QSemaphore mayEnd;

 private:
  std::mutex mutex_;
  QStringList opened_;
};

TEST(PickedImage, OpensNothingThatSomebodyLeafedPast) {
  SlowOpener opener;
  viewer::PickedImage image(opener.function());
  image.pick("first", {});
  ASSERT_TRUE(opener.begun.tryAcquire(1, 10'000));
  for (const char* each : {"second", "third", "last"}) image.pick(each, {});
  opener.mayEnd.release(10);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !image.isBusy(); }, 10'000));
  EXPECT_EQ(opener.opened(), (QStringList{"first", "last"}));
}

TEST(PickedImage, TellsWhyAServiceIsNotOpened) {
  SlowOpener opener;
  viewer::PickedImage image(opener.function());
  QString told;
  QObject::connect(&image, &viewer::PickedImage::failed, &image,
                   [&told](const QString& problem) { told = problem; });
  opener.mayEnd.release();
  image.pick("first", {});
  ASSERT_TRUE(QTest::qWaitFor([&] { return !image.isBusy(); }, 10'000));
  EXPECT_EQ(told, "nothing there");
  EXPECT_EQ(image.service(), nullptr);
}

}  // namespace
}  // namespace vlclientui::test
