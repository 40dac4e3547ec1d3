#pragma once

#include <functional>
#include <string>

#include "contracts/controls/Form.h"
#include "runs/RunFile.h"

namespace vlclientui::runs {

/// A native path as the logic writes it.
using ToLogicPath = std::function<std::string(const std::string&)>;

/// Does what a statement says in a window, as a person would. The form may be gone afterwards.
/// @throws RuntimeFailure where a person could not do it: there is no such control, it takes no input, or
/// what is to be chosen is not there. The text names neither line nor window.
void doStep(Form& form, const RunStatement& statement, const ToLogicPath& toLogic);

/// On the newest list or page of a form engine that has the row or field. @throws RuntimeFailure as doStep.
void doEngineStep(const RunStatement& statement);

/// Whether the verb is one of those.
[[nodiscard]] bool isEngineStep(const std::string& verb);

}  // namespace vlclientui::runs
