#include "contracts/Silence.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

#include "contracts/SilenceText.h"

namespace vlclientui {

namespace {

constexpr const char* traceVariable = "VLCLIENTUI_TRACE";

/// Where the environment wants every silent end of the process; null for nowhere.
std::FILE* openTrace() {
  const char* const value = std::getenv(traceVariable);
  const std::string_view wanted = value == nullptr ? "" : value;
  if (wanted.empty() || wanted == "0") return nullptr;
  if (wanted == "1") return stderr;
  std::FILE* const file = std::fopen(value, "ae");
  return file == nullptr ? stderr : file;
}

/// Asked once: hosts may change their environment while other threads read it.
std::FILE* trace() {
  static std::FILE* const opened = openTrace();
  return opened;
}

void printTo(std::FILE* file, const SilentEnd& end) {
  const std::string line = end.routine + ": " + end.reason + "\n";
  std::fwrite(line.data(), 1, line.size(), file);
  std::fflush(file);
}

}  // namespace

struct SilenceListener::Entry {
  Observer observer;
  bool listening = true;
  bool busy = false;

  void tell(const SilentEnd& end) noexcept {
    if (!listening || busy) return;
    busy = true;
    try {
      observer(end);
    } catch (...) {  // NOLINT(bugprone-empty-catch): an observer that fails has nobody to tell.
    }
    busy = false;
  }
};

std::string RoutineName::text() const {
  return name_ != nullptr ? std::string(name_) : routineOfFunction(place_.function_name());
}

std::vector<std::shared_ptr<SilenceListener::Entry>>& SilenceListener::entriesOfThread() {
  thread_local std::vector<std::shared_ptr<Entry>> entries;
  return entries;
}

SilenceListener::SilenceListener(Observer observer) : entry_(std::make_shared<Entry>()) {
  entry_->observer = std::move(observer);
  if (entry_->observer) entriesOfThread().push_back(entry_);
}

SilenceListener::~SilenceListener() {
  entry_->listening = false;
  std::erase(entriesOfThread(), entry_);
}

void endSilently(std::string_view reason, const RoutineName& routine) noexcept {
  try {
    const auto listeners = SilenceListener::entriesOfThread();
    std::FILE* const file = trace();
    if (listeners.empty() && file == nullptr) return;
    const SilentEnd end{routine.text(), silentReason(reason)};
    if (file != nullptr) printTo(file, end);
    for (const auto& listener : listeners) listener->tell(end);
  } catch (
      ...) {  // NOLINT(bugprone-empty-catch): whoever ends silently cannot be made to fail by telling it.
  }
}

std::string handledFailureText() {
  try {
    throw;
  } catch (const std::exception& failure) {
    const std::string text = failure.what();
    return text.empty() ? "Unknown failure" : text;
  } catch (...) {
    return "Unknown failure";
  }
}

bool silenceIsPrinted() { return trace() == stderr; }

}  // namespace vlclientui
