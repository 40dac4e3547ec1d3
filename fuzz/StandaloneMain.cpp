// Stands in for the fuzzing engine where the compiler has none: gives every file below the folders named on
// the command line to the driver, once each, in the order of their paths.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& root) {
  if (std::filesystem::is_regular_file(root)) return {root};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void replay(const std::filesystem::path& file) {
  // The name comes first, so that a crash tells which file caused it.
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::filesystem::filesystem_error("cannot read", file, std::error_code());
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::size_t replayed = 0;
  try {
    for (int i = 1; i < argumentCount; ++i) {
      for (const auto& file : filesBelow(arguments[i])) {
        replay(file);
        ++replayed;
      }
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  std::printf("%zu inputs replayed\n", replayed);
  // A run over nothing proves nothing.
  return replayed > 0 ? 0 : 1;
}
