// Input: any text, as a reference file. What is read is written as one that reads the same.

#include "Require.h"
#include "client/drawing/DrawingProperties.h"
#include "client/facade/ServiceReference.h"
#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

void check(const client::ServiceReference& read, const XmlService& xml,
           const fuzzing::ScratchFolder& folder) {
  require(!read.reference.empty(), "a file that is read refers to something");
  const std::string document = client::serviceReferenceDocument(read, xml);
  const auto again = client::readServiceReference(folder.file("b.VLRef", document), xml);
  require(again.reference == read.reference, "a reference that was written reads the same");
  require(client::serviceReferenceDocument(again, xml) == document, "a written file stays as it is");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  static const fuzzing::ScratchFolder folder;
  const auto file = folder.file("a.VLRef", fuzzing::textOf(data, size));
  client::ServiceReference read;
  try {
    static_cast<void>(client::isReferenceFile("a.xml", file, xml));
    read = client::readServiceReference(file, xml);
  } catch (const RuntimeFailure& failure) {
    require(!failure.description().empty(), "a refusal has words");
    return 0;
  }
  check(read, xml, folder);
  return 0;
}
