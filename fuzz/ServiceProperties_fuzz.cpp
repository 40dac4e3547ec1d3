// Input: two texts with a zero byte between, as service properties documents.

#include <cmath>

#include "Require.h"
#include "client/drawing/DrawingProperties.h"
#include "client/output/GetImageRequest.h"
#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

template <class Act>
void orRefused(Act act) {
  try {
    act();
  } catch (const RuntimeFailure& failure) {
    require(!failure.description().empty(), "a refusal has words");
  }
}

void checkRead(const std::string& document, const XmlService& xml) {
  const auto read = client::readDrawingProperties(document, xml);
  require(!read.viewPointX || std::isfinite(*read.viewPointX), "a viewpoint lies somewhere");
  require(!read.viewPointY || std::isfinite(*read.viewPointY), "a viewpoint lies somewhere");
  require(!client::methodName(read.method).empty(), "a method has a name");
}

void checkRequest(const std::string& document, const XmlService& xml) {
  const auto request = client::readGetImageRequest(document, xml);
  require(request.grid.columns > 0 && request.grid.rows > 0, "an image has pixels");
  require(request.grid.extent.xMin < request.grid.extent.xMax, "an extent has a width");
  require(request.grid.extent.yMin < request.grid.extent.yMax, "an extent has a height");
  require(request.quality >= 0 && request.quality <= 100, "a quality is a percentage");
  require(request.tileSize >= 0 && request.tileSize % 16 == 0, "tiles are whole blocks");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string document = fuzzing::takePart(input);
  const std::string otherwise = fuzzing::takePart(input);
  orRefused([&] { checkRead(document, xml); });
  orRefused([&] { checkRequest(document, xml); });
  orRefused([&] {
    const std::string whole = client::completedProperties(document, otherwise, xml);
    checkRead(whole, xml);
    require(client::completedProperties(whole, otherwise, xml) == whole,
            "a complete document stays as it is");
  });
  orRefused([&] {
    static_cast<void>(
        client::replacedProperties(document, {{"AvgImageSpacingX", "1"}, {"Srs/Name", "<&>"}}, xml));
  });
  return 0;
}
