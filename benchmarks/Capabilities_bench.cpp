// From the answer of a coverage server to a list that a person can browse, beside one bare parse, and beside
// OWSLib where it is installed (python3-owslib).
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <sys/resource.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageListing.h"

namespace vlclientui::client {
namespace {

// As MapServer writes it, with titles and extents.
std::string capabilitiesOf(std::int64_t coverages) {
  std::string text =
      "<?xml version='1.0' encoding=\"UTF-8\" ?><wcs:Capabilities version=\"2.0.1\" "
      "xmlns:wcs=\"http://www.opengis.net/wcs/2.0\" "
      "xmlns:ows=\"http://www.opengis.net/ows/2.0\" xmlns:xlink=\"http://www.w3.org/1999/xlink\">"
      "<ows:ServiceIdentification><ows:Title>Survey</ows:Title></"
      "ows:ServiceIdentification><ows:ServiceProvider>"
      "<ows:ProviderName>Survey</ows:ProviderName></ows:ServiceProvider><ows:OperationsMetadata/>"
      "<wcs:ServiceMetadata/><wcs:Contents>";
  for (std::int64_t i = 0; i < coverages; ++i) {
    const std::string number = std::to_string(i);
    text += "\n    <wcs:CoverageSummary>\n      <ows:Title>Scene " + number +
            "</ows:Title>\n      <ows:Abstract>Orthophotos</ows:Abstract>\n      <ows:WGS84BoundingBox "
            "dimensions=\"2\">\n        <ows:LowerCorner>11.25 46.5</ows:LowerCorner>\n        "
            "<ows:UpperCorner>11.5 46.75</ows:UpperCorner>\n      </ows:WGS84BoundingBox>\n      "
            "<wcs:CoverageId>Sheet" +
            std::to_string(i % 100) + ".Scene_" + number +
            "</wcs:CoverageId>\n      <wcs:CoverageSubtype>RectifiedGridCoverage</wcs:CoverageSubtype>\n    "
            "</wcs:CoverageSummary>";
  }
  return text + "</wcs:Contents></wcs:Capabilities>";
}

void parseBarely(benchmark::State& state) {
  const std::string text = capabilitiesOf(state.range(0));
  for (auto _ : state) {
    xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
    benchmark::DoNotOptimize(document);
    xmlFreeDoc(document);
  }
}

void list(benchmark::State& state) {
  const std::string text = capabilitiesOf(state.range(0));
  for (auto _ : state) {
    const auto read = readCapabilities(text);
    const auto& capabilities = std::get<CoverageCapabilities>(read);
    const CoverageNames names = coverageNames(capabilities);
    const std::vector<std::shared_ptr<const CoverageDescription>> none(names.size());
    benchmark::DoNotOptimize(coverageContent("http://127.0.0.1/wcs", capabilities, names, none));
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

// The time that Python itself measures, without its start. Of this version OWSLib reads the identifiers
// alone: it looks for titles, extents and keywords under the names of 1.0.0, and finds none.
constexpr const char* readWithOwsLib =
    "/usr/bin/python3 -c 'import sys, time\n"
    "from owslib.wcs import WebCoverageService\n"
    "text = open(sys.argv[1], \"rb\").read()\n"
    "begin = time.process_time()\n"
    "service = WebCoverageService(\"http://127.0.0.1/wcs\", version=\"2.0.1\", xml=text)\n"
    "names = [(c.id, c.title) for c in service.contents.values()]\n";

// What the list shows, from the elements that OWSLib keeps.
constexpr const char* readTheRest =
    "ows = \"{http://www.opengis.net/ows/2.0}\"\n"
    "rows = []\n"
    "for c in service.contents.values():\n"
    "    box = c._elem.find(ows + \"WGS84BoundingBox\")\n"
    "    low = [float(n) for n in box.find(ows + \"LowerCorner\").text.split()]\n"
    "    high = [float(n) for n in box.find(ows + \"UpperCorner\").text.split()]\n"
    "    rows.append((c.id.split(\".\"), c._elem.find(ows + \"Title\").text, c._elem.find(ows + "
    "\"Abstract\").text,\n"
    "                 low, high))\n"
    "rows.sort()\n";

void runOwsLib(benchmark::State& state, const std::string& script) {
  const auto file = std::filesystem::temp_directory_path() / "vlclientui-capabilities.xml";
  std::ofstream(file) << capabilitiesOf(state.range(0));
  for (auto _ : state) {
    double seconds = 0;
    std::FILE* const python = popen(
        (script + "print(time.process_time() - begin)' " + file.string() + " 2>/dev/null").c_str(), "r");
    const bool isMeasured = python != nullptr && std::fscanf(python, "%lf", &seconds) == 1;
    if (python != nullptr) pclose(python);
    if (!isMeasured) {
      state.SkipWithError("python3-owslib is not installed");
      break;
    }
    state.SetIterationTime(seconds);
  }
  std::filesystem::remove(file);
}

void owsLibReads(benchmark::State& state) { runOwsLib(state, readWithOwsLib); }
void owsLibReadsTitlesAndExtents(benchmark::State& state) {
  runOwsLib(state, std::string(readWithOwsLib) + readTheRest);
}

BENCHMARK(parseBarely)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(owsLibReads)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);
BENCHMARK(owsLibReadsTitlesAndExtents)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);
BENCHMARK(list)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vlclientui::client
