#include "scenarios/Places.h"

#include <array>
#include <cstdlib>
#include <string_view>

#include <execinfo.h>

namespace vlclientui::test {

bool CallerPlaces::isNew(std::uint64_t act) {
  std::array<void*, 256> frames{};
  const int depth = backtrace(frames.data(), static_cast<int>(frames.size()));
  constexpr std::uint64_t prime = 0x100000001b3;
  std::uint64_t hash = 0xcbf29ce484222325 ^ act;
  for (int frame = 0; frame < depth; ++frame) {
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(frames.at(static_cast<std::size_t>(frame)))) * prime;
  }
  return seen_.insert(hash).second;
}

namespace {

std::string_view sweepForm() {
  const char* const told = std::getenv("VLCLIENTUI_SWEEP");
  return told ? told : "";
}

}  // namespace

bool sweepsEveryCall() { return sweepForm() == "every"; }

bool sweepsEveryPlace() { return sweepsEveryCall() || sweepForm() == "places"; }

}  // namespace vlclientui::test
