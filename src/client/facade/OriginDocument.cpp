#include "client/facade/OriginDocument.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "client/drawing/SourceUse.h"
#include "client/facade/ProcessDocument.h"
#include "client/ranges/RangeFiles.h"
#include "client/raster/DocumentWriter.h"

namespace vlclientui::client {
namespace {

using Clock = std::chrono::system_clock;

std::string timeText(Clock::time_point time) {
  const std::time_t seconds = Clock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

void writeAttributes(std::string& out, const ImageSource& source) {
  for (const auto& [name, value] : source.attributes) {
    if (value.empty()) continue;
    const Element attribute(out, "Attribute");
    writeText(out, "Name", name);
    writeText(out, "Value", value);
  }
}

void writeSource(std::string& out, const DrawnImage& image, const ImageSource& source, const SourceUse& use) {
  const Element element(out, "Source");
  writeText(out, "RasterId", source.rasterId);
  writeText(out, "Place", shownPlace(source.file.string()));
  writeText(out, "Title", source.facts.title);
  writeAttributes(out, source);
  writeSourceProcess(out, image, source, use);
}

}  // namespace

std::string originElement(const DrawnImage& image, const SourcePassages& passages, Clock::time_point began) {
  const ImageServiceRecord& service = *image.drawing.service;
  const std::vector<SourceUse> uses = sourceUses(service, image.drawing.order, image.grid);
  const Clock::time_point now = Clock::now();
  std::string out;
  {
    const Element origin(out, "Origin");
    writeText(out, "Written", timeText(now));
    // The clock may be set back meanwhile.
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(std::max(now, began) - began);
    writeDecimal(out, "Seconds", static_cast<double>(took.count() / 100) / 10);
    // Of files nobody counts them.
    if (!passages.all().empty()) {
      writeNumber(out, "Requests", static_cast<std::int64_t>(passages.requests()));
      writeNumber(out, "BytesFetched", static_cast<std::int64_t>(passages.bytes()));
    }
    writeEdges(out, image.grid.extent);
    writeImageProcess(out, image, uses);
    const Element sources(out, "Sources");
    for (std::size_t i = 0; i < uses.size(); ++i) {
      if (uses[i].takesPart) writeSource(out, image, service.sources[i], uses[i]);
    }
  }
  return out;
}

}  // namespace vlclientui::client
