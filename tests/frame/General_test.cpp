#include "frame/General.h"

#include <filesystem>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

#include "contracts/controls/SampleForm.h"
#include "frame/Guard.h"
#include "headless/HeadlessToolkit.h"
#include "support/FramePlatform.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InstallFolders : public FramePlatform {};
class SpecialFolders : public FramePlatform {};
class CreatedPaths : public FramePlatform {};
class Existence : public FramePlatform {};

class RegistryValues : public FramePlatform {
 protected:
  std::string read(const std::string& defaultValue = {}) {
    return ReadRegistryValue(RegistryHive::HKEY_LOCAL_MACHINE, "SOFTWARE\\Key", "Value", defaultValue);
  }
  void answer(const RegistryValue& value) {
    system->registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\Key\\Value"] = value;
  }
};

TEST_F(InstallFolders, AreThoseOfTheClientLibraryForTheThreeKinds) {
  EXPECT_EQ(GetInstallFolder(0), "C:\\Program\\");
  EXPECT_EQ(GetInstallFolder(1), "C:\\Home");
  EXPECT_EQ(GetInstallFolder(15), "C:\\Asked\\15");
}

TEST_F(InstallFolders, AreEmptyForAnyOtherKindWhateverTheLibraryCouldAnswer) {
  for (const std::int32_t kind : {2, -1, 14, 16, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(GetInstallFolder(kind), "") << kind;
  }
}

TEST_F(InstallFolders, FailWithoutAPlatform) {
  setPlatform(nullptr);
  EXPECT_THROW(static_cast<void>(GetInstallFolder(0)), RuntimeFailure);
  EXPECT_EQ(GetInstallFolder(2), "");
}

TEST_F(InstallFolders, FailWhenTheLibraryMakesNoObject) {
  struct NothingInstalled : FakeClientLibrary {
    std::unique_ptr<InstallPaths> createInstallPaths() override { return nullptr; }
  };
  Platform without = adapters();
  without.clientLibrary = std::make_shared<NothingInstalled>();
  setPlatform(std::make_shared<Platform>(without));
  EXPECT_THROW(static_cast<void>(GetInstallFolder(0)), RuntimeFailure);
}

TEST_F(SpecialFolders, AreTheTextUpToTheFirstNul) {
  system->shellFolders[5] = std::string("C:\\Docs\0rest\0", 13);
  EXPECT_EQ(GetSpecialFolder(5), "C:\\Docs");
}

TEST_F(SpecialFolders, AreTheWholeTextWithoutANul) {
  system->shellFolders[26] = "C:\\Data";
  EXPECT_EQ(GetSpecialFolder(26), "C:\\Data");
}

TEST_F(SpecialFolders, AreEmptyOnFailure) { EXPECT_EQ(GetSpecialFolder(99), ""); }

TEST_F(SpecialFolders, AreEmptyWhenTheAnswerBeginsWithANul) {
  system->shellFolders[5] = std::string("\0C:\\Docs", 8);
  EXPECT_EQ(GetSpecialFolder(5), "");
}

TEST_F(CreatedPaths, GetBlankBackslashBlankWhenTheyDoNotEndInABackslash) {
  std::string path = "C:\\x";
  EXPECT_TRUE(CreatePath(path));
  EXPECT_EQ(path, "C:\\x \\ ");
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\x \\ "));
}

TEST_F(CreatedPaths, StayUnchangedWhenTheyEndInABackslash) {
  std::string path = "C:\\x\\";
  EXPECT_TRUE(CreatePath(path));
  EXPECT_EQ(path, "C:\\x\\");
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\x\\"));
}

TEST_F(CreatedPaths, GetTheThreeCharactersAlsoAfterATrailingBlankOrWhenEmpty) {
  std::string path = "C:\\x\\ ";
  CreatePath(path);
  EXPECT_EQ(path, "C:\\x\\  \\ ");
  std::string empty;
  CreatePath(empty);
  EXPECT_EQ(empty, " \\ ");
}

TEST_F(CreatedPaths, GrowAgainAtEachCall) {
  std::string path = "C:\\x";
  CreatePath(path);
  CreatePath(path);
  EXPECT_EQ(path, "C:\\x \\  \\ ");
}

TEST_F(CreatedPaths, MakeEveryFolderAndNoExtraOne) {
  std::string path = "C:\\a\\b\\c";
  EXPECT_TRUE(CreatePath(path));
  EXPECT_TRUE(FolderExist("C:\\a\\b\\c"));
  EXPECT_TRUE(std::filesystem::is_empty(system->nativeFile("C:\\a\\b\\c")));
}

TEST_F(CreatedPaths, TellWhetherTheSystemCallSucceeded) {
  system->folderCreationWorks = false;
  std::string path = "C:\\x";
  EXPECT_FALSE(CreatePath(path));
  EXPECT_EQ(path, "C:\\x \\ ");
}

TEST_F(Existence, OfAFolderIsSeen) {
  system->writeFile("C:\\folder\\file", "x");
  EXPECT_TRUE(FolderExist("C:\\folder"));
  EXPECT_FALSE(FolderExist("C:\\other"));
}

TEST_F(Existence, OfAFolderIsDeniedForAFirstNameThatIsEmpty) {
  struct EmptyListing : TestSystem {
    std::string firstDirectoryEntry(const std::string&) override { return ""; }
  };
  Platform listing = adapters();
  listing.system = std::make_shared<EmptyListing>();
  setPlatform(std::make_shared<Platform>(listing));
  EXPECT_FALSE(FolderExist("C:\\folder"));
}

TEST_F(Existence, OfAFileIsSeenAlsoWhenItIsEmpty) {
  system->writeFile("C:\\empty", "");
  system->writeFile("C:\\full", "text");
  EXPECT_TRUE(FileExist("C:\\empty"));
  EXPECT_TRUE(FileExist("C:\\full"));
  EXPECT_FALSE(FileExist("C:\\missing"));
}

TEST_F(Existence, OfAFileWithATrailingBlankIsThatOfTheFile) {
  system->writeFile("C:\\Program\\VLClient.XADef", "x");
  EXPECT_TRUE(FileExist("C:\\Program\\VLClient.XADef "));
}

TEST_F(Existence, OfAFileIsDeniedForANegativeLength) {
  struct NegativeLength : TestSystem {
    std::int64_t fileLength(const std::string&) override { return -1; }
  };
  Platform negative = adapters();
  negative.system = std::make_shared<NegativeLength>();
  setPlatform(std::make_shared<Platform>(negative));
  EXPECT_FALSE(FileExist("C:\\file"));
}

TEST_F(Existence, IsDeniedOnAnyError) {
  struct StrangeErrors : TestSystem {
    std::int64_t fileLength(const std::string&) override { throw std::filesystem::filesystem_error("x", {}); }
    std::string firstDirectoryEntry(const std::string&) override { throw std::logic_error("x"); }
  };
  system->everythingFails = true;
  EXPECT_FALSE(FileExist("C:\\file"));
  EXPECT_FALSE(FolderExist("C:\\folder"));
  Platform strange = adapters();
  strange.system = std::make_shared<StrangeErrors>();
  setPlatform(std::make_shared<Platform>(strange));
  EXPECT_FALSE(FileExist("C:\\file"));
  EXPECT_FALSE(FolderExist("C:\\folder"));
  setPlatform(nullptr);
  EXPECT_FALSE(FileExist("C:\\file"));
  EXPECT_FALSE(FolderExist("C:\\folder"));
}

TEST_F(Existence, IsNoQuestionToAWindowThatGoesMeanwhile) {
  headless::HeadlessToolkit toolkit;
  SampleForm form(toolkit);
  struct ClosingSystem : TestSystem {
    Form* form = nullptr;
    std::int64_t fileLength(const std::string&) override {
      form->unload();
      return 1;
    }
    std::string firstDirectoryEntry(const std::string&) override {
      form->unload();
      return "x";
    }
  };
  const auto closing = std::make_shared<ClosingSystem>();
  closing->form = &form;
  Platform asked = adapters();
  asked.system = closing;
  setPlatform(std::make_shared<Platform>(asked));
  for (const auto exists : {FileExist, FolderExist}) {
    form.load();
    bool answered = false;
    visitWindow(&form, [&] { answered = exists("C:\\file") || !exists("C:\\file"); });
    EXPECT_FALSE(answered);
    EXPECT_FALSE(form.loaded());
  }
}

TEST_F(RegistryValues, OfTypeOneAreTheTextUpToItsFirstNul) {
  answer({1, std::string("C:\\Home\0junk\0", 13), 0});
  EXPECT_EQ(read("default"), "C:\\Home");
}

TEST_F(RegistryValues, OfTypeOneMayBeEmpty) {
  answer({1, std::string("\0", 1), 0});
  EXPECT_EQ(read("default"), "");
}

TEST_F(RegistryValues, OfTypeFourAreReadInDecimal) {
  answer({4, "", 0});
  EXPECT_EQ(read("default"), "0");
  answer({4, "", 1033});
  EXPECT_EQ(read("default"), "1033");
}

TEST_F(RegistryValues, OfAnyOtherTypeAreTheDefault) {
  for (const std::int32_t type : {0, 2, 3, 5, 7, 11}) {
    answer({type, std::string("text\0", 5), 7});
    EXPECT_EQ(read("default"), "default") << type;
    EXPECT_EQ(read(), "") << type;
  }
}

TEST_F(RegistryValues, ThatAreMissingAreTheDefault) {
  EXPECT_EQ(read("default"), "default");
  system->registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\Key\\Other"] = {1, "x", 0};
  EXPECT_EQ(read("default"), "default");
  EXPECT_EQ(read(), "");
}

TEST_F(RegistryValues, AreReadBelowTheHiveThatIsAsked) {
  system->registry["HKEY_CURRENT_USER\\SOFTWARE\\Key\\Value"] = {1, std::string("user\0", 5), 0};
  EXPECT_EQ(read("default"), "default");
  EXPECT_EQ(ReadRegistryValue(RegistryHive::HKEY_CURRENT_USER, "SOFTWARE\\Key", "Value"), "user");
}

TEST_F(RegistryValues, LeaveTheKeyClosedInEveryCase) {
  const auto expectClosed = [this] {
    system->registryLog.clear();
    static_cast<void>(read());
    EXPECT_THAT(system->registryLog,
                ElementsAre("open HKEY_LOCAL_MACHINE\\SOFTWARE\\Key", "query Value", "close"));
  };
  for (const std::int32_t type : {1, 4, 3}) {
    answer({type, std::string("text\0", 5), 7});
    expectClosed();
  }
  system->registry.clear();
  system->registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\Key\\Other"] = {1, "x", 0};
  expectClosed();
}

/// A fake locale for tests that records each call and answers from a table of two.
struct LocaleCalls : TestSystem {
  std::string answer;
  std::int32_t sizeToTell = 0;
  std::vector<std::string> calls;
  std::string secondBuffer;

  std::int32_t userLocale() override {
    calls.emplace_back("userLocale");
    return 1031;
  }
  std::int32_t localeInfo(std::int32_t localeId, std::int32_t item, std::string& buffer,
                          std::int32_t size) override {
    calls.push_back("localeInfo " + std::to_string(localeId) + " " + std::to_string(item) + " " +
                    std::to_string(size));
    if (size == 0) return sizeToTell;
    secondBuffer = buffer;
    buffer = answer;
    return static_cast<std::int32_t>(answer.size());
  }
};

class DecimalSeparators : public FramePlatform {
 protected:
  DecimalSeparators() {
    Platform withCalls = adapters();
    withCalls.system = calls;
    setPlatform(std::make_shared<Platform>(withCalls));
  }
  std::string read(const std::string& answer, std::int32_t size) {
    calls->answer = answer;
    calls->sizeToTell = size;
    std::string separator = "former";
    readLocaleDecimalSeparator(separator);
    return separator;
  }

  std::shared_ptr<LocaleCalls> calls = std::make_shared<LocaleCalls>();
};

TEST_F(DecimalSeparators, AreAskedForTheirSizeAndThenForTheirText) {
  EXPECT_EQ(read(std::string(",\0", 2), 2), ",");
  EXPECT_THAT(calls->calls, ElementsAre("userLocale", "localeInfo 1031 14 0", "localeInfo 1031 14 2"));
  EXPECT_EQ(calls->secondBuffer.size(), 2U);
}

TEST_F(DecimalSeparators, AreCutAtTheFirstNul) {
  EXPECT_EQ(read(std::string("::\0x", 4), 4), "::");
  EXPECT_EQ(read(std::string("\0", 1), 1), "");
}

TEST_F(DecimalSeparators, KeepTheFormerTextWhenTheAnswerHasNoEnd) { EXPECT_EQ(read(",", 1), "former"); }

TEST_F(DecimalSeparators, KeepTheFormerTextWhenTheSystemFails) {
  EXPECT_EQ(read("", 0), "former");
  EXPECT_EQ(read("", -1), "former");
}

}  // namespace
}  // namespace vlclientui::test
