#include "library/Registration.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include "contracts/RuntimeFailure.h"
#include "library/ClassFactory.h"
#include "library/EntryPoints.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
namespace result = entryPointResult;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* strangerLine = "Other\t{11111111-2222-3333-4444-555555555555}\t_Other\t/opt/other.so\n";
constexpr uid_t nobody = 65534;

/// Files cannot grow beyond a few bytes while this lives, as on a full disk.
class FullDisk {
 public:
  FullDisk() : formerHandler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit small{16, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &former_);
    signal(SIGXFSZ, formerHandler_);
  }

 private:
  rlimit former_{};
  sighandler_t formerHandler_;
};

/// Lets file permissions count for a privileged user too.
class WithoutPrivileges {
 public:
  WithoutPrivileges() : dropped_(geteuid() == 0 && seteuid(nobody) == 0) {}
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
  ~WithoutPrivileges() {
    if (dropped_ && seteuid(0) != 0) std::abort();
  }
  [[nodiscard]] static bool effective() { return geteuid() != 0; }

 private:
  bool dropped_;
};

class RegistrationFile : public testing::Test {
 protected:
  [[nodiscard]] std::vector<Registration> registrations() const { return readRegistrations(home.file()); }
  [[nodiscard]] std::vector<std::string> registeredNames() const {
    std::vector<std::string> names;
    for (const Registration& entry : registrations()) names.push_back(entry.name);
    return names;
  }
  [[nodiscard]] static std::vector<std::string> creatableNames() {
    std::vector<std::string> names;
    for (const PublicClass& entry : publicClasses()) {
      if (findClassFactory(entry.name)) names.emplace_back(entry.name);
    }
    return names;
  }

  TemporaryDataHome home;
};

TEST_F(RegistrationFile, StandsBelowTheUsersDataFolder) {
  EXPECT_EQ(registrationFile(), home.path() / "VLClientUI" / "classes.tsv");
}

TEST_F(RegistrationFile, StandsBelowHomeWithoutADataFolder) {
  const EnvironmentKeeper noDataHome("XDG_DATA_HOME", std::nullopt);
  const EnvironmentKeeper userHome("HOME", "/somewhere");
  EXPECT_EQ(registrationFile(), "/somewhere/.local/share/VLClientUI/classes.tsv");
}

TEST_F(RegistrationFile, StandsBelowHomeWhenTheDataFolderIsNoAbsolutePath) {
  const EnvironmentKeeper userHome("HOME", "/somewhere");
  for (const char* const value : {"", "relative/folder"}) {
    const EnvironmentKeeper dataHome("XDG_DATA_HOME", value);
    EXPECT_EQ(registrationFile(), "/somewhere/.local/share/VLClientUI/classes.tsv") << value;
  }
}

TEST_F(RegistrationFile, StandsNowhereWithoutAnyFolder) {
  const EnvironmentKeeper noDataHome("XDG_DATA_HOME", std::nullopt);
  const EnvironmentKeeper noHome("HOME", std::nullopt);
  EXPECT_THROW(static_cast<void>(registrationFile()), RuntimeFailure);
  EXPECT_EQ(DllRegisterServer(), result::failed);
  EXPECT_EQ(DllUnregisterServer(), result::failed);
}

TEST_F(RegistrationFile, ListsEveryClassThatAHostCanCreate) {
  ASSERT_EQ(DllRegisterServer(), result::ok);
  EXPECT_EQ(registeredNames(), creatableNames());
  EXPECT_THAT(registeredNames(), ElementsAre("ImageServicesControl", "ServicePropertiesDialog",
                                             "ImageServicesDialog", "ExportDialog", "ExportControl"));
}

TEST_F(RegistrationFile, TellsNameIdentityInterfacesAndLibrary) {
  ASSERT_EQ(DllRegisterServer(), result::ok);
  const auto entries = registrations();
  const auto dialog = std::ranges::find(entries, "ImageServicesDialog", &Registration::name);
  ASSERT_NE(dialog, entries.end());
  EXPECT_EQ(dialog->classIdentity, "{66CEF2DE-E800-4B43-83E0-4CE5F2DE1E76}");
  EXPECT_EQ(dialog->interfaces, "_ImageServicesDialog,IImageServicesDialog,IOVLImageServicesDialog");
  EXPECT_TRUE(fs::path(dialog->libraryPath).is_absolute());
  EXPECT_TRUE(fs::is_regular_file(dialog->libraryPath));
  EXPECT_TRUE(fs::path(dialog->libraryPath).filename().string().starts_with("libVLClientUI."));
}

TEST_F(RegistrationFile, HasOneLineWithTabsForEachClass) {
  ASSERT_EQ(DllRegisterServer(), result::ok);
  const std::string text = home.read();
  EXPECT_EQ(std::ranges::count(text, '\n'), static_cast<std::ptrdiff_t>(creatableNames().size()));
  EXPECT_EQ(std::ranges::count(text, '\t'), static_cast<std::ptrdiff_t>(3 * creatableNames().size()));
  EXPECT_TRUE(text.ends_with('\n'));
}

