#include "frame/ThreadState.h"

#include <thread>

#include "support/FramePlatform.h"

namespace vlclientui::test {
namespace {

class ThreadStates : public FramePlatform {};

TEST_F(ThreadStates, AreOnePerThread) {
  threadState().imageServicesDialogStatus = "own";
  threadState().UserDataFolder = "C:\\Own";
  std::thread([] {
    EXPECT_EQ(threadState().imageServicesDialogStatus, "");
    EXPECT_EQ(threadState().UserDataFolder, "");
    EXPECT_EQ(threadState().ClientXADefPath, "");
    EXPECT_EQ(threadState().ClientXfdefPath, "");
    threadState().imageServicesDialogStatus = "other";
  }).join();
  EXPECT_EQ(threadState().imageServicesDialogStatus, "own");
  EXPECT_EQ(threadState().UserDataFolder, "C:\\Own");
}

TEST_F(ThreadStates, HoldThePlatformOfTheirOwnThreadOnly) {
  EXPECT_TRUE(hasPlatform());
  std::thread([this] {
    EXPECT_FALSE(hasPlatform());
    EXPECT_THROW(static_cast<void>(currentPlatform()), RuntimeFailure);
    setPlatform(std::make_shared<Platform>(adapters()));
    EXPECT_TRUE(hasPlatform());
  }).join();
  EXPECT_TRUE(hasPlatform());
}

TEST_F(ThreadStates, LetGoOfThePlatformWhenTheirThreadEnds) {
  std::weak_ptr<const Platform> held;
  std::thread([&] {
    auto made = std::make_shared<Platform>(adapters());
    held = made;
    setPlatform(std::move(made));
    EXPECT_FALSE(held.expired());
  }).join();
  EXPECT_TRUE(held.expired());
}

TEST_F(ThreadStates, GiveThePlatformThatWasSet) {
  EXPECT_EQ(currentPlatform().system, system);
  EXPECT_EQ(currentPlatform().toolkit, toolkit);
}

TEST_F(ThreadStates, HaveNoPlatformAfterNullWasSet) {
  setPlatform(nullptr);
  EXPECT_FALSE(hasPlatform());
  try {
    static_cast<void>(currentPlatform());
    FAIL() << "no failure";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.kind(), FailureKind::MissingObject);
    EXPECT_NE(failure.description().find("platform"), std::string::npos);
  }
}

TEST_F(ThreadStates, TakeAPlatformForNoneWhileAnyAdapterIsMissing) {
  const auto without = [this](auto Platform::*member) {
    Platform incomplete = adapters();
    (incomplete.*member).reset();
    setPlatform(std::make_shared<Platform>(incomplete));
    return !hasPlatform();
  };
  EXPECT_TRUE(without(&Platform::system));
  EXPECT_TRUE(without(&Platform::xml));
  EXPECT_TRUE(without(&Platform::toolkit));
  EXPECT_TRUE(without(&Platform::plexa));
  EXPECT_TRUE(without(&Platform::clientLibrary));
}

}  // namespace
}  // namespace vlclientui::test
