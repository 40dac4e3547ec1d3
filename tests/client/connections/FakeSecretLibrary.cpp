// A library with the interface of the desktop's secret store, over memory. With VL_SECRET_PROBLEM in the
// environment each call fails with that text.
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

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

bool fails(Error** error) {
  const char* const problem = std::getenv("VL_SECRET_PROBLEM");
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
  if (fails(error)) return 0;
  std::va_list attributes;
  va_start(attributes, error);
  const std::string key = keyIn(schema, attributes);
  va_end(attributes);
  if (key.empty() || std::string(collection) != "default" || *label == '\0' || cancellable == nullptr)
    return 0;
  secrets()[key] = secret;
  return 1;
}

char* secret_password_lookup_sync(const Schema* schema, void* /*cancellable*/, Error** error, ...) {
  if (fails(error)) return nullptr;
  std::va_list attributes;
  va_start(attributes, error);
  const auto found = secrets().find(keyIn(schema, attributes));
  va_end(attributes);
  return found == secrets().end() ? nullptr : strdup(found->second.c_str());
}

int secret_password_clear_sync(const Schema* schema, void* /*cancellable*/, Error** error, ...) {
  if (fails(error)) return 0;
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

void* g_cancellable_new() { return new int(0); }
void g_cancellable_cancel(void* cancellable) { *static_cast<int*>(cancellable) = 1; }
void g_object_unref(void* object) { delete static_cast<int*>(object); }
}
// NOLINTEND(readability-identifier-naming)
