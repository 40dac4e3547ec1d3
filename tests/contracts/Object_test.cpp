#include "contracts/Object.h"

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

struct IFirst : virtual Object {
  static constexpr std::string_view interfaceName = "IFirst";
  virtual int first() = 0;
};

struct ISecond : virtual Object {
  static constexpr std::string_view interfaceName = "ISecond";
  virtual int second() = 0;
};

/// An object with two interfaces that records its destruction.
class Sample : public Object {
 public:
  explicit Sample(bool& alive) : alive_(alive) { alive_ = true; }
  ~Sample() override { alive_ = false; }

  std::string typeName() const override { return "Sample"; }
  Object* queryInterface(std::string_view name) override {
    if (name == IFirst::interfaceName) return &first_;
    if (name == ISecond::interfaceName) return &second_;
    return nullptr;
  }

 private:
  class First : public Facet<IFirst, Sample> {
   public:
    using Facet<IFirst, Sample>::Facet;
    int first() override { return 1; }
  };
  class Second : public Facet<ISecond, Sample> {
   public:
    using Facet<ISecond, Sample>::Facet;
    int second() override { return 2; }
  };

  bool& alive_;
  First first_{*this};
  Second second_{*this};
};

struct IUnknownToIt : virtual Object {
  static constexpr std::string_view interfaceName = "IUnknownToIt";
};

class Objects : public testing::Test {
 protected:
  bool alive = false;
  ObjectPtr object = std::make_shared<Sample>(alive);
};

TEST_F(Objects, GiveTheirInterfacesByName) {
  EXPECT_EQ(queryInterface<IFirst>(object)->first(), 1);
  EXPECT_EQ(queryInterface<ISecond>(object)->second(), 2);
}

TEST_F(Objects, GiveOneInterfaceFromTheOther) {
  const ObjectPtr first = queryInterface<IFirst>(object);
  const ObjectPtr second = queryInterface<ISecond>(first);
  ASSERT_TRUE(second);
  EXPECT_EQ(queryInterface<IFirst>(second), first);
}

TEST_F(Objects, HaveOneIdentityAndOneTypeForAllInterfaces) {
  const auto first = queryInterface<IFirst>(object);
  const auto second = queryInterface<ISecond>(object);
  EXPECT_EQ(first->identity(), object->identity());
  EXPECT_EQ(second->identity(), object->identity());
  EXPECT_EQ(first->typeName(), "Sample");
}

TEST_F(Objects, AreKeptAliveByAnyInterface) {
  auto second = queryInterface<ISecond>(object);
  object.reset();
  EXPECT_TRUE(alive);
  EXPECT_EQ(second->second(), 2);
  second.reset();
  EXPECT_FALSE(alive);
}

TEST_F(Objects, GiveNothingForAnInterfaceThatTheyLack) {
  EXPECT_EQ(queryInterface<IUnknownToIt>(object), nullptr);
  EXPECT_EQ(queryInterface<IFirst>(nullptr), nullptr);
}

}  // namespace
}  // namespace vlclientui
