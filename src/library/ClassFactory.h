#pragma once

#include "contracts/Object.h"
#include "frame/PublicClasses.h"

namespace vlclientui {

/// Makes objects of one public class. Factories live as long as the library.
class ClassFactory {
 public:
  using Creator = ObjectPtr (*)();

  ClassFactory(const PublicClass& description, Creator creator)
      : description_(description), creator_(creator) {}

  [[nodiscard]] const PublicClass& description() const { return description_; }
  /// @throws RuntimeFailure (MissingObject) while the calling thread has no platform.
  [[nodiscard]] ObjectPtr CreateInstance() const;
  /// Keeps the library in memory, object or no object; each lock wants its unlock.
  static void LockServer(bool lock);

 private:
  const PublicClass& description_;
  Creator creator_;
};

/// Factories of the classes that a host may create, in the order of the type library. Helper classes have
/// none.
[[nodiscard]] const ClassFactory* findClassFactory(std::string_view nameOrIdentity);

/// A new object of the class, asked by name or identity.
/// @throws RuntimeFailure for a class that hosts cannot create, or while the thread has no platform.
[[nodiscard]] ObjectPtr createObject(std::string_view nameOrIdentity);

}  // namespace vlclientui
