#pragma once

#include <stdexcept>
#include <string>

#pragma GCC visibility push(default)
namespace vlclientui {

/// What went wrong, in the terms that callers decide by. Most callers only pass the description on.
enum class FailureKind {
  General,        ///< anything that has no kind of its own
  TypeMismatch,   ///< a text that cannot be converted, an object of the wrong kind
  Overflow,       ///< a number outside the range of its target
  MissingObject,  ///< a call on a missing object
  InvalidIndex,   ///< a list position or an entry that does not exist
  DivisionByZero  ///< a number divided by zero
};

/// The one exception that crosses a contract. The operation that is told to end on a failure catches it at
/// its edge; what it had done by then stays done.
class RuntimeFailure : public std::runtime_error {
 public:
  /// @param description a text for a person. @param kind what callers decide by.
  explicit RuntimeFailure(const std::string& description, FailureKind kind = FailureKind::General);

  /// A text for a person, without a trailing full stop being guaranteed.
  [[nodiscard]] std::string description() const { return what(); }
  /// What callers decide by.
  [[nodiscard]] FailureKind kind() const { return kind_; }

 private:
  FailureKind kind_;
};

/// @throws RuntimeFailure (TypeMismatch) always. @param what names the value that could not be converted.
[[noreturn]] void failTypeMismatch(const std::string& what);
/// @throws RuntimeFailure (Overflow) always.
[[noreturn]] void failOverflow(const std::string& what);
/// @throws RuntimeFailure (MissingObject) always. @param what names the object that is not there.
[[noreturn]] void failMissingObject(const std::string& what);

}  // namespace vlclientui
#pragma GCC visibility pop
