#include "library/ClassFactory.h"

#include <gmock/gmock.h>

#include "frame/LiveObjects.h"
#include "selection/ImageServicesControl.h"
#include "selection/ImageServicesDialog.h"
#include "support/FramePlatform.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;

class ClassFactories : public FramePlatform {
 protected:
  /// The text of the failure of an object that cannot be made.
  static std::string refusal(std::string_view name) {
    try {
      static_cast<void>(createObject(name));
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return "no failure";
  }
};

class DialogObject : public ClassFactories {
 protected:
  ObjectPtr object = createObject("ImageServicesDialog");
};

TEST_F(ClassFactories, MakeObjectsByNameAndByIdentity) {
  for (const char* const name : {"ImageServicesControl", "ServicePropertiesDialog", "ImageServicesDialog",
                                 "ExportDialog", "ExportControl"}) {
    EXPECT_EQ(createObject(name)->typeName(), name);
    EXPECT_EQ(createObject(findPublicClass(name)->classIdentity)->typeName(), name);
  }
}

TEST_F(ClassFactories, MakeANewObjectEachTime) {
  EXPECT_NE(createObject("ImageServicesDialog")->identity(), createObject("ImageServicesDialog")->identity());
}

TEST_F(ClassFactories, RefuseWithAClearErrorWithoutAPlatform) {
  setPlatform(nullptr);
  EXPECT_THAT(refusal("ImageServicesDialog"), HasSubstr("ImageServicesDialog"));
  EXPECT_THAT(refusal("ImageServicesDialog"), HasSubstr("host::start"));
  EXPECT_EQ(liveObjectCount(), 0);
}

TEST_F(ClassFactories, RefuseWhileThePlatformLacksAnAdapter) {
  Platform incomplete = adapters();
  incomplete.toolkit.reset();
  setPlatform(std::make_shared<Platform>(incomplete));
  EXPECT_THAT(refusal("ImageServicesDialog"), HasSubstr("platform"));
}

TEST_F(ClassFactories, MakeEveryPublicClassButTheHelpers) {
  for (const PublicClass& entry : publicClasses()) {
    const bool creatable = entry.kind != ClassKind::HelperClass;
    EXPECT_EQ(findClassFactory(entry.classIdentity) != nullptr, creatable) << entry.name;
  }
}

TEST_F(ClassFactories, MakeObjectsWithAllInterfacesThatTheirClassesName) {
  for (const PublicClass& entry : publicClasses()) {
    if (entry.kind == ClassKind::HelperClass) continue;
    const ObjectPtr made = createObject(entry.name);
    EXPECT_TRUE(made->queryInterface(entry.defaultInterface)) << entry.defaultInterface;
    for (const std::string_view name : entry.furtherInterfaces) {
      EXPECT_TRUE(name.empty() || made->queryInterface(name)) << name;
    }
  }
}

TEST_F(ClassFactories, RefuseTheHelperClasses) {
  EXPECT_THAT(refusal("ServiceFolders"), HasSubstr("'ServiceFolders'"));
  EXPECT_THAT(refusal("Envelope"), HasSubstr("'Envelope'"));
  EXPECT_EQ(findClassFactory("ServiceFolders"), nullptr);
  EXPECT_EQ(findClassFactory("Envelope"), nullptr);
}

TEST_F(ClassFactories, RefuseClassesThatAreNotPublic) {
  EXPECT_THAT(refusal("ImageServicesDialogForm"), HasSubstr("'ImageServicesDialogForm'"));
  EXPECT_THAT(refusal(""), HasSubstr("''"));
}

TEST_F(ClassFactories, DescribeTheirClass) {
  const ClassFactory* const factory = findClassFactory("ImageServicesDialog");
  ASSERT_TRUE(factory);
  EXPECT_EQ(factory->description().defaultInterface, "_ImageServicesDialog");
}

TEST_F(DialogObject, GivesItsDefaultInterfaceWithItsFields) {
  const auto* const fields =
      dynamic_cast<const ImageServicesDialog*>(object->queryInterface("_ImageServicesDialog"));
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->myClient, nullptr);
  EXPECT_EQ(fields->myOVLClient, nullptr);
  EXPECT_FALSE(fields->myOVLClientInitialized);
  EXPECT_FALSE(fields->InitSucceed);
}

