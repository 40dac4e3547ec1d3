// Input: any text, as a job. What is read is written as a document that reads the same, and that a schema
// takes.

#include <cmath>
#include <memory>

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include "Require.h"
#include "client/jobs/ExportJob.h"
#include "client/jobs/JobDocument.h"
#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

class Schema {
 public:
  Schema() {
    const std::unique_ptr<xmlSchemaParserCtxt, decltype(&xmlSchemaFreeParserCtxt)> parser(
        xmlSchemaNewParserCtxt(VL_JOB_SCHEMA), &xmlSchemaFreeParserCtxt);
    schema_.reset(xmlSchemaParse(parser.get()));
    require(schema_ != nullptr, "there is a schema");
  }

  [[nodiscard]] bool takes(const std::string& document) const {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> parsed(
        xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                      XML_PARSE_NOERROR),
        &xmlFreeDoc);
    const std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> judge(
        xmlSchemaNewValidCtxt(schema_.get()), &xmlSchemaFreeValidCtxt);
    return parsed && xmlSchemaValidateDoc(judge.get(), parsed.get()) == 0;
  }

 private:
  std::unique_ptr<xmlSchema, decltype(&xmlSchemaFree)> schema_{nullptr, &xmlSchemaFree};
};

void check(const client::ExportJob& job, const XmlService& xml) {
  static const Schema schema;
  require(job.columns > 0 && job.rows > 0, "an image has pixels");
  require(job.extent.xMin < job.extent.xMax && job.extent.yMin < job.extent.yMax, "an extent has an area");
  require(std::isfinite(job.extent.xMin) && std::isfinite(job.extent.yMax), "an extent ends somewhere");
  const std::string document = client::jobDocument(job, xml);
  require(client::readJob(document, "/jobs", xml) == job, "a job that was written reads the same");
  require(schema.takes(document), "the schema takes what is written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  client::ExportJob job;
  try {
    job = client::readJob(fuzzing::textOf(data, size), "/jobs", xml);
  } catch (const RuntimeFailure& failure) {
    require(!failure.description().empty(), "a refusal has words");
    return 0;
  }
  check(job, xml);
  return 0;
}
