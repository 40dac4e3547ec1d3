// How soon a map shows its services, by the threads that draw it, without a window: until the first tile is
// there, until there is something everywhere, and until all is finished; how long a drawing that nobody needs
// any more goes on; and the memory that all of it takes. Processor time of all threads stands in brackets.
// Each kind of service is a program of its own. Usage: Map_bench [pixels a side of the large rasters, 30000
// where none is told [folder that keeps them]] As a part of map_beside_qgis.py: Map_bench --draw <raster>
// <system> <xMin> <yMin> <xMax> <yMax> <columns> <rows>
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "MapRasters.h"
#include "MeasuredProgram.h"
#include "client/drawing/Drawing.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/mapping/Areas.h"
#include "client/mapping/MapDrawer.h"
#include "client/mapping/MapSystem.h"
#include "client/mapping/PointWay.h"
#include "platform/LibXmlService.h"

namespace vlclientui::benchmarks {
namespace {

namespace fs = std::filesystem;
using client::Bounds;
using client::MapDrawer;
using client::MapLayer;
using client::MapScene;
using Clock = std::chrono::steady_clock;

constexpr int columns = 1000;
constexpr int rows = 800;

double millisecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double processorMilliseconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return 1000 * (secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime));
}

// Of this program alone; what the system tells of it after its end counts the one that began it, too.
double mostMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::atof(line.c_str() + 6) / 1024;
  }
  return 0;
}

/// Services as a host opens them.
class Opened {
 public:
  explicit Opened(const std::vector<std::string>& references)
      : xml_(platform::PathTranslation("/")),
        server_(std::make_shared<client::CatalogueServer>(xml_, client::CatalogueSettings())) {
    for (const std::string& reference : references) {
      client::CatalogueImageService service(server_, xml_, reference);
      drawings_.push_back(std::make_shared<const client::ServiceDrawing>(service.drawing()));
    }
  }

  /// @param edition another one draws the same services anew, by the rasters that are open.
  [[nodiscard]] std::vector<MapLayer> layers(int edition) const {
    std::vector<MapLayer> layers;
    for (std::size_t i = 0; i < drawings_.size(); ++i) {
      const std::string service = std::to_string(i);
      layers.push_back({service + "#" + std::to_string(edition),
                        [drawing = drawings_[i]](const auto& area) { return drawing->within(area); }});
    }
    return layers;
  }

  /// The middle of all, in the proportions of the picture. @param share of the whole, each way.
  [[nodiscard]] MapScene scene(const std::string& wkt, double share) const {
    Bounds all = placeOf(*drawings_.front(), wkt);
    for (const auto& drawing : drawings_) all = client::unite(all, placeOf(*drawing, wkt));
    const double pixel = share * std::max((all.xMax - all.xMin) / columns, (all.yMax - all.yMin) / rows);
    const double x = (all.xMin + all.xMax) / 2;
    const double y = (all.yMin + all.yMax) / 2;
    return {wkt,
            pixel,
            {x - pixel * columns / 2, y - pixel * rows / 2, x + pixel * columns / 2, y + pixel * rows / 2},
            {}};
  }

  [[nodiscard]] std::string wkt() const { return drawings_.front()->facts().srsWkt; }

 private:
  [[nodiscard]] static Bounds placeOf(const client::ServiceDrawing& drawing, const std::string& wkt) {
    const client::RasterFacts& facts = drawing.facts();
    const auto way = client::PointWay::between(facts.srsWkt, wkt);
    return client::reachOf(facts.envelope, *way).value_or(facts.envelope);
  }

  platform::LibXmlService xml_;
  std::shared_ptr<client::CatalogueServer> server_;
  std::vector<std::shared_ptr<const client::ServiceDrawing>> drawings_;
};

