#include "library/Registration.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <system_error>

#include <dlfcn.h>

#include "contracts/NewFile.h"
#include "contracts/ReplacedFile.h"
#include "contracts/RuntimeFailure.h"
#include "library/ClassFactory.h"

namespace vlclientui {

namespace {

namespace fs = std::filesystem;

constexpr char fieldEnd = '\t';

fs::path userDataHome() {
  const char* const data = std::getenv("XDG_DATA_HOME");
  if (data && fs::path(data).is_absolute()) return data;
  const char* const home = std::getenv("HOME");
  if (!home || !*home) throw RuntimeFailure("Neither XDG_DATA_HOME nor HOME names a folder");
  return fs::path(home) / ".local" / "share";
}

/// The file that this library was loaded from.
std::string ownPath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&registerClasses), &info) == 0 || !info.dli_fname) {
    throw RuntimeFailure("The path of the library is unknown");
  }
  return fs::absolute(info.dli_fname).string();
}

std::string interfacesOf(const PublicClass& entry) {
  std::string interfaces(entry.defaultInterface);
  for (const std::string_view further : entry.furtherInterfaces) {
    if (!further.empty()) interfaces += "," + std::string(further);
  }
  return interfaces;
}

bool isOurs(const Registration& registration) {
  return findPublicClass(registration.classIdentity) != nullptr;
}

/// Replacing a file that cannot be read would lose the entries of others.
[[noreturn]] void failReading(const fs::path& file) {
  throw RuntimeFailure("Cannot read the registration file " + file.string());
}

[[noreturn]] void failWriting(const fs::path& file) {
  throw RuntimeFailure("Cannot write the registration file " + file.string() + ": " + std::strerror(errno));
}

void replaceFile(const fs::path& file, const std::string& text) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  NewFile written(replacedFile(file).file, 0600);
  if (!written.isOpen() || !written.write(text) || !written.takePlace()) failWriting(file);
}

void writeRegistrations(const fs::path& file, const std::vector<Registration>& registrations) {
  std::string text;
  for (const Registration& entry : registrations) {
    text += entry.name + fieldEnd + entry.classIdentity + fieldEnd + entry.interfaces + fieldEnd +
            entry.libraryPath + '\n';
  }
  replaceFile(file, text);
}

std::vector<Registration> withoutOurs(const fs::path& file) {
  auto registrations = readRegistrations(file);
  std::erase_if(registrations, isOurs);
  return registrations;
}

}  // namespace

fs::path registrationFile() { return userDataHome() / "VLClientUI" / "classes.tsv"; }

std::vector<Registration> readRegistrations(const fs::path& file) {
  std::vector<Registration> registrations;
  if (!fs::exists(file)) return registrations;
  std::ifstream stream(file);
  if (!stream) failReading(file);
  for (std::string line; std::getline(stream, line);) {
    std::istringstream fields(line);
    Registration entry;
    if (std::getline(fields, entry.name, fieldEnd) && std::getline(fields, entry.classIdentity, fieldEnd) &&
        std::getline(fields, entry.interfaces, fieldEnd) && std::getline(fields, entry.libraryPath)) {
      registrations.push_back(std::move(entry));
    }
  }
  if (stream.bad()) failReading(file);
  return registrations;
}

void registerClasses() {
  const fs::path file = registrationFile();
  auto registrations = withoutOurs(file);
  const std::string library = ownPath();
  for (const PublicClass& entry : publicClasses()) {
    if (!findClassFactory(entry.name)) continue;
    registrations.push_back(
        {std::string(entry.name), std::string(entry.classIdentity), interfacesOf(entry), library});
  }
  writeRegistrations(file, registrations);
}

void unregisterClasses() {
  const fs::path file = registrationFile();
  if (!fs::exists(file)) return;
  const auto registrations = withoutOurs(file);
  if (registrations.empty()) {
    fs::remove(file);
  } else {
    writeRegistrations(file, registrations);
  }
}

}  // namespace vlclientui
