#include "soak/ProcessUse.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include "failures/CountedMemory.h"

namespace vlclientui::test {

namespace {

std::int64_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return std::distance(begin(entries), end(entries));
}

std::int64_t kilobytesInUse() {
  std::ifstream in("/proc/self/statm");
  std::int64_t all = 0;
  std::int64_t resident = 0;
  in >> all >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

}  // namespace

ProcessUse ProcessUse::now() {
  const std::int64_t handles = entriesOf("/proc/self/fd");
  const std::int64_t threads = entriesOf("/proc/self/task");
  return {memory::alive(), kilobytesInUse(), handles, threads};
}

std::string inWords(const ProcessUse& use) {
  return std::to_string(use.allocations) + " allocations, " + std::to_string(use.kilobytes) + " kB, " +
         std::to_string(use.handles) + " handles, " + std::to_string(use.threads) + " threads";
}

}  // namespace vlclientui::test
