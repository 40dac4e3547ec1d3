#include <pybind11/stl.h>

#include "Bindings.h"
#include "Windows.h"
#include "contracts/RuntimeFailure.h"
#include "engine/TreeModel.h"

namespace vlclientui::python {
namespace {

/// One field, as it shows.
struct SeenField {
  Text name;
  Text path;
  Text label;
  Text group;
  Text value;
  Text unit;
  Text complaint;
  bool isEditable;
  std::vector<Text> choices;
};

struct SeenNode {
  std::size_t depth;
  Text name;
  Text value;
};

std::vector<Text> toTexts(const std::vector<std::string>& texts) {
  std::vector<Text> shown;
  for (const std::string& text : texts) shown.push_back({text});
  return shown;
}

std::vector<SeenField> fieldsOf(const Page& page) {
  std::vector<SeenField> seen;
  const auto form = page.surface().form();
  if (!form) return seen;
  for (const engine::FormGroup& group : form->groups) {
    for (const engine::FormField& field : group.fields) {
      if (!field.visible) continue;
      seen.push_back({{field.name},
                      {field.path},
                      {field.label},
                      {group.caption},
                      {field.value},
                      {field.unit},
                      {field.complaint},
                      field.editable(),
                      toTexts(field.allowedValues)});
    }
  }
  return seen;
}

void addNodes(engine::TreeModel& tree, engine::TreeModel::Node node, std::size_t depth,
              std::vector<SeenNode>& seen) {
  seen.push_back({depth, {tree.name(node)}, {tree.value(node)}});
  for (std::size_t child = 0; child < tree.childCount(node); ++child) {
    addNodes(tree, tree.child(node, child), depth + 1, seen);
  }
}

std::vector<SeenNode> treeOf(const Page& page) {
  std::vector<SeenNode> seen;
  if (const auto tree = page.surface().tree()) addNodes(*tree, engine::TreeModel::root, 0, seen);
  return seen;
}

std::vector<Text> columnsOf(const Page& page) {
  std::vector<Text> titles;
  const auto list = page.surface().list();
  if (!list) failMissingObject("the list of the page");
  for (const auto& column : list->columns()) titles.push_back({column.title});
  return titles;
}

/// Where a row is named, or counted.
template <class Act>
void onRow(const Page& page, const std::variant<std::size_t, Text>& row, Act act) {
  released([&] {
    headless::HeadlessSurface& surface = page.turnedTo();
    if (const auto* const name = std::get_if<Text>(&row)) return act(surface, std::string_view(name->utf8));
    act(surface, std::get<std::size_t>(row));
  });
}

template <class Act>
auto acting(Act act) {
  return [act](const Page& self) { released([&] { act(self.turnedTo()); }); };
}

void bindSeen(py::module_& module) {
  py::class_<SeenField>(module, "Field", "A field of a page, as it shows.")
      .def_readonly("name", &SeenField::name, "str: the name of its element.")
      .def_readonly("path", &SeenField::path, "str: names of elements from the page's root, joined by \"/\".")
      .def_readonly("label", &SeenField::label, "str: what stands before it.")
      .def_readonly("group", &SeenField::group, "str: the caption that it stands under; empty for none.")
      .def_readonly("value", &SeenField::value, "str: as shown.")
      .def_readonly("unit", &SeenField::unit, "str: behind the value; empty for none.")
      .def_readonly("complaint", &SeenField::complaint,
                    "str: what is wrong with the value; empty for nothing.")
      .def_readonly("is_editable", &SeenField::isEditable, "bool: whether a person can change it now.")
      .def_readonly("choices", &SeenField::choices, "list[str]: what may be picked; empty for any value.");
  py::class_<SeenNode>(module, "Node", "A node of a page that shows a document as a tree.")
      .def_readonly("depth", &SeenNode::depth, "int: 0 for the document's element.")
      .def_readonly("name", &SeenNode::name, "str: of the element or attribute; empty for a text.")
      .def_readonly("value", &SeenNode::value, "str: its text.");
}

void bindReading(py::class_<Page>& page) {
  page.def_property_readonly("is_open", &Page::isOpen, "bool: whether it still shows.")
      .def_property_readonly("fields", &fieldsOf, "list[Field]: those that show; none on a list or a tree.")
      .def_property_readonly("tree", &treeOf,
                             "list[Node]: in the order of the document; none on other pages.")
      .def_property_readonly(
          "rows", [](const Page& self) { return toTexts(self.surface().rowNames()); },
          "list[str]: the first cell of each row. Raises RuntimeFailure where no list shows.")
      .def_property_readonly("columns", &columnsOf,
                             "list[str]: titles of the columns. Raises RuntimeFailure where no list shows.")
      .def(
          "cells",
          [](const Page& self, const Text& row) { return toTexts(self.surface().rowCells(row.utf8)); },
          py::arg("row"),
          "All cells of the first row of that name.\n\nRaises:\n    RuntimeFailure: without such a row.")
      .def(
          "value",
          [](const Page& self, const Text& field) { return Text{self.surface().fieldText(field.utf8)}; },
          py::arg("field"),
          "What a field shows.\n\nArgs:\n    field: its name, or its path.\nRaises:\n    RuntimeFailure: "
          "without it.");
}

Text setField(const Page& page, const Text& field, const Text& text) {
  return released([&] { return Text{page.turnedTo().userSetsField(field.utf8, text.utf8)}; });
}

void bindFieldActs(py::class_<Page>& page) {
  page.def("set", &setField, py::arg("field"), py::arg("text"),
           "Types into a field, or picks in it, and leaves it.\n\n"
           "Returns:\n    str: the page's complaint; empty when it takes the value.\n"
           "Raises:\n    RuntimeFailure: without such a field or choice, or when it cannot be changed.")
      .def(
          "type",
          [](const Page& self, const Text& field, const Text& text) {
            released([&] { self.turnedTo().userTypes(field.utf8, text.utf8); });
          },
          py::arg("field"), py::arg("text"), "As set, but stays in the field.")
      .def(
          "press",
          [](const Page& self, const Text& button) {
            released([&] { self.turnedTo().userPressesButton(button.utf8); });
          },
          py::arg("button"), "Presses a button of the page.\n\nRaises:\n    RuntimeFailure: without it.");
}

void bindListActs(py::class_<Page>& page) {
  page.def(
          "click_row",
          [](const Page& self, const std::variant<std::size_t, Text>& row) {
            onRow(self, row, [](auto& surface, auto at) { surface.userClicksRow(at); });
          },
          py::arg("row"),
          "Clicks a row.\n\nArgs:\n    row: its name, or its position from 0.\n"
          "Raises:\n    RuntimeFailure: without such a row.")
      .def(
          "double_click_row",
          [](const Page& self, const std::variant<std::size_t, Text>& row) {
            onRow(self, row, [](auto& surface, auto at) { surface.userDoubleClicksRow(at); });
          },
          py::arg("row"), "Double-clicks a row, as click_row.")
      .def("press_enter", acting([](auto& surface) { surface.userPressesEnter(); }),
           "Presses Enter on the row.")
      .def("press_backspace", acting([](auto& surface) { surface.userPressesBackspace(); }),
           "Presses Backspace in the list.");
}

}  // namespace

void bindPages(py::module_& module) {
  bindSeen(module);
  py::class_<Page> page(module, "Page",
                        "A page of the form engine: fields, a list or a tree. Every use of one that\n"
                        "has gone raises RuntimeFailure.");
  bindReading(page);
  bindFieldActs(page);
  bindListActs(page);
}

}  // namespace vlclientui::python
