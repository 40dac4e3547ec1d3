#include "client/network/CoverageReader.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "client/network/CoverageTiles.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr std::int64_t mostBytesAhead = 24 << 20;
constexpr std::int64_t smallestLevel = 128;  // pixels of the shorter side
// Of a server that does not scale: reductions made of whole coverages, or of any by a few levels.
constexpr std::int64_t mostPixelsReduced = 32 << 20;
constexpr int mostLevelsReduced = 3;

// One pixel alone along a side is resampled by some servers, so that it gets a neighbor.
PixelSpan requested(std::int64_t first, std::int64_t count, std::int64_t whole) {
  PixelSpan span{first, std::min(first + count, whole)};
  span.begin = std::min(span.begin, span.end - 1);
  if (span.length() < 2 && span.begin > 0) --span.begin;
  if (span.length() < 2 && span.end < whole) ++span.end;
  return span;
}

int tileCount(std::int64_t pixels) {
  return static_cast<int>((pixels + CoverageReader::tileSide - 1) / CoverageReader::tileSide);
}

std::vector<TileRange> quarters(const TileRange& range) {
  const int middle = (range.left + range.right) / 2;
  const int center = (range.top + range.bottom) / 2;
  std::vector<TileRange> parts;
  for (const auto& [top, bottom] : {std::pair(range.top, center), std::pair(center + 1, range.bottom)}) {
    for (const auto& [left, right] : {std::pair(range.left, middle), std::pair(middle + 1, range.right)}) {
      if (left <= right && top <= bottom) parts.push_back({range.level, left, top, right, bottom});
    }
  }
  return parts;
}

bool isOneTile(const TileRange& range) { return range.left == range.right && range.top == range.bottom; }

PixelSpan spanOf(int tile, std::int64_t pixels) {
  const std::int64_t begin = std::int64_t{tile} * CoverageReader::tileSide;
  return {begin, std::min(begin + CoverageReader::tileSide, pixels)};
}

}  // namespace

CoverageReader::CoverageReader(std::shared_ptr<CoverageClient> client,
                               std::shared_ptr<const CoverageDescription> coverage,
                               std::shared_ptr<const CoverageFormat> format, TileStore& store,
                               const CoveragePassages& passages)
    : client_(std::move(client)),
      coverage_(std::move(coverage)),
      format_(std::move(format)),
      store_(store),
      passages_(passages),
      name_(coverageName(client_->address(), coverage_->id)) {
  while (std::min(coverage_->columns, coverage_->rows) >> levels_ >= smallestLevel) ++levels_;
}

std::int64_t CoverageReader::columns(int level) const {
  return (coverage_->columns + (std::int64_t{1} << level) - 1) >> level;
}

std::int64_t CoverageReader::rows(int level) const {
  return (coverage_->rows + (std::int64_t{1} << level) - 1) >> level;
}

TileRange CoverageReader::whole(int level) const {
  return {level, 0, 0, tileCount(columns(level)) - 1, tileCount(rows(level)) - 1};
}

TileStore::Key CoverageReader::keyOf(int level, int column, int row) const {
  return {name_, level, column, row};
}

// What the server is asked for where this level is read.
int CoverageReader::fetchedLevel(int level) const { return client_->canScale() ? level : 0; }

std::int64_t CoverageReader::mostTilesAhead() const {
  const std::int64_t tileBytes = std::int64_t{tileSide} * tileSide * format_->bytesOfPixel;
  return std::max<std::int64_t>(mostBytesAhead / std::max<std::int64_t>(tileBytes, 1), 1);
}

GroupShape CoverageReader::shapeOf(const TileRange& area) const {
  const int across = client_->tilesAcross();
  return shapeFor(area, {across, across}, mostTilesAhead());
}

TileRange CoverageReader::area(const PixelWindow& window, int level) const {
  return tilesOfWindow(window, level, columns(level), rows(level));
}

std::int64_t CoverageReader::requestsFor(const PixelWindow& window, int level) const {
  const TileRange tiles = area(window, fetchedLevel(level));
  return groupCount(tiles, shapeOf(tiles));
}

std::int64_t CoverageReader::pixelsFor(const PixelWindow& window, int level) const {
  const CoveragePart part = partOf(area(window, fetchedLevel(level)));
  return part.columns * part.rows;
}

CoveragePart CoverageReader::middlePart(const PixelWindow& window, int level) const {
  const TileRange tiles = area(window, fetchedLevel(level));
  const auto groups = groupsWithin(tiles, shapeOf(tiles));
  return partOf(groups[groups.size() / 2]);
}

// Of a reduction only pixels that stand for a whole square are asked for: at other ratios servers resample in
// ways of their own. What is left over at the edges repeats its neighbor.
CoveragePart CoverageReader::partOf(const TileRange& range) const {
  const PixelSpan across =
      requested(std::int64_t{range.left} * tileSide, (std::int64_t{range.right} - range.left + 1) * tileSide,
                coverage_->columns >> range.level);
  const PixelSpan down =
      requested(std::int64_t{range.top} * tileSide, (std::int64_t{range.bottom} - range.top + 1) * tileSide,
                coverage_->rows >> range.level);
  return {{across.begin << range.level, down.begin << range.level, across.length() << range.level,
           down.length() << range.level},
          across.length(),
          down.length()};
}

