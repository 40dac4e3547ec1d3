#include "client/mapping/BlockDrawer.h"

#include <algorithm>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "client/drawing/Drawing.h"
#include "client/mapping/BlockPainting.h"
#include "client/mapping/StretchChoice.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
#include "client/waiting/SideBySide.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Handles = std::unique_ptr<RasterHandles>;

constexpr std::size_t mostOpen = 128;  // rasters of a worker
constexpr std::size_t mostIdle = 4;    // workers whose rasters stay open
constexpr int stripRows = 256;         // as the painter divides a block
constexpr std::chrono::milliseconds look(5);

std::size_t helpersOfThisMachine() { return std::clamp(std::thread::hardware_concurrency(), 1U, 4U); }

OutputGrid stripOf(const OutputGrid& whole, int row) {
  const int rows = std::min(stripRows, whole.rows - row);
  const double top = whole.extent.yMax - row * whole.pixelHeight();
  const double bottom = row + rows == whole.rows ? whole.extent.yMin : top - rows * whole.pixelHeight();
  return {{whole.extent.xMin, bottom, whole.extent.xMax, top}, whole.columns, rows};
}

std::string textOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const RuntimeFailure& known) {
    return known.description();
  } catch (const std::exception& other) {
    return other.what();
  }
}

/// Strips of a block that are painted side by side.
struct Strips {
  struct Strip {
    std::optional<ServicePicture> picture;
    std::exception_ptr failure;
  };
  std::vector<Strip> all;

  explicit Strips(const OutputGrid& grid)
      : all(static_cast<std::size_t>((grid.rows + stripRows - 1) / stripRows)) {}

  /// Strips beside the service have pictures, too, in which nothing is seen.
  static bool showsSomething(const Strip& strip) {
    if (!strip.picture) return false;
    const std::vector<std::uint8_t>& rgba = strip.picture->rgba;
    for (std::size_t alpha = 3; alpha < rgba.size(); alpha += 4) {
      if (rgba[alpha] != 0) return true;
    }
    return false;
  }

  /// A strip whose sources are all gone leaves the others, and is told of; nothing at all is a failure.
  [[nodiscard]] std::optional<ServicePicture> joined(const OutputGrid& grid) {
    const auto failed =
        std::ranges::find_if(all, [](const Strip& strip) { return strip.failure != nullptr; });
    ServicePicture whole{grid.columns, grid.rows, {}};
    if (failed != all.end()) {
      if (std::ranges::none_of(all, showsSomething)) std::rethrow_exception(failed->failure);
      whole.missing.emplace(std::string(), textOf(failed->failure));
    }
    whole.rgba.reserve(static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows) * 4);
    int row = 0;
    for (Strip& strip : all) {
      const int rows = std::min(stripRows, grid.rows - row);
      row += rows;
      if (!strip.picture && !strip.failure) return std::nullopt;
      if (strip.picture) {
        whole.rgba.insert(whole.rgba.end(), strip.picture->rgba.begin(), strip.picture->rgba.end());
        whole.missing.merge(strip.picture->missing);
      }
      whole.rgba.resize(static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(row) * 4);
    }
    return whole;
  }
};

}  // namespace

struct BlockDrawer::State {
  std::shared_ptr<const SmallCopies> copies;
  std::mutex mutex;
  std::vector<Handles> idle;
  std::map<std::string, std::shared_ptr<const Stretch>> stretches;  ///< by service and its no-data value
  std::timed_mutex deciding;

  Handles take() {
    Handles handles;
    {
      const std::lock_guard lock(mutex);
      if (!idle.empty()) {
        handles = std::move(idle.back());
        idle.pop_back();
      }
    }
    if (!handles) return std::make_unique<RasterHandles>(mostOpen, copies);
    handles->lookAgain();
    handles->forgetProblems();
    return handles;
  }
  void giveBack(Handles handles) {
    const std::lock_guard lock(mutex);
    if (idle.size() < mostIdle) idle.push_back(std::move(handles));
  }
  [[nodiscard]] std::shared_ptr<const Stretch> decided(const std::string& key) {
    const std::lock_guard lock(mutex);
    const auto found = stretches.find(key);
    return found == stretches.end() ? nullptr : found->second;
  }
};

namespace {

/// Handles of the pool, for a while.
template <class Pool>
class Loan {
 public:
  explicit Loan(Pool& pool) : pool_(pool), handles_(pool.take()) {}
  Loan(const Loan&) = delete;
  Loan& operator=(const Loan&) = delete;
  ~Loan() { pool_.giveBack(std::move(handles_)); }
  [[nodiscard]] RasterHandles& handles() const { return *handles_; }

 private:
  Pool& pool_;
  Handles handles_;
};

std::string keyOf(const MapLayer& layer, const Drawing& drawing) {
  const auto& noData = drawing.service->pixels.noData;
  const std::string& service = layer.service.empty() ? layer.id : layer.service;
  return service + "\n" + (noData ? numberText(*noData) : std::string());
}

}  // namespace

BlockDrawer::BlockDrawer(std::shared_ptr<const SmallCopies> copies) : state_(std::make_unique<State>()) {
  state_->copies = std::move(copies);
}
BlockDrawer::~BlockDrawer() = default;

std::shared_ptr<const Stretch> BlockDrawer::stretch(const MapLayer& layer) {
  if (layer.stretch) return layer.stretch;
  const auto drawing = layer.source(std::nullopt);
  const std::string key = keyOf(layer, *drawing);
  if (auto known = state_->decided(key)) return known;
  std::unique_lock deciding(state_->deciding, std::defer_lock);
  while (!deciding.try_lock_for(look)) {
    if (WaitScope::isGivenUp()) return nullptr;
  }
  if (auto known = state_->decided(key)) return known;
  const GdalScope silence;
  const Loan loan(*state_);
  const auto chosen = chosenStretch(*drawing, loan.handles());
  if (!chosen) return nullptr;
  auto decided = std::make_shared<const Stretch>(*chosen);
  const std::lock_guard lock(state_->mutex);
  state_->stretches[key] = decided;
  return decided;
}

std::optional<ServicePicture> BlockDrawer::draw(const MapLayer& layer, const AskedBlock& block) {
  const GdalScope silence;
  const auto colors = stretch(layer);
  if (!colors || WaitScope::isGivenUp()) return std::nullopt;
  std::shared_ptr<const Drawing> drawing;
  {
    const Loan loan(*state_);
    drawing = drawingOn(layer.source, {block.wkt, block.grid}, loan.handles());
  }
  if (!drawing) return ServicePicture{block.grid.columns, block.grid.rows, {}};
  Strips strips(block.grid);
  doSideBySide(strips.all.size(), helpersOfThisMachine(), [&] {
    return [&, loan = std::make_shared<Loan<State>>(*state_)](std::size_t i) {
      Strips::Strip& strip = strips.all[i];
      try {
        ServicePainter painter(*drawing, *colors, loan->handles());
        strip.picture = painter.paint({block.wkt, stripOf(block.grid, static_cast<int>(i) * stripRows)});
      } catch (...) {
        strip.failure = std::current_exception();
      }
    };
  });
  return strips.joined(block.grid);
}

void BlockDrawer::forget(const std::string& service) {
  const std::lock_guard lock(state_->mutex);
  std::erase_if(state_->stretches, [&](const auto& one) { return one.first.starts_with(service + "\n"); });
}

void BlockDrawer::close() {
  std::vector<Handles> closing;
  const std::lock_guard lock(state_->mutex);
  closing.swap(state_->idle);
}

}  // namespace vlclientui::client
