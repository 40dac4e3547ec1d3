#include "contracts/RuntimeFailure.h"

namespace vlclientui {

RuntimeFailure::RuntimeFailure(const std::string& description, FailureKind kind)
    : std::runtime_error(description), kind_(kind) {}

void failTypeMismatch(const std::string& what) {
  throw RuntimeFailure("Type mismatch: " + what, FailureKind::TypeMismatch);
}

void failOverflow(const std::string& what) {
  throw RuntimeFailure("Overflow: " + what, FailureKind::Overflow);
}

void failMissingObject(const std::string& what) {
  throw RuntimeFailure("Object not set: " + what, FailureKind::MissingObject);
}

}  // namespace vlclientui
