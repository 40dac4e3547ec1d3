// The map in the viewer's window, offscreen: how long its thread stands still at most while services are
// added, zoomed and moved, and how many frames a second it shows when a person drags what is in memory. Each
// kind of service is a program of its own. Usage: MapWindow_bench <folder of Map_bench> [pixels a side of its
// large rasters, 30000 where none is told]
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "MeasuredProgram.h"
#include "frame/ThreadState.h"
#include "support/StandingTime.h"
#include "viewer/window/ViewerWindow.h"

namespace vlclientui::benchmarks {
namespace {

namespace fs = std::filesystem;

constexpr int pulse = 5;          // milliseconds between two looks at the clock
constexpr int longest = 300'000;  // milliseconds that anything here may take

/// Looks at the clock on the thread of the window.
class Watchdog {
 public:
  Watchdog() {
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      longest_ = std::max(longest_, standing_.milliseconds(pulse));
      standing_.restart();
    });
    timer_.start(pulse);
  }
  /// Milliseconds since the last question.
  double longest() { return std::exchange(longest_, 0.0); }

 private:
  QTimer timer_;
  test::StandingTime standing_;
  double longest_ = 0;
};

/// Lets the window's thread work for so long. Not by QTest, which sleeps between two rounds of events.
void letWork(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

template <class Condition>
void workUntil(Condition condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition() && clock.elapsed() < longest) letWork(pulse);
}

class Session {
 public:
  explicit Session(viewer::ViewerWindow& window)
      : window_(window), map_(*window.findChild<viewer::MapView*>()) {}

  void run(const std::vector<std::string>& files) {
    const double opening = timed([&] {
      for (const std::string& file : files) window_.openFile(file);
      workUntil([this] { return !window_.services().isLoading(); });
      waitForPictures();
    });
    tell("added", opening);
    tell("the whole", timed([&] { showShare(1); }));
    tell("zoomed by the wheel", timed([&] { zoom(); }));
    showShare(0.3);
    static_cast<void>(watchdog_.longest());
    const Frames frames = drag();
    std::printf(
        "  dragged in memory       %5.0f frames a second, %4.0f if no other program ran, stands still for "
        "%3.0f ms "
        "at most\n",
        frames.shown, frames.possible, watchdog_.longest());
  }

 private:
  template <class Work>
  static double timed(Work work) {
    QElapsedTimer clock;
    clock.start();
    work();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
  }

  void tell(const char* what, double milliseconds) {
    std::printf("  %-22s %7.0f ms, stands still for %3.0f ms at most\n", what, milliseconds,
                watchdog_.longest());
    std::fflush(stdout);
  }

  void waitForPictures() {
    workUntil([this] { return !window_.isDrawing(); });
  }

  void showShare(double share) {
    host::GeographicEnvelope all = *window_.services().rows().front().service.envelope;
    for (const auto& row : window_.services().rows()) {
      const auto& one = *row.service.envelope;
      all = {std::min(all.xMin, one.xMin), std::min(all.yMin, one.yMin), std::max(all.xMax, one.xMax),
             std::max(all.yMax, one.yMax)};
    }
    const double across = (all.xMax - all.xMin) * share / 2;
    const double down = (all.yMax - all.yMin) * share / 2;
    const double x = (all.xMin + all.xMax) / 2;
    const double y = (all.yMin + all.yMax) / 2;
    map_.showExtent({x - across, y - down, x + across, y + down});
    waitForPictures();
  }

  // Faster than it is drawn, in and out again.
  void zoom() {
    const QPointF middle(map_.width() / 2.0, map_.height() / 2.0);
    for (int i = 0; i < 24; ++i) {
      QWheelEvent event(middle, map_.mapToGlobal(middle), {}, {0, i < 12 ? 120 : -120}, Qt::NoButton,
                        Qt::NoModifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(&map_, &event);
      letWork(30);
    }
    waitForPictures();
  }

  void send(QEvent::Type type, QPointF at, Qt::MouseButtons buttons) {
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, map_.mapToGlobal(at), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&map_, &event);
  }

  // A second.
  struct Frames {
    double shown = 0;
    double possible = 0;  ///< were there no other programs
  };

  Frames drag() {
    constexpr int frames = 300;
    QPointF at(map_.width() / 2.0, map_.height() / 2.0);
    send(QEvent::MouseButtonPress, at, Qt::LeftButton);
    const auto move = [&](int i) {
      const double step = i / 25 % 2 == 0 ? 4 : -4;
      at += QPointF(step, step / 2);
      send(QEvent::MouseMove, at, Qt::LeftButton);
      map_.repaint();
      QCoreApplication::processEvents();
    };
    for (int i = 0; i < 50; ++i) move(i);  // so that all of it was seen
    waitForPictures();
    const test::StandingTime standing;
    const double milliseconds = timed([&] {
      for (int i = 0; i < frames; ++i) move(i);
    });
    const double own = standing.milliseconds();
    send(QEvent::MouseButtonRelease, at, Qt::NoButton);
    return {frames * 1000 / milliseconds, frames * 1000 / own};
  }

  viewer::ViewerWindow& window_;
  viewer::MapView& map_;
  Watchdog watchdog_;
};

int measure(int& count, char** words) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const std::vector<std::string> files(words + 2, words + count);
  const QApplication application(count, words);
  const fs::path documents = fs::temp_directory_path() / ("vl_map_window_" + std::to_string(getpid()));
  const auto host = host::composeDesktopPlatform({});
  setPlatform(host.platform);
  {
    viewer::ViewerWindow window(host, documents);
    window.resize(1320, 1000);
    window.show();
    Session(window).run(files);
  }
  setPlatform(nullptr);
  fs::remove_all(documents);
  return EXIT_SUCCESS;
}

void run(const char* what, std::vector<std::string> files) {
  std::printf("%s\n", what);
  std::fflush(stdout);
  files.insert(files.begin(), "--measure");
  const auto cost = costOf(files);
  if (!cost) std::exit(EXIT_FAILURE);
  std::printf("  %.0f MB at most, %.1f s of a processor\n", cost->megabytes, cost->processorSeconds);
}

int runAll(const fs::path& folder, const std::string& side) {
  run("a large raster with overviews", {folder / ("with_" + side + ".tif")});
  run("a large raster without", {folder / ("without_" + side + ".tif")});
  run("a mosaic of 1,000 sources", {folder / "mosaic.VLDef"});
  std::vector<std::string> ten;
  for (int i = 0; i < 10; ++i) ten.push_back(folder / ("ten_" + std::to_string(i) + ".tif"));
  run("ten services", ten);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace vlclientui::benchmarks

int main(int count, char** words) {
  using namespace vlclientui::benchmarks;
  if (count > 2 && std::string(words[1]) == "--measure") return measure(count, words);
  if (count < 2) {
    std::fprintf(stderr, "Usage: MapWindow_bench <folder of Map_bench> [pixels a side]\n");
    return EXIT_FAILURE;
  }
  return runAll(words[1], count > 2 ? words[2] : "30000");
}
