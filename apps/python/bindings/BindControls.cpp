#include <algorithm>
#include <cctype>

#include <pybind11/stl.h>

#include "Bindings.h"
#include "Windows.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/PageControls.h"
#include "contracts/controls/PictureButton.h"

namespace vlclientui::python {
namespace {

constexpr const char* kindNames[] = {"TextBox",  "TypingCombo",   "DropDown", "ListBox", "CheckBox",
                                     "Button",   "PictureButton", "Label",    "Frame",   "TabStrip",
                                     "TreeView", "ReportList",    "Hosted"};

const char* kindOf(const ControlView& view) {
  return kindNames[static_cast<std::size_t>(view.control()->kind())];
}

std::vector<Text> toTexts(const std::vector<std::string>& texts) {
  std::vector<Text> shown;
  for (const std::string& text : texts) shown.push_back({text});
  return shown;
}

Text textOf(const ControlView& view) {
  const auto control = view.control();
  if (const auto* const box = dynamic_cast<const TextBox*>(control.get())) return {box->text()};
  if (const auto* const combo = dynamic_cast<const ComboControl*>(control.get())) return {combo->text()};
  if (const auto* const label = dynamic_cast<const Label*>(control.get())) return {label->caption()};
  if (const auto* const button = dynamic_cast<const Button*>(control.get())) return {button->caption()};
  if (const auto* const check = dynamic_cast<const CheckBox*>(control.get())) return {check->caption()};
  if (const auto* const frame = dynamic_cast<const Frame*>(control.get())) return {frame->caption()};
  return {view.as<TabStrip>("tell a text")->selectedCaption()};
}

/// Rows of a list or a report, entries of a list, captions of tabs, texts of a tree's nodes.
std::vector<Text> entriesOf(const ControlView& view) {
  const auto control = view.control();
  if (const auto* const list = dynamic_cast<const EntryControl*>(control.get()))
    return toTexts(list->entries());
  if (const auto* const tabs = dynamic_cast<const TabStrip*>(control.get())) return toTexts(tabs->captions());
  std::vector<Text> texts;
  if (const auto* const tree = dynamic_cast<const TreeView*>(control.get())) {
    for (const TreeView::Node& node : tree->nodes()) texts.push_back({node.text});
    return texts;
  }
  for (const auto& row : view.as<ReportList>("list entries")->rows()) texts.push_back({row.front()});
  return texts;
}

std::vector<std::vector<Text>> rowsOf(const ControlView& view) {
  std::vector<std::vector<Text>> rows;
  for (const auto& row : view.as<ReportList>("list rows")->rows()) rows.push_back(toTexts(row));
  return rows;
}

/// Positions of what is selected.
std::vector<std::size_t> selectionOf(const ControlView& view) {
  const auto control = view.control();
  std::vector<std::size_t> found;
  const auto add = [&](const std::optional<std::size_t>& index) {
    if (index) found.push_back(*index);
  };
  if (const auto* const list = dynamic_cast<const ListBox*>(control.get())) {
    for (std::size_t i = 0; i < list->count(); ++i) {
      if (list->selected(i)) found.push_back(i);
    }
  } else if (const auto* const combo = dynamic_cast<const ComboControl*>(control.get())) {
    add(combo->index());
  } else if (const auto* const tabs = dynamic_cast<const TabStrip*>(control.get())) {
    add(tabs->selected());
  } else if (const auto* const tree = dynamic_cast<const TreeView*>(control.get())) {
    const auto node = std::ranges::find(tree->nodes(), tree->selectedKey(), &TreeView::Node::key);
    if (node != tree->nodes().end()) found.push_back(static_cast<std::size_t>(node - tree->nodes().begin()));
  } else {
    add(view.as<ReportList>("be selected in")->selected());
  }
  return found;
}

/// Fields of pages in the window lose the focus first, as when a person moves on.
void leavePages(const Window& window) {
  for (const Page& page : window.pages()) {
    if (page.isOpen()) page.surface().userLeavesField();
  }
}

/// A person's act on a control.
template <class Act>
void act(const ControlView& view, Act&& perform) {
  static_cast<void>(view.control());
  released([&] {
    leavePages(view.window());
    perform();
  });
}

void click(const ControlView& view) {
  act(view, [&] {
    const auto control = view.control();
    if (auto* const check = dynamic_cast<CheckBox*>(control.get())) return check->userClicks();
    view.as<Button>("be clicked")->userClicks();
  });
}

/// Keys of a text, as they are numbered; a text that is deleted takes one key, too.
void pressKeys(Control& control, const std::string& text) {
  constexpr std::int32_t deleteKey = 46;
  if (text.empty()) control.userPresses(deleteKey);
  for (const char typed : text) {
    const auto key = static_cast<unsigned char>(typed);
    if (key >= ' ' && key < 0x7F) control.userPresses(std::toupper(key));
  }
}

void typeText(const ControlView& view, const Text& text) {
  act(view, [&] {
    const auto control = view.control();
    auto* const combo = dynamic_cast<TypingCombo*>(control.get());
    const auto box = combo == nullptr ? view.as<TextBox>("be typed into") : nullptr;
    control->userFocuses();
    pressKeys(*control, text.utf8);
    if (combo != nullptr) return combo->userTypes(text.utf8);
    box->userTypes(text.utf8);
  });
}

/// @throws RuntimeFailure (InvalidIndex) where there is no such entry.
void checkEntry(const ControlView& view, std::size_t index, std::size_t count) {
  if (index < count) return;
  throw RuntimeFailure(view.name() + " has no entry " + std::to_string(index), FailureKind::InvalidIndex);
}

void selectAt(const ControlView& view, std::size_t index) {
  act(view, [&] {
    const auto control = view.control();
    checkEntry(view, index, entriesOf(view).size());
    control->userFocuses();
    if (auto* const combo = dynamic_cast<ComboControl*>(control.get())) return combo->userSelects(index);
    if (auto* const list = dynamic_cast<ListBox*>(control.get())) return list->userSelects({index});
    if (auto* const tabs = dynamic_cast<TabStrip*>(control.get())) return tabs->userSelects(index);
    if (auto* const tree = dynamic_cast<TreeView*>(control.get())) {
      return tree->userSelects(std::string(tree->nodes()[index].key));
    }
    view.as<ReportList>("be selected in")->userSelects(index);
  });
}

void selectText(const ControlView& view, const Text& entry) {
  const auto entries = entriesOf(view);
  const auto found = std::ranges::find(entries, entry.utf8, &Text::utf8);
  if (found == entries.end()) {
    throw RuntimeFailure(view.name() + " has no entry '" + entry.utf8 + "'", FailureKind::InvalidIndex);
  }
  selectAt(view, static_cast<std::size_t>(found - entries.begin()));
}

void selectRows(const ControlView& view, const std::vector<std::size_t>& indexes) {
  act(view, [&] {
    const auto list = view.as<ListBox>("have several rows selected");
    for (const std::size_t index : indexes) checkEntry(view, index, list->count());
    list->userFocuses();
    list->userSelects(indexes);
  });
}

bool press(const ControlView& view, std::int32_t keyCode, std::int32_t shift) {
  bool isUsed = false;
  act(view, [&] { isUsed = view.control()->userPresses(keyCode, shift); });
  return isUsed;
}

bool isMarked(const ControlView& view) {
  const auto control = view.control();
  if (const auto* const check = dynamic_cast<const CheckBox*>(control.get())) return check->checked();
  return view.as<PictureButton>("be marked")->marked();
}

void bindState(py::class_<ControlView>& control) {
  control
      .def_property_readonly(
          "name", [](const ControlView& self) { return Text{self.name()}; }, "str: its name.")
      .def_property_readonly("kind", &kindOf, "str: TextBox, DropDown, Button and so on.")
      .def_property_readonly("text", &textOf,
                             "str: what it shows: its text, its caption, the caption of its tab on top.")
      .def_property_readonly(
          "enabled", [](const ControlView& self) { return self.control()->enabled(); },
          "bool: whether it takes input.")
      .def_property_readonly(
          "visible", [](const ControlView& self) { return self.control()->visible(); },
          "bool: whether it shows.")
      .def_property_readonly(
          "focused", [](const ControlView& self) { return self.control()->hasFocus(); },
          "bool: whether it has the focus.")
      .def_property_readonly(
          "tool_tip", [](const ControlView& self) { return Text{self.control()->toolTip()}; },
          "str: its tool tip.")
      .def_property_readonly(
          "complaint", [](const ControlView& self) { return Text{self.control()->complaint()}; },
          "str: what is wrong with its value; empty when all is well.")
      .def_property_readonly(
          "is_red", [](const ControlView& self) { return self.control()->textColor() == TextColor::Red; },
          "bool: whether its text is red.")
      .def_property_readonly("entries", &entriesOf,
                             "list[str]: entries, tabs, nodes, or the first column of rows.")
      .def_property_readonly("rows", &rowsOf, "list[list[str]]: all columns of a report.")
      .def_property_readonly("selection", &selectionOf, "list[int]: positions of what is selected.")
      .def_property_readonly("marked", &isMarked,
                             "bool: whether a check box is checked, a picture button marked.");
}

void bindActs(py::class_<ControlView>& control) {
  control
      .def(
          "focus", [](const ControlView& self) { act(self, [&] { self.control()->userFocuses(); }); },
          "Moves the focus here, as a person does.")
      .def("click", &click,
           "Clicks it.\n\nRaises:\n    RuntimeFailure: for a control that cannot be clicked.")
      .def("type", &typeText, py::arg("text"),
           "Moves here and replaces the text.\n\nRaises:\n    RuntimeFailure: for a control without a text "
           "to edit.")
      .def("select", &selectAt, py::arg("entry"))
      .def("select", &selectText, py::arg("entry"))
      .def("select", &selectRows, py::arg("entry"),
           "Picks an entry, a tab, a node or a row.\n\n"
           "Args:\n    entry: its text, its position from 0, or several positions of a list box.\n"
           "Raises:\n    RuntimeFailure: where there is no such entry.")
      .def("press", &press, py::arg("key_code"), py::arg("shift") = 0,
           "Presses a key here.\n\nArgs:\n    key_code: 13 Enter, 27 Escape, 112 F1, letters as capitals.\n"
           "    shift: the sum of 1 Shift, 2 Ctrl and 4 Alt.\nReturns:\n    bool: whether a click used it "
           "up.");
}

std::optional<ControlView> focusedIn(const Window& window) {
  const Control* const focused = window.form()->focusedControl();
  return focused == nullptr ? std::nullopt : std::optional(ControlView(window, focused->name()));
}

template <class Act>
auto actIn(Act act) {
  return [act](const Window& self) {
    const auto form = self.form();
    return released([&] {
      leavePages(self);
      return act(*form);
    });
  };
}

void bindWindow(py::class_<Window>& window) {
  window
      .def_property_readonly(
          "name", [](const Window& self) { return Text{self.form()->formName()}; },
          "str: the name of its form.")
      .def_property_readonly(
          "caption", [](const Window& self) { return Text{self.form()->caption()}; }, "str: its caption.")
      .def_property_readonly(
          "notice", [](const Window& self) { return Text{self.form()->notice()}; },
          "str: why the last click did nothing; empty for nothing.")
      .def_property_readonly("is_open", &Window::isOpen, "bool: whether it has not closed.")
      .def_property_readonly("controls", &Window::controls, "list[Control]: all, in the order of Tab.")
      .def_property_readonly("focused", &focusedIn, "Control | None: which one has the focus.")
      .def_property_readonly("pages", &Window::pages, "list[Page]: pages of the form engine that show.")
      .def(
          "control", [](const Window& self, const Text& name) { return self.control(name.utf8); },
          py::arg("name"), "A control by its name.\n\nRaises:\n    RuntimeFailure: when there is none.")
      .def(
          "__getitem__", [](const Window& self, const Text& name) { return self.control(name.utf8); },
          py::arg("name"))
      .def("close", actIn([](Form& form) { form.userCloses(); }), "Closes it by its frame.")
      .def("press_enter", actIn([](Form& form) { return form.userPressesEnter(); }),
           "Presses Enter.\n\nReturns:\n    bool: whether there is a default button.")
      .def("press_escape", actIn([](Form& form) { return form.userPressesEscape(); }),
           "Presses Escape.\n\nReturns:\n    bool: whether there is a cancel button.")
      .def(
          "save_picture",
          [](const Window& self, const PathText& file) {
            const auto form = self.form();
            released([&] { self.session()->desktop().savePicture(*form, file.native); });
          },
          py::arg("file"),
          "Writes how it looks to an image file.\n\nRaises:\n    RuntimeFailure: without real windows, or "
          "when it cannot be written.")
      .def("enter", actIn([](Form& form) { form.userEnters(); }),
           "Moves the focus into the window from outside.")
      .def("leave", actIn([](Form& form) { form.userLeaves(); }), "Moves the focus out to another window.");
}

}  // namespace

void bindControls(py::module_& module) {
  py::class_<Window> window(module, "Window",
                            "An open window. Every use of one that has closed raises RuntimeFailure.");
  py::class_<ControlView> control(module, "Control", "A control of an open window, by its name.");
  bindWindow(window);
  bindState(control);
  bindActs(control);
}

}  // namespace vlclientui::python
