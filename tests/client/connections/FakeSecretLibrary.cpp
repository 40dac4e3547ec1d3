// A library with the interface of the desktop's secret store, over memory. With VL_SECRET_PROBLEM in the
// environment each call fails with that text; with VL_SECRET_HANG it waits until it is canceled, and of
// "deaf" a while longer.
#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>

namespace {

struct Schema {
  const char* name;
};
struct Error {
  unsigned domain;
  int code;
  char* message;
};

std::map<std::string, std::string>& secrets() {
  static std::map<std::string, std::string> kept;
  return kept;
}

using Cancellable = std::atomic<bool>;

bool hangs(const void* cancellable) {
  const char* const how = std::getenv("VL_SECRET_HANG");
  if (how == nullptr) return false;
  const bool isDeaf = std::string(how) == "deaf";
  while (!*static_cast<const Cancellable*>(cancellable)) std::this_thread::yield();
  if (isDeaf) std::this_thread::sleep_for(std::chrono::milliseconds(300));
  return true;
}

bool fails(Error** error, const void* cancellable) {
  const char* const told = std::getenv("VL_SECRET_PROBLEM");
  const char* const problem = hangs(cancellable) ? "it was canceled" : told;
  if (problem == nullptr) return false;
  *error = new Error{1, 1, strdup(problem)};
  return true;
}

// The attributes end with a null; there is one here.
std::string keyIn(const Schema* schema, std::va_list attributes) {
  const std::string name = va_arg(attributes, const char*);
  const std::string value = va_arg(attributes, const char*);
  const bool isWhole = va_arg(attributes, const char*) == nullptr;
  return isWhole && name == "key" ? std::string(schema->name) + "/" + value : "";
}

}  // namespace

// The names are those of the library.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

int secret_password_store_sync(const Schema* schema, const char* collection, const char* label,
                               const char* secret, void* cancellable, Error** error, ...) {
  if (fails(error, cancellable)) return 0;
  std::va_list attributes;
  va_start(attributes, error);
  const std::string key = keyIn(schema, attributes);
  va_end(attributes);
  if (key.empty() || std::string(collection) != "default" || *label == '\0' || cancellable == nullptr)
    return 0;
  secrets()[key] = secret;
  return 1;
}

char* secret_password_lookup_sync(const Schema* schema, void* cancellable, Error** error, ...) {
  if (fails(error, cancellable)) return nullptr;
  std::va_list attributes;
  va_start(attributes, error);
  const auto found = secrets().find(keyIn(schema, attributes));
  va_end(attributes);
  return found == secrets().end() ? nullptr : strdup(found->second.c_str());
}

int secret_password_clear_sync(const Schema* schema, void* cancellable, Error** error, ...) {
  if (fails(error, cancellable)) return 0;
  std::va_list attributes;
  va_start(attributes, error);
  const std::size_t removed = secrets().erase(keyIn(schema, attributes));
  va_end(attributes);
  return static_cast<int>(removed);
}

void secret_password_free(char* password) { std::free(password); }

void g_error_free(Error* error) {
  std::free(error->message);
  delete error;
}

void* g_cancellable_new() { return new Cancellable(false); }
void g_cancellable_cancel(void* cancellable) { *static_cast<Cancellable*>(cancellable) = true; }
void g_object_unref(void* object) { delete static_cast<Cancellable*>(object); }
}
// NOLINTEND(readability-identifier-naming)