std::string CoverageReader::cut(const TileRange& range, const CoveragePart& part, const std::string& image,
                                const Each& each) {
  CoverageTiles tiles;
  const std::int64_t ratio = std::int64_t{1} << range.level;
  std::string problem = tiles.read(image, *coverage_, *format_, part, ratio);
  if (!problem.empty()) return problem;
  for (int row = range.top; row <= range.bottom; ++row) {
    for (int column = range.left; column <= range.right; ++column) {
      auto tile = std::make_shared<const std::vector<std::byte>>(
          tiles.cut(spanOf(column, columns(range.level)), spanOf(row, rows(range.level))));
      each(column, row, *tile);
      store_.keep(keyOf(range.level, column, row), std::move(tile));
    }
  }
  return {};
}

// The tiles of a group that are not kept, in one rectangle; its right lies left of its left where all are.
TileRange CoverageReader::lackingOf(const TileRange& group) {
  TileRange lacking{group.level, INT_MAX, INT_MAX, -1, -1};
  for (int row = group.top; row <= group.bottom; ++row) {
    for (int column = group.left; column <= group.right; ++column) {
      if (store_.find(keyOf(group.level, column, row))) continue;
      lacking = {group.level, std::min(lacking.left, column), std::min(lacking.top, row),
                 std::max(lacking.right, column), std::max(lacking.bottom, row)};
    }
  }
  return lacking;
}

std::vector<TileRange> CoverageReader::missing(const TileRange& range, const GroupShape& shape,
                                               const Each& each) {
  std::vector<TileRange> groups;
  for (const TileRange& group : groupsWithin(range, shape)) {
    if (const TileRange lacking = lackingOf(group); lacking.right >= 0) groups.push_back(lacking);
  }
  for (int row = range.top; row <= range.bottom; ++row) {
    for (int column = range.left; column <= range.right; ++column) {
      const auto comesWith = [&](const TileRange& group) { return group.holds(column, row); };
      if (std::ranges::any_of(groups, comesWith)) continue;
      if (const auto kept = store_.find(keyOf(range.level, column, row))) {
        each(column, row, *kept);
      } else {
        groups.push_back({range.level, column, row, column, row});
      }
    }
  }
  return groups;
}

std::string CoverageReader::fetch(std::vector<TileRange> ranges, const Each& each,
                                  const FetchAhead::Told& told) {
  const auto passage = passages_.find(name_);
  std::string failure;
  bool isWanted = true;
  while (!ranges.empty() && failure.empty() && isWanted) {
    std::vector<CoveragePart> parts;
    std::ranges::transform(ranges, std::back_inserter(parts),
                           [this](const TileRange& range) { return partOf(range); });
    std::vector<TileRange> smaller;
    client_->fetch(*coverage_, *format_, parts, [&](std::size_t index, OrProblem<std::string>&& image) {
      const auto* problem = std::get_if<CoverageProblem>(&image);
      if (problem != nullptr && isRefusedForSize(*problem) && !isOneTile(ranges[index])) {
        client_->takeFewerTiles();
        std::ranges::move(quarters(ranges[index]), std::back_inserter(smaller));
        return true;
      }
      if (passage && problem == nullptr) passage->countRequest(std::get<std::string>(image).size());
      failure = problem != nullptr ? problem->text
                                   : cut(ranges[index], parts[index], std::get<std::string>(image), each);
      isWanted = failure.empty() && (!told || told(ranges[index]));
      return isWanted;
    });
    ranges = std::move(smaller);
  }
  return failure;
}

bool CoverageReader::isKept(const TileRange& range) { return lackingOf(range).right < 0; }

std::unique_ptr<FetchAhead> CoverageReader::fetchAhead(const TileRange& area, const TileRange& first,
                                                       const CoveragePassage& passage) {
  // Whoever goes on with an export begins in the middle.
  TileRange rest = area;
  rest.top = first.top;
  auto groups = groupsWithin(rest, shapeOf(area));
  const auto fetchAll = [self = shared_from_this(), readers = passage.readers()](
                            const std::vector<TileRange>& batch, const FetchAhead::Told& told) {
    const WaitScope forReaders(nullptr, readers);
    std::vector<TileRange> lacking;
    for (const TileRange& group : batch) {
      if (!self->isKept(group))
        lacking.push_back(group);
      else if (!told(group))
        return std::string();
    }
    return self->fetch(
        lacking, [](int, int, const auto&) {}, told);
  };
  return std::make_unique<FetchAhead>(std::move(groups), mostTilesAhead(), fetchAll, passage.token());
}

