#pragma once

#include "Objects.h"
#include "properties/ServicePropertiesDialog.h"

namespace vlclientui::python {

/// @throws RuntimeFailure (TypeMismatch) for an object of another class.
[[nodiscard]] ServicePropertiesDialog& propertiesDialogOf(const PublicObject& object);

}  // namespace vlclientui::python
