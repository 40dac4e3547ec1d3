#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

#include "client/facade/CatalogueImageService.h"
#include "host/Compose.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesInterfaces.h"

// What the library without windows costs a host: bytes, loading, and the first Init of a dialog.
namespace vlclientui::benchmarks {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double strippedMegabytes(const std::string& library) {
  const fs::path copy = fs::temp_directory_path() / ("vl_library_bench_" + std::to_string(getpid()));
  const std::string command = "strip -o '" + copy.string() + "' '" + library + "'";
  if (std::system(command.c_str()) != 0) std::exit(1);
  const auto bytes = static_cast<double>(fs::file_size(copy));
  fs::remove(copy);
  return bytes / 1e6;
}

// In a space of its own, so that the C++ library is loaded and bound once more, too: rather too much than too
// little.
double load(const std::string& library) {
  const auto begin = Clock::now();
  if (dlmopen(LM_ID_NEWLM, library.c_str(), RTLD_NOW) == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  return millisecondsSince(begin);
}

double firstInit() {
  const host::ComposedHost host = host::start(host::composeHeadlessPlatform({}));
  const auto service = std::make_shared<client::CatalogueImageService>(
      host.catalogue, *host.platform->xml, "ImageService://127.0.0.1/Imagery/Overlap_Study",
      client::ImageServiceSettings{host.installation.definitions});
  const auto begin = Clock::now();
  const auto dialog = queryInterface<IServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
  if (dialog->Init("", nullptr, service) == boolean16False) std::exit(1);
  return millisecondsSince(begin);
}

}  // namespace
}  // namespace vlclientui::benchmarks

// Usage: Library_bench LIBRARY
int main(int count, char** words) {
  using namespace vlclientui::benchmarks;
  if (count != 2) return 1;
  const double loaded = load(words[1]);
  const double first = firstInit();
  std::printf("%.2f MB stripped, loaded in %.1f ms, first Init in %.1f ms: %.1f ms in all\n",
              strippedMegabytes(words[1]), loaded, first, loaded + first);
  return 0;
}