// What another reader fetches ahead is found in the store; what was dropped there since is fetched again.
std::string CoverageReader::readPassage(CoveragePassage& passage, const TileRange& area,
                                        const TileRange& range, const Each& each) {
  const WaitScope scope(nullptr, passage.token());
  const auto ahead = passage.ahead(area.level, [&] { return fetchAhead(area, range, passage); });
  std::string problem = ahead ? ahead->await(range) : std::string();
  return problem.empty() ? fetch(missing(range, shapeOf(area), each), each) : problem;
}

// Whoever reads a raster through does so in rows of small windows: the whole groups to the right come as
// well, as far as they can be kept until they are read.
std::string CoverageReader::readFetched(const TileRange& range, const Each& each) {
  const auto passage = passages_.find(name_);
  if (passage && passage->kind() == CoveragePassage::Kind::Through) {
    const TileRange through = area(passage->window(), range.level);
    if (through.holds(range.left, range.top) && through.holds(range.right, range.bottom))
      return readPassage(*passage, through, range, each);
  }
  constexpr int missesOfAPassage = 2;
  const bool looksLikePassage = !isKept(range) && misses_++ >= missesOfAPassage && !passage;
  const GroupShape shape{client_->tilesAcross(), client_->tilesAcross()};
  TileRange rest = whole(range.level);
  rest.left = range.left;
  const TileRange wanted = looksLikePassage ? aheadWithin(rest, range, shape, mostTilesAhead()) : range;
  const Each wantedOnes = [&](int column, int row, const std::vector<std::byte>& pixels) {
    if (range.holds(column, row)) each(column, row, pixels);
  };
  return fetch(missing(wanted, shape, wantedOnes), wantedOnes);
}

std::string CoverageReader::refusal(int level) const {
  if (level <= mostLevelsReduced || coverage_->columns * coverage_->rows <= mostPixelsReduced) return {};
  return "the server gives pixels at their own size only; of " + coverage_->id +
         " that is too many for so small an image, so choose a smaller area or a larger image";
}

// The pixel in the middle stands for its square, as with servers that scale.
std::string CoverageReader::reduce(int level, int column, int row, std::vector<std::byte>& tile) {
  const int ratio = 1 << level;
  const TileRange all = whole(0);
  const TileRange full{0, column * ratio, row * ratio, std::min((column + 1) * ratio - 1, all.right),
                       std::min((row + 1) * ratio - 1, all.bottom)};
  const int squares = tileSide / ratio;
  const auto size = static_cast<std::size_t>(format_->bytesOfPixel / format_->bandCount);
  return readFetched(full, [&](int fullColumn, int fullRow, const std::vector<std::byte>& pixels) {
    const auto lastX = static_cast<int>(coverage_->columns - 1 - std::int64_t{fullColumn} * tileSide);
    const auto lastY = static_cast<int>(coverage_->rows - 1 - std::int64_t{fullRow} * tileSide);
    for (int band = 0; band < format_->bandCount; ++band) {
      for (int y = 0; y < squares && y * ratio <= lastY; ++y) {
        for (int x = 0; x < squares && x * ratio <= lastX; ++x) {
          const int fromRow = band * tileSide + std::min(y * ratio + ratio / 2, lastY);
          const int from = fromRow * tileSide + std::min(x * ratio + ratio / 2, lastX);
          const int toRow = band * tileSide + (fullRow - full.top) * squares + y;
          const int to = toRow * tileSide + (fullColumn - full.left) * squares + x;
          std::copy_n(pixels.data() + static_cast<std::size_t>(from) * size, size,
                      tile.data() + static_cast<std::size_t>(to) * size);
        }
      }
    }
  });
}

std::string CoverageReader::readReduced(const TileRange& range, const Each& each) {
  const auto tileBytes = static_cast<std::size_t>(tileSide * tileSide * format_->bytesOfPixel);
  std::string problem = refusal(range.level);
  for (int row = range.top; row <= range.bottom && problem.empty(); ++row) {
    for (int column = range.left; column <= range.right && problem.empty(); ++column) {
      auto tile = store_.find(keyOf(range.level, column, row));
      if (!tile) {
        auto made = std::make_shared<std::vector<std::byte>>(tileBytes);
        problem = reduce(range.level, column, row, *made);
        tile = std::move(made);
        if (!problem.empty()) break;
        store_.keep(keyOf(range.level, column, row), tile);
      }
      each(column, row, *tile);
    }
  }
  return problem;
}

std::string CoverageReader::read(const TileRange& range, const Each& each) {
  const TileRange all = whole(range.level);
  const TileRange inside{range.level, std::max(range.left, 0), std::max(range.top, 0),
                         std::min(range.right, all.right), std::min(range.bottom, all.bottom)};
  if (const auto passage = passages_.find(name_)) passage->tellLevel(range.level);
  return fetchedLevel(range.level) == range.level ? readFetched(inside, each) : readReduced(inside, each);
}

}  // namespace vlclientui::client
