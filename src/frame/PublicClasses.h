#pragma once

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "contracts/Object.h"

namespace vlclientui {

enum class ClassKind { Control, CreatableGlobalClass, HelperClass };

/// A public class as the type library declares it.
struct PublicClass {
  std::string_view name;
  ClassKind kind;
  std::string_view classIdentity;  ///< "{8-4-4-4-12}", upper-case hexadecimal, fixed for ever
  std::string_view defaultInterface;
  std::array<std::string_view, 3> furtherInterfaces;  ///< empty names fill up
  std::string_view eventInterface;                    ///< empty when the class has no events
  std::string_view event;                             ///< empty when none is declared
};

/// The seven classes in the order of the type library. The one place of their identities.
[[nodiscard]] std::span<const PublicClass> publicClasses();
/// Null for a name, or an identity in any case, that is none of ours.
[[nodiscard]] const PublicClass* findPublicClass(std::string_view nameOrIdentity);

}  // namespace vlclientui
