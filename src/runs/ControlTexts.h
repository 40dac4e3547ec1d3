#pragma once

#include <string>

#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"

namespace vlclientui::runs {

/// The control of that name on the form or on a control that stands there; null without one.
[[nodiscard]] Control* controlNamed(ControlContainer& container, const std::string& name);

/// What a person reads of it: its text, chosen entry, "on" or "off", caption, or chosen tab.
[[nodiscard]] std::string textOf(const Control& control);

/// The same, or behind a point one of "complaint", "enabled", "visible", "tip" and "entries", which have a
/// line end between.
/// @param what of which. @throws RuntimeFailure where there is no such control or property.
[[nodiscard]] std::string readIn(Form& form, const std::string& what);

/// For a person: all names of controls, with commas between.
[[nodiscard]] std::string controlNames(const ControlContainer& container);

}  // namespace vlclientui::runs
