#include <condition_variable>
#include <mutex>
#include <thread>

#include <dlfcn.h>

#include "client/connections/SecretStore.h"

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

/// Ends a call that takes too long.
class Deadline {
 public:
  explicit Deadline(const Functions& functions)
      : functions_(functions), cancellable_(functions.newCancellable()), thread_([this] { watch(); }) {}
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
  ~Deadline() {
    {
      const std::lock_guard lock(mutex_);
      isOver_ = true;
    }
    over_.notify_all();
    thread_.join();
    functions_.unref(cancellable_);
  }
  [[nodiscard]] Cancellable* cancellable() const { return cancellable_; }

 private:
  void watch() {
    std::unique_lock lock(mutex_);
    if (!over_.wait_for(lock, patience, [this] { return isOver_; })) functions_.cancel(cancellable_);
  }

  const Functions& functions_;
  Cancellable* cancellable_;
  std::mutex mutex_;
  std::condition_variable over_;
  bool isOver_ = false;
  std::thread thread_;
};

class DesktopSecrets final : public SecretStore {
 public:
  explicit DesktopSecrets(std::string library) : name_(std::move(library)) {}

  std::string keep(const std::string& key, const std::string& label, const std::string& secret) override {
    if (!isThere()) return missing();
    Error* error = nullptr;
    const Deadline deadline(functions_);
    const bool isKept =
        functions_.store(&schema, "default", label.c_str(), secret.c_str(), deadline.cancellable(), &error,
                         attribute, key.c_str(), nullptr) != 0;
    const std::string problem = takeProblem(error);
    return isKept || !problem.empty() ? problem : "the secret store of the desktop refuses it";
  }

  Found find(const std::string& key) override {
    if (!isThere()) return {std::nullopt, missing()};
    Error* error = nullptr;
    const Deadline deadline(functions_);
    char* const secret =
        functions_.lookup(&schema, deadline.cancellable(), &error, attribute, key.c_str(), nullptr);
    Found found{std::nullopt, takeProblem(error)};
    if (secret == nullptr) return found;
    found.secret = secret;
    functions_.freePassword(secret);
    return found;
  }

  std::string forget(const std::string& key) override {
    if (!isThere()) return missing();
    Error* error = nullptr;
    const Deadline deadline(functions_);
    functions_.clear(&schema, deadline.cancellable(), &error, attribute, key.c_str(), nullptr);
    return takeProblem(error);
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

  [[nodiscard]] std::string takeProblem(Error* error) const {
    if (error == nullptr) return {};
    std::string problem = "the secret store of the desktop does not answer";
    if (error->message != nullptr && *error->message != '\0') problem += std::string(": ") + error->message;
    functions_.freeError(error);
    return problem;
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
