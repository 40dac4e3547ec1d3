// Input: any text, as a mosaic definition of this machine and of the web, and as a virtual raster of the web.

#include <set>
#include <variant>

#include "Require.h"
#include "client/catalogue/MosaicDefinition.h"
#include "client/ranges/WebDefinitions.h"
#include "client/ranges/WebMosaic.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;
using namespace vlclientui::client;
using fuzzing::require;

constexpr const char* address = "https://maps.example/a/b.xml";

void checkSources(const MosaicDefinition& definition) {
  require(!definition.sources.empty(), "a mosaic has sources");
  std::set<std::string> ids;
  for (const MosaicSource& source : definition.sources) {
    require(!source.file.empty(), "a source has a file");
    require(ids.insert(source.rasterId).second, "ids are unique");
  }
}

void checkOfWeb(const std::string& text) {
  const auto read = readWebDefinition(text, address);
  if (const auto* const web = std::get_if<WebDefinition>(&read)) {
    checkSources(web->definition);
    for (const MosaicSource& source : web->definition.sources)
      require(source.file.string().starts_with("/vsi"), "a source of the web lies in the web");
  } else {
    require(!std::get<std::string>(read).empty(), "a refusal has words");
  }
}

void checkVirtual(const std::string& text) {
  const auto read = openableMosaic(text, address);
  if (const auto* const refused = std::get_if<MosaicRefusal>(&read))
    return require(!refused->text.empty(), "a refusal has words");
  const auto& mosaic = std::get<OpenableMosaic>(read);
  require(mosaic.mayBeMosaics.size() <= mosaic.sources, "what may be a mosaic is a source");
  for (const char* const word : {"/vsicurl", "ftp://", "PG:", "<script"})
    require(mosaic.text.find(word) == std::string::npos, "nothing else is opened");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  static const fuzzing::ScratchFolder folder;
  const std::string text = fuzzing::textOf(data, size);
  const auto read = readMosaicDefinition(folder.file("a.VLDef", text), xml);
  if (const auto* const definition = std::get_if<MosaicDefinition>(&read)) {
    checkSources(*definition);
  } else {
    require(!std::get<MosaicReadFailure>(read).empty(), "a refusal has words");
  }
  checkOfWeb(text);
  checkVirtual(text);
  static_cast<void>(harmlessSideCar(text));
  return 0;
}
