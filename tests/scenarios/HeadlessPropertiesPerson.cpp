#include "scenarios/HeadlessPropertiesPerson.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/PageControls.h"
#include "engine/Engine.h"
#include "properties/ServicePropertiesDialogForm.h"

namespace vlclientui::test {

namespace {

using headless::HeadlessSurface;

enum class Side { Both, Properties, Metadata };

/// On which side of the one-window dialog a control stands; views put it into that side's frame.
Side sideOf(const std::string& name) {
  constexpr std::array both{"myTab",       "Command2",          "uibtnok",
                            "uibtncancel", "ServicePropFrame0", "ServicePropFrame1"};
  if (std::ranges::find(both, name) != both.end()) return Side::Both;
  return name == "SaveAs" ? Side::Properties : Side::Metadata;
}

bool sideShows(const Form& form, Side side) {
  const auto* const window = dynamic_cast<const ServicePropertiesDialogForm*>(&form);
  if (!window || side == Side::Both) return true;
  const Control* const frame =
      form.findControl(side == Side::Properties ? "ServicePropFrame0" : "ServicePropFrame1");
  return frame && frame->visible();
}

std::string nameOf(const engine::FormGroup& group, const engine::FormField& field) {
  return group.caption.empty() ? field.label : group.caption + "/" + field.label;
}

/// The labels of a filter, "label|pattern|label|pattern", as a dialog lists them.
std::string labelsOf(const std::string& filter) {
  std::istringstream parts(filter);
  std::string labels;
  for (std::string label, pattern; std::getline(parts, label, '|') && std::getline(parts, pattern, '|');) {
    label.erase(label.find_last_not_of(' ') + 1);
    labels += (labels.empty() ? "" : ";") + label;
  }
  return labels;
}

std::string shownValue(const engine::FormField& field) {
  if (field.kind == engine::FieldKind::Button) return {};
  return field.value.empty() || field.unit.empty() ? field.value : field.value + " " + field.unit;
}

void addFields(const engine::FormModel& page, std::vector<std::string>& seen) {
  for (const engine::FormGroup& group : page.groups) {
    for (const engine::FormField& field : group.fields) {
      if (field.visible) seen.push_back(nameOf(group, field) + "|" + shownValue(field));
    }
  }
}

}  // namespace

HeadlessPropertiesPerson::HeadlessPropertiesPerson()
    : toolkit_(std::make_shared<headless::HeadlessToolkit>()),
      surfaces_(std::make_shared<headless::HeadlessSurfaceFactory>(
          headless::ChildWindowHooks{[this](WindowHandle parent, const std::string& text) {
                                       return toolkit_->addChildWindow(parent, text);
                                     },
                                     [this](WindowHandle window) { toolkit_->removeWindow(window); }})) {}

void HeadlessPropertiesPerson::equip(Platform& platform) {
  platform.toolkit = toolkit_;
  platform.plexa = std::make_shared<engine::EngineFactory>(platform.xml, surfaces_);
}

WindowHandle HeadlessPropertiesPerson::hostWindow() {
  if (host_ == 0) host_ = toolkit_->addHostWindow("host");
  return host_;
}

Form& HeadlessPropertiesPerson::form() const {
  if (!isOpen(seen_)) throw RuntimeFailure("no window is open");
  return *seen_.form;
}

void HeadlessPropertiesPerson::lookAt(Form& page) {
  if (isOpen(seen_) && seen_.form != &page) {
    leaveFields();
    seen_.form->userLeaves();
  }
  seen_ = seenAs(page);
}

void HeadlessPropertiesPerson::whenWindowAppears(std::function<void()> visit) {
  toolkit_->scriptModal([this, visit = std::move(visit)](Form& form) { run(form, visit); });
}

void HeadlessPropertiesPerson::run(Form& window, const std::function<void()>& visit) {
  const Seen before = std::exchange(seen_, seenAs(window));
  visit();
  if (isOpen(seen_)) seen_.form->userCloses();
  if (isOpen(before)) seen_ = before;
}

void HeadlessPropertiesPerson::click(const std::string& button) {
  leaveFields();
  find<Button>(button).userClicks();
}

void HeadlessPropertiesPerson::clickTab(const std::string& strip, const std::string& caption) {
  auto& tabs = find<TabStrip>(strip);
  const auto found = std::ranges::find(tabs.captions(), caption);
  if (found == tabs.captions().end()) throw RuntimeFailure("no tab " + caption);
  leaveFields();
  tabs.userSelects(static_cast<std::size_t>(found - tabs.captions().begin()));
}

void HeadlessPropertiesPerson::typeField(const std::string& field, const std::string& text) {
  form().userFocusesElsewhere();
  page().userTypes(findField(field).path, text);
}

void HeadlessPropertiesPerson::pickInField(const std::string& field, const std::string& entry) {
  typeField(field, entry);
}

void HeadlessPropertiesPerson::clickField(const std::string& button) {
  form().userFocusesElsewhere();
  page().userPressesButton(findField(button).path);
}

void HeadlessPropertiesPerson::leaveFields() {
  // The field before may have removed surfaces or made new ones.
  const auto surfaces = surfaces_->surfaces();
  for (HeadlessSurface* const surface : surfaces) {
    if (std::ranges::count(surfaces_->surfaces(), surface) == 0) continue;
    if (surface->window() != 0) surface->userLeavesField();
  }
}

std::string HeadlessPropertiesPerson::text(const std::string& name) const {
  const auto& found = find<Control>(name);
  if (const auto* const label = dynamic_cast<const Label*>(&found)) return label->caption();
  return dynamic_cast<const TextBox&>(found).text();
}

std::string HeadlessPropertiesPerson::toolTip(const std::string& name) const {
  return findControl(name).toolTip();
}

bool HeadlessPropertiesPerson::isVisible(const std::string& name) const { return shows(findControl(name)); }

bool HeadlessPropertiesPerson::shows(const Control& control) const {
  return control.visible() && sideShows(form(), sideOf(control.name()));
}

/// A tree stands in the window itself, a page in one of its frames.
bool HeadlessPropertiesPerson::shows(const HeadlessSurface& surface) const {
  if (surface.window() == 0 || !surface.visible()) return false;
  if (surface.parent() == toolkit_->windowOf(form())) return sideShows(form(), Side::Metadata);
  return std::ranges::any_of(form().controls(), [this, &surface](const Control* control) {
    return toolkit_->windowOf(*control) == surface.parent() && shows(*control);
  });
}

std::vector<HeadlessSurface*> HeadlessPropertiesPerson::shownSurfaces() const {
  std::vector<HeadlessSurface*> shown;
  std::ranges::copy_if(surfaces_->surfaces(), std::back_inserter(shown),
                       [this](const HeadlessSurface* surface) { return shows(*surface); });
  return shown;
}

HeadlessSurface& HeadlessPropertiesPerson::page() const {
  for (HeadlessSurface* const surface : shownSurfaces()) {
    if (surface->form()) return *surface;
  }
  throw RuntimeFailure("no page shows");
}

std::vector<std::string> HeadlessPropertiesPerson::fields() const {
  std::vector<std::string> seen;
  for (const HeadlessSurface* const surface : shownSurfaces()) {
    if (surface->form()) addFields(*surface->form(), seen);
  }
  return seen;
}

const engine::FormField& HeadlessPropertiesPerson::findField(const std::string& name) const {
  for (const engine::FormGroup& group : page().form()->groups) {
    for (const engine::FormField& field : group.fields) {
      if (field.visible && nameOf(group, field) == name) return field;
    }
  }
  throw RuntimeFailure("no field " + name);
}

std::vector<std::string> HeadlessPropertiesPerson::entriesOfField(const std::string& field) const {
  return findField(field).allowedValues;
}

bool HeadlessPropertiesPerson::fieldIsOpen(const std::string& field) const {
  const engine::FormField& found = findField(field);
  return found.enabled && !found.readOnly;
}

std::string HeadlessPropertiesPerson::complaint(const std::string& field) const {
  return findField(field).complaint;
}

std::vector<std::string> HeadlessPropertiesPerson::messages() const {
  std::vector<std::string> seen;
  for (const MessageBox& box : toolkit_->messages()) seen.push_back(box.title + "|" + box.text);
  return seen;
}

std::vector<std::string> HeadlessPropertiesPerson::saveDialogs() const {
  std::vector<std::string> seen;
  for (const FileDialog& dialog : toolkit_->saveDialogs()) seen.push_back(labelsOf(dialog.filter));
  return seen;
}

Control& HeadlessPropertiesPerson::findControl(const std::string& name) const {
  Control* const found = form().findControl(name);
  if (!found) throw RuntimeFailure("no control " + name);
  return *found;
}

std::unique_ptr<PropertiesPerson> makePropertiesPerson() {
  return std::make_unique<HeadlessPropertiesPerson>();
}

}  // namespace vlclientui::test
