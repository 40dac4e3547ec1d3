#include "runs/RunSteps.h"

#include <algorithm>
#include <ranges>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/EntryNames.h"
#include "contracts/controls/PageControls.h"
#include "engine/Engine.h"
#include "runs/ControlTexts.h"

namespace vlclientui::runs {
namespace {

using engine::Engine;

Control& found(Form& form, const std::string& name) {
  Control* const control = controlNamed(form, name);
  if (!control) throw RuntimeFailure("there is no such control; there are " + controlNames(form));
  if (!control->enabled() || !control->visible())
    throw RuntimeFailure(control->visible() ? "it is disabled" : "it is hidden");
  if (!control->acceptsInput()) throw RuntimeFailure("what it stands in takes no input now");
  return *control;
}

/// @returns whether the window still stands: what the box that is left has to say may close it.
bool focus(Control& control) {
  if (!control.hasFocus()) control.userFocuses();
  return control.form() != nullptr;
}

void setCheck(CheckBox& box, const std::string& value) {
  if (value != "on" && value != "off") throw RuntimeFailure("it is set to on or off, not '" + value + "'");
  if (box.checked() != (value == "on")) box.userClicks();
}

void set(Control& control, const std::string& value) {
  if (auto* const check = dynamic_cast<CheckBox*>(&control)) return setCheck(*check, value);
  auto* const box = dynamic_cast<TextBox*>(&control);
  auto* const combo = dynamic_cast<TypingCombo*>(&control);
  if (!box && !combo) throw RuntimeFailure("nothing can be typed into it");
  if (!focus(control)) return;
  box ? box->userTypes(value) : combo->userTypes(value);
}

void chooseRow(ReportList& list, const std::string& wanted) {
  list.userSelects(placeOfEntry(list.firstCells(), wanted));
}

void chooseNode(TreeView& tree, const std::string& wanted) {
  std::vector<std::string> keys;
  for (const auto& node : tree.nodes()) keys.push_back(node.key);
  static_cast<void>(placeOfEntry(keys, wanted));
  tree.userSelects(wanted);
}

void choose(Control& control, const std::vector<std::string>& wanted) {
  if (!focus(control)) return;
  if (auto* const combo = dynamic_cast<ComboControl*>(&control))
    return combo->userSelects(placeOfEntry(combo->entries(), wanted.front()));
  if (auto* const tabs = dynamic_cast<TabStrip*>(&control))
    return tabs->userSelects(placeOfEntry(tabs->captions(), wanted.front()));
  if (auto* const tree = dynamic_cast<TreeView*>(&control)) return chooseNode(*tree, wanted.front());
  if (auto* const report = dynamic_cast<ReportList*>(&control)) return chooseRow(*report, wanted.front());
  auto* const list = dynamic_cast<ListBox*>(&control);
  if (!list) throw RuntimeFailure("it has nothing to choose from");
  std::vector<std::size_t> rows;
  if (wanted == std::vector<std::string>{""} &&
      std::ranges::find(list->entries(), "") == list->entries().end())
    return list->userSelects(rows);
  for (const std::string& each : wanted) rows.push_back(placeOfEntry(list->entries(), each));
  list->userSelects(rows);
}

void pressEnter(Control& control) {
  if (focus(control)) control.userPresses(keyCode::enter);
}

/// Where the focus is.
void pressEnter(Form& form) {
  if (Control* const focused = form.focusedControl()) return pressEnter(*focused);
  if (!form.userPressesEnter())
    throw RuntimeFailure("Enter does nothing here: the window has no default button");
}

void press(Control& control) {
  auto* const button = dynamic_cast<Button*>(&control);
  if (!button) throw RuntimeFailure("it is no button");
  button->userClicks();
}

/// A handler may release the engine.
std::shared_ptr<Engine> engineWith(const std::function<bool(const Engine&)>& has, const std::string& what) {
  const auto& engines = Engine::ofThread();
  const auto newest =
      std::ranges::find_if(engines | std::views::reverse, [&has](const Engine* each) { return has(*each); });
  if (newest == engines.rend()) throw RuntimeFailure("no list or page has " + what);
  return (*newest)->shared_from_this();
}

std::shared_ptr<Engine> engineWithField(const std::string& path) {
  const auto hasField = [&path](const Engine& engine) { return engine.fieldAt(path) != nullptr; };
  auto engine = engineWith(hasField, "a field '" + path + "'");
  const auto* const field = engine->fieldAt(path);
  if (!field->enabled || !field->visible) throw RuntimeFailure("the field cannot be changed");
  return engine;
}

void setField(const std::string& path, const std::string& value) {
  const auto engine = engineWithField(path);
  engine->fieldEdited(path, value);
  engine->fieldLeft(path);
  const auto* const field = engine->fieldAt(path);
  if (field && !field->complaint.empty()) throw RuntimeFailure(field->complaint);
}

void useRow(const RunStatement& statement) {
  const std::string& name = statement.words.front();
  const auto hasRow = [&name](const Engine& engine) { return engine.rowNamed(name).has_value(); };
  const auto engine = engineWith(hasRow, "a row '" + name + "'");
  const std::size_t row = *engine->rowNamed(name);
  engine->rowClicked(row);
  if (statement.verb == "openrow" && engine->rowNamed(name) == row) engine->rowActivated(row);
}

}  // namespace

void doStep(Form& form, const RunStatement& statement, const ToLogicPath& toLogic) {
  const auto& words = statement.words;
  if (!form.acceptsInput()) throw RuntimeFailure("the window takes no input now");
  if (statement.verb == "leave") return form.userFocusesElsewhere();
  if (statement.verb == "close") return form.userCloses();
  if (words.empty()) return pressEnter(form);
  Control& control = found(form, words.front());
  if (statement.verb == "enter") return control.userFocuses();
  if (statement.verb == "return") return pressEnter(control);
  if (statement.verb == "press") return press(control);
  if (statement.verb == "choose") return choose(control, {words.begin() + 1, words.end()});
  set(control, statement.verb == "path" ? toLogic(words[1]) : words[1]);
}

bool isEngineStep(const std::string& verb) {
  return verb == "row" || verb == "openrow" || verb == "back" || verb == "field" || verb == "button";
}

void doEngineStep(const RunStatement& statement) {
  const auto& words = statement.words;
  if (statement.verb == "field") return setField(words[0], words[1]);
  if (statement.verb == "button") return engineWithField(words.front())->buttonPressed(words.front());
  if (statement.verb != "back") return useRow(statement);
  const auto hasRows = [](const Engine& engine) { return engine.showsList(); };
  engineWith(hasRows, "rows")->backspacePressed();
}

}  // namespace vlclientui::runs
