#include "contracts/Operations.h"

#include <utility>
#include <vector>

namespace vlclientui {
namespace {

using Observers = std::vector<std::shared_ptr<OperationListener::Observer>>;

Observers& observersOfThread() {
  thread_local Observers observers;
  return observers;
}

PersonInPlace*& personOfThread() {
  thread_local PersonInPlace* person = nullptr;
  return person;
}

}  // namespace

void tellOperation(const Operation& operation) noexcept {
  try {
    const Observers observers = observersOfThread();
    for (const auto& observer : observers) (*observer)(operation);
  } catch (...) {  // NOLINT(bugprone-empty-catch): an observer that fails has nobody to tell.
  }
}

OperationListener::OperationListener(Observer observer)
    : observer_(std::make_shared<Observer>(std::move(observer))) {
  observersOfThread().push_back(observer_);
}

OperationListener::~OperationListener() { std::erase(observersOfThread(), observer_); }

PersonInPlace::PersonInPlace() { personOfThread() = this; }

PersonInPlace::~PersonInPlace() {
  if (personOfThread() == this) personOfThread() = nullptr;
}

PersonInPlace* PersonInPlace::ofThread() { return personOfThread(); }

std::optional<std::string> chosenFile(const FileDialog& dialog,
                                      const std::function<std::optional<std::string>()>& show) {
  PersonInPlace* const person = PersonInPlace::ofThread();
  std::optional<std::string> chosen = person ? person->chooseFile(dialog) : show();
  tellOperation({Operation::Kind::File, {}, {}, chosen.value_or("")});
  return chosen;
}

std::optional<FolderChoice> chosenFolder(const FolderDialog& dialog,
                                         const std::function<std::optional<FolderChoice>()>& show) {
  PersonInPlace* const person = PersonInPlace::ofThread();
  std::optional<FolderChoice> chosen = person ? person->chooseFolder(dialog) : show();
  std::string told;
  if (chosen)
    told = chosen->path ? chosen->path->substr(0, chosen->path->find('\0')) : "\\\\" + chosen->displayName;
  tellOperation({Operation::Kind::File, {}, {}, told});
  return chosen;
}

}  // namespace vlclientui
