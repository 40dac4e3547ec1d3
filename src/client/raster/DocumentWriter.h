#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// Opens an element in its constructor and closes it in its destructor.
class Element {
 public:
  /// @param name must outlive this object.
  Element(std::string& out, std::string_view name);
  ~Element();
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

 private:
  std::string& out_;
  std::string_view name_;
};

/// Writes an element with a text; writes nothing for an empty text.
void writeText(std::string& out, std::string_view name, std::string_view text);
void writeNumber(std::string& out, std::string_view name, std::int64_t number);
void writeDecimal(std::string& out, std::string_view name, double number);
/// XMin, YMin, XMax, YMax without a parent.
void writeEdges(std::string& out, const Bounds& bounds);
/// The children of KeyDetails, in their group.
void writeKeyDetails(std::string& out, const RasterFacts& facts);
enum class SystemDetail { NameAndId, Whole };
/// The facts about a service, without a parent. Leaves out a size above 32,767, and what is unknown.
void writeServiceFacts(std::string& out, std::string_view name, const RasterFacts& facts,
                       SystemDetail detail);
/// The same in short, as the group ImageServiceInfo.
void writeImageServiceInfo(std::string& out, std::string_view name, const RasterFacts& facts);

}  // namespace vlclientui::client
