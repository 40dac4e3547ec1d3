#pragma once

#include <memory>
#include <string>
#include <string_view>

#pragma GCC visibility push(default)
namespace vlclientui {

/// Anything that crosses the library's boundary by reference: the library's public objects, their
/// interfaces, and the client objects that a host hands in.
///
/// An object has one identity and one lifetime, shared among its interfaces: a facet reached by
/// queryInterface keeps the whole object alive.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  /// The run-time type name, as callers compare it.
  [[nodiscard]] virtual std::string typeName() const = 0;
  /// The facet of that name, or null. The default knows no interface by name.
  [[nodiscard]] virtual Object* queryInterface(std::string_view /*name*/) { return nullptr; }
  /// The same address for every interface of one object.
  [[nodiscard]] virtual const Object* identity() const { return this; }
};

/// How objects cross the boundary: whoever holds one keeps the object alive, with all of its interfaces.
using ObjectPtr = std::shared_ptr<Object>;

/// The object's interface `Interface`, found by its `interfaceName`; null when the object has none.
template <class Interface>
[[nodiscard]] std::shared_ptr<Interface> queryInterface(const ObjectPtr& object) {
  if (!object) return nullptr;
  auto* facet = dynamic_cast<Interface*>(object->queryInterface(Interface::interfaceName));
  return facet ? std::shared_ptr<Interface>(object, facet) : nullptr;
}

/// The object as an `Interface`: the object itself, or a facet of it. Null when it is neither.
template <class Interface>
[[nodiscard]] std::shared_ptr<Interface> interfaceOf(const ObjectPtr& object) {
  if (auto itself = std::dynamic_pointer_cast<Interface>(object)) return itself;
  return queryInterface<Interface>(object);
}

/// Base of an interface that is a member of its object: identity, type and queries are the object's.
template <class Interface, class Owner>
class Facet : public Interface {
 public:
  /// @param owner the object that this facet is a member of, and that outlives it.
  explicit Facet(Owner& owner) : owner_(owner) {}

  /// That of the owner.
  [[nodiscard]] std::string typeName() const override { return owner_.typeName(); }
  /// Asks the owner.
  [[nodiscard]] Object* queryInterface(std::string_view name) override { return owner_.queryInterface(name); }
  /// That of the owner, so that all facets of one object compare equal.
  [[nodiscard]] const Object* identity() const override { return owner_.identity(); }

 protected:
  /// The object that the facet belongs to.
  [[nodiscard]] Owner& owner() const { return owner_; }

 private:
  Owner& owner_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
