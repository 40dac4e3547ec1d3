#pragma once

#include "contracts/Object.h"
#include "frame/PublicClasses.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// Makes objects of one public class. Factories live as long as the library.
class ClassFactory {
 public:
  /// Makes one object; called on the thread that asks for it.
  using Creator = ObjectPtr (*)();

  /// For the library alone. @param description outlives the factory. @param creator never null.
  ClassFactory(const PublicClass& description, Creator creator)
      : description_(description), creator_(creator) {}

  /// Of the class whose objects it makes.
  [[nodiscard]] const PublicClass& description() const { return description_; }
  /// @throws RuntimeFailure (MissingObject) while the calling thread has no platform.
  [[nodiscard]] ObjectPtr CreateInstance() const;
  /// Keeps the library in memory without an object; each lock needs an unlock.
  static void LockServer(bool lock);

 private:
  const PublicClass& description_;
  Creator creator_;
};

/// Factories for the classes that a host may create, in the type library's order. Helper classes have none.
[[nodiscard]] const ClassFactory* findClassFactory(std::string_view nameOrIdentity);

/// Makes an object of the class with that name or identity.
/// @throws RuntimeFailure for a class that hosts cannot create, or while the thread has no platform.
[[nodiscard]] ObjectPtr createObject(std::string_view nameOrIdentity);

}  // namespace vlclientui
#pragma GCC visibility pop
