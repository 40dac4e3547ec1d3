#include "failures/CountedMemory.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <new>
#include <string_view>

#include <dlfcn.h>
#include <execinfo.h>

#include "scenarios/Places.h"

namespace vlclientui::test::memory {

namespace {

std::atomic<std::int64_t> aliveNow{0};

struct Watch {
  bool armed = false;
  bool notesPlaces = false;
  bool failed = false;
  bool failedInLibrary = false;
  std::size_t count = 0;
  std::size_t failing = 0;
  std::uint64_t act = 0;
  CallerPlaces places;
  std::vector<std::size_t> worthFailing;
};

thread_local Watch watch;

/// Whether the shared library of the logic is among the callers.
bool libraryCalls() {
  std::array<void*, 128> frames{};
  const int depth = backtrace(frames.data(), static_cast<int>(frames.size()));
  for (int frame = 0; frame < depth; ++frame) {
    Dl_info place{};
    if (dladdr(frames.at(static_cast<std::size_t>(frame)), &place) == 0 || !place.dli_fname) continue;
    if (std::string_view(place.dli_fname).find("libVLClientUI.so") != std::string_view::npos) return true;
  }
  return false;
}

/// @returns whether this allocation fails. What is allocated meanwhile is not watched.
bool failsNow() {
  if (!watch.armed) return false;
  watch.armed = false;
  ++watch.count;
  if (watch.notesPlaces && (sweepsEveryCall() || watch.places.isNew(watch.act))) {
    watch.worthFailing.push_back(watch.count);
  }
  const bool fails = watch.count == watch.failing;
  if (fails) {
    watch.failed = true;
    watch.failedInLibrary = libraryCalls();
  }
  watch.armed = true;
  return fails;
}

void* allocated(std::size_t size, std::size_t alignment) {
  if (failsNow()) return nullptr;
  void* const memory = alignment > alignof(std::max_align_t)
                           ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                           : std::malloc(size ? size : 1);
  if (memory) ++aliveNow;
  return memory;
}

void* allocatedOrThrown(std::size_t size, std::size_t alignment) {
  if (void* const memory = allocated(size, alignment)) return memory;
  throw std::bad_alloc();
}

void released(void* memory) {
  if (!memory) return;
  --aliveNow;
  std::free(memory);
}

}  // namespace

std::int64_t alive() { return aliveNow; }

void arm(std::size_t failing, bool notesPlaces) {
  watch.failed = watch.failedInLibrary = false;
  watch.count = 0;
  watch.act = 0;
  watch.failing = failing;
  watch.notesPlaces = notesPlaces;
  if (notesPlaces) {
    watch.places = {};
    watch.worthFailing.clear();
  }
  watch.armed = true;
}

void disarm() { watch.armed = false; }
void nextAct() { ++watch.act; }
std::size_t allocations() { return watch.count; }
bool failed() { return watch.failed; }
bool failedInLibrary() { return watch.failedInLibrary; }
const std::vector<std::size_t>& worthFailing() { return watch.worthFailing; }

}  // namespace vlclientui::test::memory

namespace memory = vlclientui::test::memory;

void* operator new(std::size_t size) { return memory::allocatedOrThrown(size, 0); }
void* operator new[](std::size_t size) { return memory::allocatedOrThrown(size, 0); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return memory::allocatedOrThrown(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return memory::allocatedOrThrown(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return memory::allocated(size, 0); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return memory::allocated(size, 0); }
void operator delete(void* given) noexcept { memory::released(given); }
void operator delete[](void* given) noexcept { memory::released(given); }
void operator delete(void* given, std::size_t) noexcept { memory::released(given); }
void operator delete[](void* given, std::size_t) noexcept { memory::released(given); }
void operator delete(void* given, std::align_val_t) noexcept { memory::released(given); }
void operator delete[](void* given, std::align_val_t) noexcept { memory::released(given); }
void operator delete(void* given, std::size_t, std::align_val_t) noexcept { memory::released(given); }
void operator delete[](void* given, std::size_t, std::align_val_t) noexcept { memory::released(given); }
void operator delete(void* given, const std::nothrow_t&) noexcept { memory::released(given); }
void operator delete[](void* given, const std::nothrow_t&) noexcept { memory::released(given); }
