#include "library/EntryPoints.h"

#include <algorithm>
#include <cctype>

#include "library/ClassFactory.h"
#include "selection/ImageServicesDialogInterfaces.h"
#include "support/FramePlatform.h"

namespace vlclientui::test {
namespace {

namespace result = entryPointResult;

class GettingClassObjects : public FramePlatform {
 protected:
  static std::int32_t get(std::string_view identity, const ClassFactory*& factory) {
    return DllGetClassObject(std::string(identity).c_str(), &factory);
  }
  static std::string_view identityOf(std::string_view name) { return findPublicClass(name)->classIdentity; }

  const ClassFactory* factory = nullptr;
};

class LibraryUnloading : public FramePlatform {};

TEST_F(GettingClassObjects, GivesTheFactoryOfAClassIdentity) {
  ASSERT_EQ(get(identityOf("ImageServicesDialog"), factory), result::ok);
  EXPECT_EQ(factory->CreateInstance()->typeName(), "ImageServicesDialog");
  ASSERT_EQ(get(identityOf("ImageServicesControl"), factory), result::ok);
  EXPECT_EQ(factory->CreateInstance()->typeName(), "ImageServicesControl");
}

TEST_F(GettingClassObjects, TakesAnIdentityInAnyCase) {
  std::string identity(identityOf("ImageServicesDialog"));
  std::ranges::transform(identity, identity.begin(), [](unsigned char c) { return std::tolower(c); });
  EXPECT_EQ(get(identity, factory), result::ok);
}

TEST_F(GettingClassObjects, TakesTheNameOfTheClassToo) {
  const ClassFactory* byName = nullptr;
  EXPECT_EQ(get("ImageServicesDialog", byName), result::ok);
  get(identityOf("ImageServicesDialog"), factory);
  EXPECT_EQ(byName, factory);
}

TEST_F(GettingClassObjects, GivesTheSameFactoryEachTime) {
  const ClassFactory* again = nullptr;
  get(identityOf("ImageServicesDialog"), factory);
  get(identityOf("ImageServicesDialog"), again);
  EXPECT_EQ(factory, again);
}

TEST_F(GettingClassObjects, KnowsNoOtherIdentity) {
  for (const char* const identity : {"", "{}", "{00000000-0000-0000-0000-000000000000}", "nonsense"}) {
    get(identityOf("ImageServicesDialog"), factory);
    EXPECT_EQ(get(identity, factory), result::classNotAvailable) << identity;
    EXPECT_EQ(factory, nullptr);
  }
}

TEST_F(GettingClassObjects, GivesNoFactoryOfTheHelperClasses) {
  EXPECT_EQ(get(identityOf("ServiceFolders"), factory), result::classNotAvailable);
  EXPECT_EQ(get(identityOf("Envelope"), factory), result::classNotAvailable);
  EXPECT_EQ(factory, nullptr);
}

TEST_F(GettingClassObjects, RefusesNullPointers) {
  EXPECT_EQ(DllGetClassObject(nullptr, &factory), result::invalidPointer);
  EXPECT_EQ(DllGetClassObject(std::string(identityOf("ImageServicesDialog")).c_str(), nullptr),
            result::invalidPointer);
  EXPECT_EQ(DllGetClassObject(nullptr, nullptr), result::invalidPointer);
}

TEST_F(GettingClassObjects, NeedsNoPlatformButMakingAnObjectDoes) {
  setPlatform(nullptr);
  ASSERT_EQ(get(identityOf("ImageServicesDialog"), factory), result::ok);
  EXPECT_THROW(static_cast<void>(factory->CreateInstance()), RuntimeFailure);
}

TEST_F(LibraryUnloading, IsAllowedWhileNoObjectLives) {
  ASSERT_EQ(DllCanUnloadNow(), result::ok);
  ObjectPtr dialog = createObject("ImageServicesDialog");
  EXPECT_EQ(DllCanUnloadNow(), result::no);
  ObjectPtr control = createObject("ImageServicesControl");
  dialog.reset();
  EXPECT_EQ(DllCanUnloadNow(), result::no);
  control.reset();
  EXPECT_EQ(DllCanUnloadNow(), result::ok);
}

TEST_F(LibraryUnloading, IsRefusedWhileAnInterfaceKeepsItsObjectAlive) {
  ObjectPtr dialog = createObject("ImageServicesDialog");
  auto older = queryInterface<IImageServicesDialog>(dialog);
  dialog.reset();
  EXPECT_EQ(DllCanUnloadNow(), result::no);
  auto newer = queryInterface<IOVLImageServicesDialog>(older);
  older.reset();
  EXPECT_EQ(DllCanUnloadNow(), result::no);
  newer.reset();
  EXPECT_EQ(DllCanUnloadNow(), result::ok);
}

TEST_F(LibraryUnloading, IsAllowedWhileOnlyAFactoryIsHeld) {
  const ClassFactory* factory = nullptr;
  DllGetClassObject(std::string(findPublicClass("ImageServicesDialog")->classIdentity).c_str(), &factory);
  EXPECT_EQ(DllCanUnloadNow(), result::ok);
}

TEST_F(LibraryUnloading, IsRefusedWhileTheServerIsLocked) {
  ClassFactory::LockServer(true);
  ClassFactory::LockServer(true);
  ClassFactory::LockServer(false);
  EXPECT_EQ(DllCanUnloadNow(), result::no);
  ClassFactory::LockServer(false);
  EXPECT_EQ(DllCanUnloadNow(), result::ok);
  ClassFactory::LockServer(false);
  EXPECT_EQ(DllCanUnloadNow(), result::ok);
}

}  // namespace
}  // namespace vlclientui::test
