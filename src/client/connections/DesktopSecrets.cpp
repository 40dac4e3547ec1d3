#include <algorithm>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include <dlfcn.h>

#include "client/connections/SecretStore.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

// What is used of the library, as its interface has it. It is loaded at run time, so that programs start
// where it is missing.
struct Attribute {
  const char* name;
  int type;
};
struct Schema {
  const char* name;
  int flags;
  Attribute attributes[32];
  int reserved;
  void* reservedPointers[7];
};
struct Error {
  unsigned domain;
  int code;
  char* message;
};
using Cancellable = void;

constexpr Schema schema{"org.vlclientui.Connection", 0, {{"key", 0}, {nullptr, 0}}, 0, {}};
constexpr const char* attribute = "key";
// A person may have to type the password of the store; a service that hangs must not hang the program.
constexpr std::chrono::seconds patience(120);

constexpr const char* storeName = "the secret store of the desktop";
constexpr const char* silent = "the secret store of the desktop does not answer";
constexpr const char* givenUp = "the wait for the secret store of the desktop was given up";

struct Functions {
  int (*store)(const Schema*, const char* collection, const char* label, const char* secret, Cancellable*,
               Error**, ...) = nullptr;
  char* (*lookup)(const Schema*, Cancellable*, Error**, ...) = nullptr;
  int (*clear)(const Schema*, Cancellable*, Error**, ...) = nullptr;
  void (*freePassword)(char*) = nullptr;
  void (*freeError)(Error*) = nullptr;
  Cancellable* (*newCancellable)() = nullptr;
  void (*cancel)(Cancellable*) = nullptr;
  void (*unref)(void*) = nullptr;
};

template <class Function>
bool take(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

using Found = SecretStore::Found;

std::string problemOf(const Functions& functions, Error* error) {
  if (error == nullptr) return {};
  std::string problem = silent;
  if (error->message != nullptr && *error->message != '\0') problem += std::string(": ") + error->message;
  functions.freeError(error);
  return problem;
}

/// One question to the store, on a thread of its own. Whoever waits may leave; the thread ends by itself
/// then.
class Asked {
 public:
  using Question = std::function<Found(const Functions&, Cancellable*)>;

  explicit Asked(const Functions& functions)
      : functions_(functions), cancellable_(functions.newCancellable()) {}
  Asked(const Asked&) = delete;
  Asked& operator=(const Asked&) = delete;
  ~Asked() { functions_.unref(cancellable_); }

  void ask(const Question& question) {
    Found found = question(functions_, cancellable_);
    const std::lock_guard lock(mutex_);
    if (!found_) found_ = std::move(found);
    changed_.notify_all();
  }
  void leave(const std::string& problem) {
    {
      const std::lock_guard lock(mutex_);
      if (!found_) found_ = Found{std::nullopt, problem};
      changed_.notify_all();
    }
    functions_.cancel(cancellable_);
  }
  Found answer(Waiting& waiting) {
    const auto end = Waiting::Clock::now() + patience;
    std::unique_lock lock(mutex_);
    while (!found_) {
      changed_.wait_until(lock, std::min(end, waiting.nextQuestion().value_or(end)));
      lock.unlock();
      if (Waiting::Clock::now() >= end) leave(silent);
      waiting.ask({storeName});
      lock.lock();
    }
    return *found_;
  }

 private:
  const Functions functions_;
  Cancellable* const cancellable_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<Found> found_;
};

Found answerOf(const Functions& functions, Asked::Question question) {
  const auto asked = std::make_shared<Asked>(functions);
  Waiting waiting([asked] { asked->leave(givenUp); });
  std::thread([asked, question = std::move(question)] { asked->ask(question); }).detach();
  return asked->answer(waiting);
}

class DesktopSecrets final : public SecretStore {
 public:
  explicit DesktopSecrets(std::string library) : name_(std::move(library)) {}

  std::string keep(const std::string& key, const std::string& label, const std::string& secret) override {
    if (!isThere()) return missing();
    return answerOf(functions_,
                    [=](const Functions& functions, Cancellable* cancellable) -> Found {
                      Error* error = nullptr;
                      const bool isKept =
                          functions.store(&schema, "default", label.c_str(), secret.c_str(), cancellable,
                                          &error, attribute, key.c_str(), nullptr) != 0;
                      const std::string problem = problemOf(functions, error);
                      const bool isRefused = !isKept && problem.empty();
                      return {std::nullopt, isRefused ? std::string(storeName) + " refuses it" : problem};
                    })
        .problem;
  }

  Found find(const std::string& key) override {
    if (!isThere()) return {std::nullopt, missing()};
    return answerOf(functions_, [=](const Functions& functions, Cancellable* cancellable) -> Found {
      Error* error = nullptr;
      char* const secret = functions.lookup(&schema, cancellable, &error, attribute, key.c_str(), nullptr);
      Found found{std::nullopt, problemOf(functions, error)};
      if (secret == nullptr) return found;
      found.secret = secret;
      functions.freePassword(secret);
      return found;
    });
  }

  std::string forget(const std::string& key) override {
    if (!isThere()) return missing();
    return answerOf(functions_,
                    [=](const Functions& functions, Cancellable* cancellable) -> Found {
                      Error* error = nullptr;
                      functions.clear(&schema, cancellable, &error, attribute, key.c_str(), nullptr);
                      return {std::nullopt, problemOf(functions, error)};
                    })
        .problem;
  }

 private:
  [[nodiscard]] std::string missing() const { return "this machine has no secret store (" + name_ + ")"; }

  // Never closed: the library starts threads of its own.
  bool isThere() {
    std::call_once(loaded_, [this] {
      void* const library = dlopen(name_.c_str(), RTLD_NOW | RTLD_LOCAL);
      isThere_ = library != nullptr && take(library, "secret_password_store_sync", functions_.store) &&
                 take(library, "secret_password_lookup_sync", functions_.lookup) &&
                 take(library, "secret_password_clear_sync", functions_.clear) &&
                 take(library, "secret_password_free", functions_.freePassword) &&
                 take(library, "g_error_free", functions_.freeError) &&
                 take(library, "g_cancellable_new", functions_.newCancellable) &&
                 take(library, "g_cancellable_cancel", functions_.cancel) &&
                 take(library, "g_object_unref", functions_.unref);
    });
    return isThere_;
  }

  std::string name_;
  std::once_flag loaded_;
  bool isThere_ = false;
  Functions functions_;
};

}  // namespace

std::unique_ptr<SecretStore> desktopSecretStore(const std::string& library) {
  return std::make_unique<DesktopSecrets>(library);
}

}  // namespace vlclientui::client
