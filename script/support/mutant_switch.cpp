#include "mutant_switch.h"

#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace mutant {

namespace {

int numberOf(const char* variable) {
  const char* const told = std::getenv(variable);
  return told ? std::atoi(told) : -1;
}

// A file in which each mutant that was reached leaves a mark.
char* marks() {
  const char* const file = std::getenv("VLCLIENTUI_MUTANTS_REACHED");
  if (!file) return nullptr;
  const int handle = open(file, O_RDWR);
  const off_t size = handle < 0 ? 0 : lseek(handle, 0, SEEK_END);
  if (size <= 0) return nullptr;
  void* const mapped =
      mmap(nullptr, static_cast<std::size_t>(size), PROT_READ | PROT_WRITE, MAP_SHARED, handle, 0);
  return mapped == MAP_FAILED ? nullptr : static_cast<char*>(mapped);
}

}  // namespace

bool on(int number) {
  static const int chosen = numberOf("VLCLIENTUI_MUTANT");
  static char* const reached = marks();
  if (reached) reached[number] = 1;
  return number == chosen;
}

}  // namespace mutant
