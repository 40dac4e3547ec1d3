#include "frame/HeldService.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "support/FakeImageService.h"

namespace vlclientui {
namespace {

class SomethingElse : public Object {
 public:
  [[nodiscard]] std::string typeName() const override { return "SomethingElse"; }
};

template <class Call>
FailureKind kindOfFailure(Call call) {
  try {
    static_cast<void>(call());
  } catch (const RuntimeFailure& failure) {
    return failure.kind();
  }
  ADD_FAILURE() << "no failure";
  return FailureKind::General;
}

TEST(HeldService, IsTheObjectItself) {
  const auto service = std::make_shared<test::FakeImageService>();
  EXPECT_EQ(imageServiceOf(service), service);
  EXPECT_EQ(imageServiceIfAny(service), service);
}

TEST(HeldService, IsMissingOrNullWithoutAnObject) {
  EXPECT_EQ(kindOfFailure([] { return imageServiceOf(nullptr); }), FailureKind::MissingObject);
  EXPECT_EQ(imageServiceIfAny(nullptr), nullptr);
}

TEST(HeldService, IsNoObjectOfAnotherKind) {
  const auto other = std::make_shared<SomethingElse>();
  EXPECT_EQ(kindOfFailure([&] { return imageServiceOf(other); }), FailureKind::TypeMismatch);
  EXPECT_EQ(kindOfFailure([&] { return imageServiceIfAny(other); }), FailureKind::TypeMismatch);
}

}  // namespace
}  // namespace vlclientui