TEST_F(DialogObject, GivesAllInterfacesThatItsClassNames) {
  const PublicClass& description = *findPublicClass("ImageServicesDialog");
  EXPECT_TRUE(object->queryInterface(description.defaultInterface));
  for (const std::string_view name : description.furtherInterfaces) {
    EXPECT_TRUE(name.empty() || object->queryInterface(name)) << name;
  }
  EXPECT_FALSE(object->queryInterface("IExportImageDialog"));
  EXPECT_FALSE(object->queryInterface(""));
}

TEST_F(DialogObject, SharesItsIdentityAmongItsInterfaces) {
  const auto older = queryInterface<IImageServicesDialog>(object);
  const auto newer = queryInterface<IOVLImageServicesDialog>(object);
  EXPECT_EQ(older->identity(), object->identity());
  EXPECT_EQ(newer->identity(), object->identity());
  EXPECT_EQ(newer->typeName(), "ImageServicesDialog");
}

TEST_F(DialogObject, GivesEachInterfaceFromTheOther) {
  const ObjectPtr older = queryInterface<IImageServicesDialog>(object);
  const ObjectPtr newer = queryInterface<IOVLImageServicesDialog>(older);
  EXPECT_EQ(queryInterface<IImageServicesDialog>(newer), older);
  EXPECT_EQ(newer->queryInterface("_ImageServicesDialog"), object.get());
}

TEST_F(DialogObject, IsKeptAliveByAnyInterface) {
  auto newer = queryInterface<IOVLImageServicesDialog>(object);
  object.reset();
  EXPECT_EQ(liveObjectCount(), 1);
  EXPECT_EQ(newer->GetSelectedServices(), "");
  newer.reset();
  EXPECT_EQ(liveObjectCount(), 0);
}

TEST_F(DialogObject, SharesItsStateAmongItsInterfaces) {
  const auto older = queryInterface<IImageServicesDialog>(object);
  const auto newer = queryInterface<IOVLImageServicesDialog>(object);
  EXPECT_EQ(newer->Init("", nullptr), boolean16False);
  EXPECT_EQ(older->Status(), newer->Status());
  EXPECT_THAT(older->Status(), HasSubstr("does not exist"));
}

TEST_F(DialogObject, SharesItsStatusWithOthersOfItsClassOnTheThread) {
  const auto first = queryInterface<IImageServicesDialog>(object);
  const auto second = queryInterface<IImageServicesDialog>(createObject("ImageServicesDialog"));
  EXPECT_EQ(first->ShowDialog(), boolean16False);
  EXPECT_EQ(first->Status(), "Cannot show without initializing the object");
  EXPECT_EQ(second->Init("", nullptr), boolean16False);
  EXPECT_EQ(first->Status(), second->Status());
  EXPECT_THAT(first->Status(), HasSubstr("does not exist"));
}

TEST_F(DialogObject, HoldsTheLongTextUntilAShowIsTried) {
  const auto dialog = queryInterface<IImageServicesDialog>(object);
  EXPECT_EQ(dialog->Init("", nullptr), boolean16False);
  EXPECT_EQ(dialog->Status(), "Initialization failed. File 'C:\\Program\\VLClient.XADef' does not exist.");
  EXPECT_EQ(dialog->ShowDialogEx("<a/>"), boolean16False);
  EXPECT_EQ(dialog->Status(), "Initialization failed");
}

TEST_F(ClassFactories, MakeControlsWithTheirOutgoingEvent) {
  const ObjectPtr object = createObject("ImageServicesControl");
  auto* const control = dynamic_cast<ImageServicesControl*>(object->queryInterface("_ImageServicesControl"));
  ASSERT_TRUE(control);
  EXPECT_EQ(control->identity(), object->identity());
  int raised = 0;
  control->abc.connect([&] { ++raised; });
  control->abc.raise();
  EXPECT_EQ(raised, 1);
  EXPECT_EQ(control->topForm(), nullptr);
}

}  // namespace
}  // namespace vlclientui::test