/// Draws scenes, and tells when what of them is there.
class Watch {
 public:
  struct Times {
    double first = 0;    ///< until a tile is there
    double covered = 0;  ///< until there is something everywhere
    double final = 0;
    double processor = 0;         ///< until there is something everywhere
    double processorOfFinal = 0;  ///< all threads together
  };

  Watch() : drawer_([this] { ring(); }) {}

  Times draw(const MapScene& scene) {
    Times times;
    const auto begin = Clock::now();
    const double before = processorMilliseconds();
    drawer_.show(scene);
    std::unique_lock lock(mutex_);
    while (drawer_.isBusy()) {
      heard_.wait_for(lock, std::chrono::milliseconds(1));
      const std::size_t there = countOf(scene);
      if (there > 0 && times.first == 0) times.first = millisecondsSince(begin);
      if (times.covered == 0 && drawer_.isCovered()) {
        times.covered = millisecondsSince(begin);
        times.processor = processorMilliseconds() - before;
      }
    }
    times.final = millisecondsSince(begin);
    times.processorOfFinal = processorMilliseconds() - before;
    if (times.first == 0) times.first = times.final;
    if (times.covered == 0) {
      times.covered = times.final;
      times.processor = times.processorOfFinal;
    }
    return times;
  }

  MapDrawer& drawer() { return drawer_; }

 private:
  void ring() {
    const std::lock_guard lock(mutex_);
    heard_.notify_all();
  }

  std::size_t countOf(const MapScene& scene) {
    std::size_t count = 0;
    for (const MapLayer& layer : scene.layers) count += drawer_.tiles(layer.id).size();
    return count;
  }

  std::mutex mutex_;
  std::condition_variable heard_;
  MapDrawer drawer_;
};

