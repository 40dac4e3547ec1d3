#pragma once

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "contracts/Object.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// What hosts may do with a class: place it on a form, make it by name, or only hold it.
enum class ClassKind {
  Control,               ///< stands on a form of the host
  CreatableGlobalClass,  ///< is made by name
  HelperClass            ///< is only given out by others
};

/// A public class as the type library declares it.
struct PublicClass {
  /// As createObject takes it.
  std::string_view name;
  /// What hosts may do with it.
  ClassKind kind;
  std::string_view classIdentity;  ///< "{8-4-4-4-12}", upper-case hexadecimal, never changes
  /// Name of the interface that scripts see.
  std::string_view defaultInterface;
  std::array<std::string_view, 3> furtherInterfaces;  ///< unused ones are empty
  std::string_view eventInterface;                    ///< empty when the class has no events
  std::string_view event;                             ///< empty when none is declared
};

/// The seven classes, in the type library's order. Their identities stand nowhere else.
[[nodiscard]] std::span<const PublicClass> publicClasses();
/// Null for an unknown name or identity. Identities match in any case.
[[nodiscard]] const PublicClass* findPublicClass(std::string_view nameOrIdentity);

}  // namespace vlclientui
#pragma GCC visibility pop
