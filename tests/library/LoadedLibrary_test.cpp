// The shared library as a host of any language sees it: four plain functions, found by name.

#include <cstdint>

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryDataHome.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* dialogIdentity = "{66CEF2DE-E800-4B43-83E0-4CE5F2DE1E76}";
constexpr const char* helperIdentity = "{DEF6741B-DC32-4E7F-B6FD-1DB5592A0FD2}";

class LoadedLibrary : public testing::Test {
 protected:
  LoadedLibrary() : handle_(dlopen(VL_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL)) {}
  ~LoadedLibrary() override {
    if (handle_) dlclose(handle_);
  }
  void SetUp() override { ASSERT_TRUE(handle_) << dlerror(); }

  template <class Function>
  [[nodiscard]] Function* find(const char* name) const {
    auto* const found = reinterpret_cast<Function*>(dlsym(handle_, name));
    if (!found) throw std::runtime_error(std::string("the library lacks ") + name);
    return found;
  }
  [[nodiscard]] std::int32_t call(const char* name) const { return find<std::int32_t()>(name)(); }
  [[nodiscard]] std::int32_t getClassObject(const char* identity, const void** factory) const {
    return find<std::int32_t(const char*, const void**)>("DllGetClassObject")(identity, factory);
  }

 private:
  void* handle_;
};

TEST_F(LoadedLibrary, RegistersAndUnregistersItself) {
  const TemporaryDataHome home;
  ASSERT_EQ(call("DllRegisterServer"), 0);
  EXPECT_THAT(home.read(), HasSubstr(dialogIdentity));
  EXPECT_THAT(home.read(), HasSubstr(VL_LIBRARY_FILE));
  ASSERT_EQ(call("DllUnregisterServer"), 0);
  EXPECT_FALSE(std::filesystem::exists(home.file()));
}

TEST_F(LoadedLibrary, GivesTheFactoriesOfItsClasses) {
  const void* factory = nullptr;
  EXPECT_EQ(getClassObject(dialogIdentity, &factory), 0);
  EXPECT_TRUE(factory);
}

TEST_F(LoadedLibrary, GivesNoFactoryOfHelperClassesAndUnknownOnes) {
  const void* factory = this;
  EXPECT_EQ(static_cast<std::uint32_t>(getClassObject(helperIdentity, &factory)), 0x80040111U);
  EXPECT_FALSE(factory);
  factory = this;
  EXPECT_EQ(static_cast<std::uint32_t>(getClassObject("{}", &factory)), 0x80040111U);
  EXPECT_FALSE(factory);
}

TEST_F(LoadedLibrary, RefusesNullPointers) {
  const void* factory = nullptr;
  EXPECT_EQ(static_cast<std::uint32_t>(getClassObject(nullptr, &factory)), 0x80004003U);
  EXPECT_EQ(static_cast<std::uint32_t>(getClassObject(dialogIdentity, nullptr)), 0x80004003U);
}

TEST_F(LoadedLibrary, MayBeUnloadedWhileNoObjectLives) { EXPECT_EQ(call("DllCanUnloadNow"), 0); }

TEST_F(LoadedLibrary, TellsThatARegistrationFailed) {
  const TemporaryDataHome home;
  std::ofstream(home.folder()) << "in the way";
  EXPECT_EQ(static_cast<std::uint32_t>(call("DllRegisterServer")), 0x80004005U);
}

}  // namespace
}  // namespace vlclientui::test