double middleOf(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

// So long a drawing goes on after nobody needs it any more.
double staleTime(const MapScene& scene) {
  double longest = 0;
  for (const int pause : {15, 40, 90, 160, 300}) {
    auto drawer = std::make_unique<MapDrawer>([] {});
    drawer->show(scene);
    std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    const auto begin = Clock::now();
    drawer.reset();
    longest = std::max(longest, millisecondsSince(begin));
  }
  return longest;
}

int measure(const std::vector<std::string>& references) {
  const Opened opened(references);
  Watch watch;
  int edition = 0;
  double stale = 0;
  for (const std::string& text : {opened.wkt(), std::string("EPSG:3857"), std::string("EPSG:4326")}) {
    const auto system = client::mapSystemOf(text);
    for (const double share : {1.0, 0.3, 0.05}) {
      MapScene scene = opened.scene(system->wkt, share);
      std::vector<Watch::Times> all;
      for (int i = 0; i < 3; ++i) {
        scene.layers = opened.layers(++edition);
        all.push_back(watch.draw(scene));
      }
      const auto middle = [&](double Watch::Times::*member) {
        std::vector<double> values;
        for (const Watch::Times& one : all) values.push_back(one.*member);
        return middleOf(values);
      };
      std::printf(
          "  %-22s %4.2f  first %5.0f (newly %5.0f)  everywhere %5.0f [%5.0f]  final %6.0f [%6.0f] ms\n",
          system->name.c_str(), share, middle(&Watch::Times::first), all.front().first,
          middle(&Watch::Times::covered), middle(&Watch::Times::processor), middle(&Watch::Times::final),
          middle(&Watch::Times::processorOfFinal));
      std::fflush(stdout);
      stale = std::max(stale, staleTime(scene));
    }
  }
  std::printf("  a drawing that nobody needs ends within %.0f ms; %.0f MB at most\n", stale, mostMegabytes());
  return EXIT_SUCCESS;
}

// Composed, since the other renderer gives one image as well.
int drawOnce(char** words) {
  const Opened opened({words[0]});
  const auto system = client::mapSystemOf(words[1]);
  const Bounds area{std::atof(words[2]), std::atof(words[3]), std::atof(words[4]), std::atof(words[5])};
  const int width = std::atoi(words[6]);
  const int height = std::atoi(words[7]);
  MapScene scene{system->wkt, (area.xMax - area.xMin) / width, area, {}};
  Watch watch;
  for (int i = 0; i < 7; ++i) {
    scene.layers = opened.layers(i);
    const auto begin = Clock::now();
    const Watch::Times times = watch.draw(scene);
    std::vector<std::uint8_t> image(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (const client::StoredTile& tile : watch.drawer().tiles(scene.layers.front().id)) {
      const Bounds extent = tile.key.extent();
      const auto left = static_cast<int>(std::lround((extent.xMin - area.xMin) / scene.pixel));
      const auto top = static_cast<int>(std::lround((area.yMax - extent.yMax) / scene.pixel));
      const int from = std::max(0, -left);
      const int to = std::min(client::TileKey::side, width - left);
      for (int row = std::max(0, -top); row < std::min(client::TileKey::side, height - top) && from < to;
           ++row) {
        std::memcpy(
            image.data() + (static_cast<std::size_t>(top + row) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(left + from)) *
                               4,
            tile.picture->rgba.data() +
                (static_cast<std::size_t>(row) * client::TileKey::side + static_cast<std::size_t>(from)) * 4,
            static_cast<std::size_t>(to - from) * 4);
      }
    }
    std::printf("%.2f %.2f\n", times.covered, millisecondsSince(begin));
  }
  return EXIT_SUCCESS;
}

std::vector<std::string> tenRasters(const fs::path& folder) {
  std::vector<std::string> files;
  for (int i = 0; i < 10; ++i) {
    files.push_back(folder / ("ten_" + std::to_string(i) + ".tif"));
    makeMapRaster(files.back(), {4000, 500000.0 + i % 5 * 3500, 5200000.0 - i / 5 * 3500, Overviews::Some});
  }
  return files;
}

void run(const char* what, std::vector<std::string> references) {
  std::printf("%s\n", what);
  std::fflush(stdout);
  references.insert(references.begin(), "--measure");
  if (!costOf(references)) std::exit(EXIT_FAILURE);
}

struct Inputs {
  std::string with;
  std::string without;
  std::string mosaic;
  std::vector<std::string> ten;
};

Inputs makeAll(int side, const fs::path& folder) {
  fs::create_directories(folder);
  Inputs made{folder / ("with_" + std::to_string(side) + ".tif"),
              folder / ("without_" + std::to_string(side) + ".tif"), makeMapMosaic(folder, 40, 25),
              tenRasters(folder)};
  makeMapRaster(made.with, {side, 500000, 5200000, Overviews::Some});
  makeMapRaster(made.without, {side, 500000, 5200000, Overviews::None});
  return made;
}

int runAll(int side, const fs::path& folder) {
  const Inputs made = makeAll(side, folder);
  run("a large raster with overviews", {made.with});
  run("a large raster without", {made.without});
  run("a mosaic of 1,000 sources", {made.mosaic});
  run("ten services", made.ten);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace vlclientui::benchmarks

int main(int count, char** words) {
  using namespace vlclientui::benchmarks;
  const std::string first = count > 1 ? words[1] : "30000";
  if (first == "--measure") return measure({words + 2, words + count});
  if (first == "--make" && count == 4) {
    makeMapRaster(words[2], {std::atoi(words[3]), 500000, 5200000, Overviews::Some});
    return EXIT_SUCCESS;
  }
  if (first == "--make-all" && count == 4) {
    makeAll(std::atoi(words[2]), words[3]);
    return EXIT_SUCCESS;
  }
  if (first == "--draw") return count == 10 ? drawOnce(words + 2) : EXIT_FAILURE;
  if (count > 2) return runAll(std::atoi(first.c_str()), words[2]);
  const fs::path folder = fs::temp_directory_path() / ("vl_map_bench_" + std::to_string(getpid()));
  const int end = runAll(std::atoi(first.c_str()), folder);
  fs::remove_all(folder);
  return end;
}
