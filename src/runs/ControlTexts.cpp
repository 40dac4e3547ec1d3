#include "runs/ControlTexts.h"

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/PageControls.h"

namespace vlclientui::runs {
namespace {

std::string entriesOf(const Control& control) {
  std::string all;
  if (const auto* const list = dynamic_cast<const EntryControl*>(&control)) {
    for (const std::string& entry : list->entries()) all += (all.empty() ? "" : "\n") + entry;
  } else if (const auto* const report = dynamic_cast<const ReportList*>(&control)) {
    for (const auto& row : report->rows())
      all += (all.empty() ? "" : "\n") + (row.empty() ? std::string() : row.front());
  } else if (const auto* const tree = dynamic_cast<const TreeView*>(&control)) {
    for (const auto& node : tree->nodes()) all += (all.empty() ? "" : "\n") + node.key;
  }
  return all;
}

std::string chosenRows(const ListBox& list) {
  std::string all;
  for (std::size_t i = 0; i < list.count(); ++i) {
    if (list.selected(i)) all += (all.empty() ? "" : "\n") + list.entry(i);
  }
  return all;
}

std::string propertyOf(const Control& control, const std::string& property) {
  if (property == "complaint") return control.complaint();
  if (property == "enabled") return control.enabled() ? "yes" : "no";
  if (property == "visible") return control.visible() ? "yes" : "no";
  if (property == "tip") return control.toolTip();
  if (property == "entries") return entriesOf(control);
  throw RuntimeFailure("a control has no '" + property + "'");
}

}  // namespace

Control* controlNamed(ControlContainer& container, const std::string& name) {
  if (Control* const found = container.findControl(name)) return found;
  for (Control* const control : container.controls()) {
    auto* const hosted = dynamic_cast<HostedControl*>(control);
    if (!hosted) continue;
    if (Control* const found = controlNamed(*hosted, name)) return found;
  }
  return nullptr;
}

std::string textOf(const Control& control) {
  if (const auto* const box = dynamic_cast<const TextBox*>(&control)) return box->text();
  if (const auto* const combo = dynamic_cast<const ComboControl*>(&control)) return combo->text();
  if (const auto* const check = dynamic_cast<const CheckBox*>(&control))
    return check->checked() ? "on" : "off";
  if (const auto* const label = dynamic_cast<const Label*>(&control)) return label->caption();
  if (const auto* const button = dynamic_cast<const Button*>(&control)) return button->caption();
  if (const auto* const list = dynamic_cast<const ListBox*>(&control)) return chosenRows(*list);
  if (const auto* const tabs = dynamic_cast<const TabStrip*>(&control))
    return tabs->selected() ? tabs->selectedCaption() : std::string();
  if (const auto* const tree = dynamic_cast<const TreeView*>(&control)) return tree->selectedKey();
  const auto* const report = dynamic_cast<const ReportList*>(&control);
  if (!report || !report->selected() || report->rows()[*report->selected()].empty()) return {};
  return report->rows()[*report->selected()].front();
}

std::string readIn(Form& form, const std::string& what) {
  if (what == "caption") return form.caption();
  if (what == "notice") return form.notice();
  const auto point = what.find('.');
  const Control* const control = controlNamed(form, what.substr(0, point));
  if (!control)
    throw RuntimeFailure("there is no control '" + what.substr(0, point) + "'; there are " +
                         controlNames(form));
  return point == std::string::npos ? textOf(*control) : propertyOf(*control, what.substr(point + 1));
}

std::string controlNames(const ControlContainer& container) {
  std::string all;
  for (const Control* const control : container.controls()) {
    const auto* const hosted = dynamic_cast<const HostedControl*>(control);
    const std::string names = hosted ? controlNames(*hosted) : control->name();
    if (!names.empty()) all += (all.empty() ? "" : ", ") + names;
  }
  return all;
}

}  // namespace vlclientui::runs
