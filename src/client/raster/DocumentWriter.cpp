#include "client/raster/DocumentWriter.h"

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr std::int64_t largestLimit = 32767;

void writeBounds(std::string& out, std::string_view name, const Bounds& bounds) {
  const Element element(out, name);
  writeEdges(out, bounds);
}

void writePixels(std::string& out, const RasterFacts& facts) {
  writeNumber(out, "ColorSpace", static_cast<std::int64_t>(facts.colorSpace));
  writeText(out, "PixelType", facts.pixelType);
  if (facts.bitDepth > 0) writeNumber(out, "BitDepth", facts.bitDepth);
  if (facts.bandCount > 0) writeNumber(out, "NBands", facts.bandCount);
}

void writeSystem(std::string& out, const RasterFacts& facts, SystemDetail detail) {
  if (facts.srsName.empty() && facts.srsId.empty()) return;
  const Element element(out, "Srs");
  writeText(out, "Name", facts.srsName);
  writeText(out, "Id", facts.srsId);
  if (detail == SystemDetail::Whole) writeText(out, "Prj", facts.srsWkt);
}

void writePlace(std::string& out, const RasterFacts& facts, SystemDetail detail) {
  if (facts.geographicEnvelope) writeBounds(out, "GeographicEnvelope", *facts.geographicEnvelope);
  const bool isGridKnown = facts.columns > 0 && facts.rows > 0;
  if (isGridKnown) writeBounds(out, "ClientEnvelope", facts.envelope);
  writeSystem(out, facts, detail);
  if (!isGridKnown) return;
  writeDecimal(out, "PixelSize", facts.pixelSize);
  if (facts.columns <= largestLimit) writeNumber(out, "MaxNCols", facts.columns);
  if (facts.rows <= largestLimit) writeNumber(out, "MaxNRows", facts.rows);
}

}  // namespace

Element::Element(std::string& out, std::string_view name) : out_(out), name_(name) {
  out_.append("<").append(name_).append(">");
}

Element::~Element() { out_.append("</").append(name_).append(">"); }

void writeText(std::string& out, std::string_view name, std::string_view text) {
  if (text.empty()) return;
  const Element element(out, name);
  out += xmlEscaped(text);
}

void writeNumber(std::string& out, std::string_view name, std::int64_t number) {
  writeText(out, name, std::to_string(number));
}

void writeDecimal(std::string& out, std::string_view name, double number) {
  writeText(out, name, numberText(number));
}

void writeEdges(std::string& out, const Bounds& bounds) {
  writeDecimal(out, "XMin", bounds.xMin);
  writeDecimal(out, "YMin", bounds.yMin);
  writeDecimal(out, "XMax", bounds.xMax);
  writeDecimal(out, "YMax", bounds.yMax);
}

void writeKeyDetails(std::string& out, const RasterFacts& facts) {
  const Element element(out, "KeyDetails");
  writeText(out, "Title", facts.title);
  writeText(out, "GeographicRegion", facts.region);
  writeText(out, "PixelUnit", facts.pixelUnit);
  writeText(out, "PixelSource", facts.pixelSource);
}

void writeServiceFacts(std::string& out, std::string_view name, const RasterFacts& facts,
                       SystemDetail detail) {
  writeText(out, "Name", name);
  writeKeyDetails(out, facts);
  writePixels(out, facts);
  writePlace(out, facts, detail);
}

void writeImageServiceInfo(std::string& out, std::string_view name, const RasterFacts& facts) {
  const Element info(out, "ImageServiceInfo");
  writeServiceFacts(out, name, facts, SystemDetail::NameAndId);
}

}  // namespace vlclientui::client