TEST_F(RegistrationFile, IsTheSameAfterASecondRegistration) {
  ASSERT_EQ(DllRegisterServer(), result::ok);
  const std::string first = home.read();
  ASSERT_EQ(DllRegisterServer(), result::ok);
  EXPECT_EQ(home.read(), first);
  EXPECT_THAT(home.names(), ElementsAre("classes.tsv"));
}

TEST_F(RegistrationFile, GetsTheNewPathOfALibraryThatMoved) {
  home.write("ImageServicesDialog\t{66cef2de-e800-4b43-83e0-4ce5f2de1e76}\t_Old\t/old/place.so\n");
  ASSERT_EQ(DllRegisterServer(), result::ok);
  EXPECT_EQ(home.read().find("/old/place.so"), std::string::npos);
  EXPECT_EQ(registeredNames(), creatableNames());
}

TEST_F(RegistrationFile, KeepsTheEntriesOfOthers) {
  home.write(strangerLine);
  ASSERT_EQ(DllRegisterServer(), result::ok);
  EXPECT_TRUE(home.read().starts_with(strangerLine));
  EXPECT_EQ(registrations().size(), creatableNames().size() + 1);
  ASSERT_EQ(DllUnregisterServer(), result::ok);
  EXPECT_EQ(home.read(), strangerLine);
}

TEST_F(RegistrationFile, GoesWithItsLastEntry) {
  ASSERT_EQ(DllRegisterServer(), result::ok);
  ASSERT_EQ(DllUnregisterServer(), result::ok);
  EXPECT_FALSE(fs::exists(home.file()));
}

TEST_F(RegistrationFile, NeedNotBeThereToUnregister) {
  EXPECT_EQ(DllUnregisterServer(), result::ok);
  EXPECT_FALSE(fs::exists(home.folder()));
}

TEST_F(RegistrationFile, IsLeftAsItWasWhenTheWriteCannotFinish) {
  home.write(strangerLine);
  {
    const FullDisk full;
    EXPECT_EQ(DllRegisterServer(), result::failed);
  }
  EXPECT_EQ(home.read(), strangerLine);
  EXPECT_THAT(home.names(), ElementsAre("classes.tsv"));
}

TEST_F(RegistrationFile, IsNotBegunWhenTheWriteCannotFinish) {
  {
    const FullDisk full;
    EXPECT_EQ(DllRegisterServer(), result::failed);
  }
  EXPECT_THAT(home.names(), IsEmpty());
}

TEST_F(RegistrationFile, IsLeftAsItWasInAFolderThatCannotBeWritten) {
  const std::string before = std::string(strangerLine) +
                             "ImageServicesDialog\t{66CEF2DE-E800-4B43-83E0-4CE5F2DE1E76}\t_Old\t/old.so\n";
  home.write(before);
  fs::permissions(home.folder(), fs::perms(0555));
  {
    const WithoutPrivileges user;
    if (!WithoutPrivileges::effective()) GTEST_SKIP() << "cannot give up the privileges of this user";
    EXPECT_EQ(DllRegisterServer(), result::failed);
    EXPECT_EQ(DllUnregisterServer(), result::failed);
  }
  EXPECT_EQ(home.read(), before);
  EXPECT_THAT(home.names(), ElementsAre("classes.tsv"));
  fs::permissions(home.folder(), fs::perms(0755));
}

TEST_F(RegistrationFile, ThatCannotBeReadIsNotReplaced) {
  home.write(strangerLine);
  fs::permissions(home.file(), fs::perms(0000));
  fs::permissions(home.folder(), fs::perms(0777));
  {
    const WithoutPrivileges user;
    if (!WithoutPrivileges::effective()) GTEST_SKIP() << "cannot give up the privileges of this user";
    EXPECT_EQ(DllRegisterServer(), result::failed);
  }
  fs::permissions(home.file(), fs::perms(0644));
  EXPECT_EQ(home.read(), strangerLine);
}

TEST_F(RegistrationFile, CannotBeAFolder) {
  fs::create_directories(home.file());
  EXPECT_THROW(static_cast<void>(readRegistrations(home.file())), RuntimeFailure);
  EXPECT_EQ(DllRegisterServer(), result::failed);
  EXPECT_TRUE(fs::is_directory(home.file()));
}

TEST_F(RegistrationFile, CannotStandBelowAFile) {
  std::ofstream(home.folder()) << "in the way";
  EXPECT_EQ(DllRegisterServer(), result::failed);
  EXPECT_TRUE(fs::is_regular_file(home.folder()));
}

TEST_F(RegistrationFile, IsReadWithoutLinesThatAreNoRegistrations) {
  home.write(std::string("\nonly a name\nname\tidentity\n") + strangerLine);
  EXPECT_THAT(registrations(), ElementsAre(Registration{"Other", "{11111111-2222-3333-4444-555555555555}",
                                                        "_Other", "/opt/other.so"}));
}

TEST_F(RegistrationFile, HasNothingToReadWhenItIsMissing) { EXPECT_THAT(registrations(), IsEmpty()); }

}  // namespace
}  // namespace vlclientui::test
