#include "headless/HeadlessToolkit.h"

#include <cmath>
#include <utility>

#include "contracts/Operations.h"

namespace vlclientui::headless {

namespace {

/// Takes the first entry off the queue; nothing when it is empty.
template <class Value>
std::optional<Value> takeNext(std::deque<Value>& queue) {
  if (queue.empty()) return std::nullopt;
  std::optional<Value> next(std::move(queue.front()));
  queue.pop_front();
  return next;
}

bool hasOwnWindow(const Control& control) {
  return control.kind() == ControlKind::Hosted || control.kind() == ControlKind::Frame;
}

MessageAnswer firstButton(MessageButtons buttons) {
  const bool asks = buttons == MessageButtons::YesNo || buttons == MessageButtons::YesNoCancel;
  return asks ? MessageAnswer::Yes : MessageAnswer::Ok;
}

}  // namespace

MessageAnswer HeadlessToolkit::doShowMessage(const MessageBox& box) {
  messages_.push_back(box);
  if (messageListener_) messageListener_(box);
  return takeNext(messageAnswers_).value_or(firstButton(box.buttons));
}

std::optional<std::string> HeadlessToolkit::openFile(const FileDialog& dialog) {
  fileDialogs_.push_back(dialog);
  return chosenFile(dialog, [this] { return takeNext(fileChoices_); });
}

std::optional<std::string> HeadlessToolkit::saveFile(const FileDialog& dialog) {
  saveDialogs_.push_back(dialog);
  return chosenFile(dialog, [this] { return takeNext(fileChoices_); });
}

std::optional<FolderChoice> HeadlessToolkit::browseForFolder(const FolderDialog& dialog) {
  folderDialogs_.push_back(dialog);
  return chosenFolder(dialog, [this] { return takeNext(folderChoices_); });
}

void HeadlessToolkit::setPointer(Pointer pointer) { pointers_.push_back(pointer); }

void HeadlessToolkit::letPendingEventsRun() {
  if (pendingEvents_) pendingEvents_();
}

WindowRect HeadlessToolkit::rectOf(const DesignGeometry& place) const {
  const std::int32_t left = place.left / twipsPerPixelX();
  const std::int32_t top = place.top / twipsPerPixelY();
  return {left, top, left + place.width / twipsPerPixelX(), top + place.height / twipsPerPixelY()};
}

void HeadlessToolkit::createView(Form& form) {
  const WindowHandle window = addWindow(0, form.caption());
  formWindows_[&form] = window;
  windows_[window].form = &form;
  for (Control* const control : form.controls()) {
    if (!hasOwnWindow(*control)) continue;
    const WindowHandle own = controlWindows_[control] = addWindow(window, "");
    windows_[own].rect = rectOf(control->geometry());
  }
}

void HeadlessToolkit::destroyView(Form& form) {
  const auto window = formWindows_.find(&form);
  if (window == formWindows_.end()) return;
  const WindowHandle handle = window->second;
  formWindows_.erase(window);
  removeWindow(handle);
}

void HeadlessToolkit::runModal(Form& form) {
  const WindowHandle window = windowOf(form);
  if (window == 0) return;
  windows_[window].appeared = true;
  form.windowAppeared();
  const auto script = takeNext(scripts_);
  // A handler may have unloaded the form when it appeared; a person would see no window then.
  if (script && form.loaded()) (*script)(form);
  if (form.loaded()) form.userCloses();
}

WindowHandle HeadlessToolkit::windowOf(const Form& form) {
  const auto found = formWindows_.find(&form);
  if (found == formWindows_.end()) return 0;
  if (found->second == 0) createView(*found->first);
  return found->second;
}

std::optional<WindowRect> HeadlessToolkit::windowRect(WindowHandle window) {
  const auto found = windows_.find(window);
  return found == windows_.end() ? std::nullopt : std::optional(placeOf(found->second));
}

/// A form's window lies where its form says, counted from the corner of the window around it.
WindowRect HeadlessToolkit::placeOf(const Window& window) const {
  if (!window.form) return window.rect;
  const auto parent = windows_.find(window.parent);
  const WindowRect origin = parent == windows_.end() ? WindowRect{} : placeOf(parent->second);
  const auto left = static_cast<std::int32_t>(std::lround(window.form->left() / twipsPerPixelX()));
  const auto top = static_cast<std::int32_t>(std::lround(window.form->top() / twipsPerPixelY()));
  return {origin.left + left, origin.top + top, origin.left + left, origin.top + top};
}

std::int32_t HeadlessToolkit::styleOf(WindowHandle window) {
  const auto found = windows_.find(window);
  return found == windows_.end() ? 0 : found->second.style;
}

void HeadlessToolkit::setStyle(WindowHandle window, std::int32_t style) {
  const auto found = windows_.find(window);
  if (found != windows_.end()) found->second.style = style;
}

WindowHandle HeadlessToolkit::setParent(WindowHandle window, WindowHandle parent) {
  const auto found = windows_.find(window);
  if (found == windows_.end() || (parent != 0 && !hasWindow(parent)) || standsIn(parent, window)) return 0;
  found->second.shown = false;
  if (found->second.form) found->second.form->windowLost();
  return std::exchange(found->second.parent, parent);
}

bool HeadlessToolkit::standsIn(WindowHandle window, WindowHandle container) const {
  return window != 0 && (window == container || standsIn(parentOf(window), container));
}

void HeadlessToolkit::showWindow(WindowHandle window, std::int32_t /*mode*/) {
  const auto found = windows_.find(window);
  if (found == windows_.end()) return;
  Window& shown = found->second;
  shown.shown = true;
  if (!shown.form || std::exchange(shown.appeared, true)) return;
  shown.form->windowAppeared(shown.parent == 0 ? Form::FirstFocus::Given : Form::FirstFocus::LeftAlone);
}

WindowHandle HeadlessToolkit::parentOf(WindowHandle window) const {
  const auto found = windows_.find(window);
  return found == windows_.end() ? 0 : found->second.parent;
}

bool HeadlessToolkit::isShown(WindowHandle window) const {
  const auto found = windows_.find(window);
  return found != windows_.end() && found->second.shown;
}

WindowHandle HeadlessToolkit::windowOf(const Control& control) {
  if (const Form* const form = control.form()) static_cast<void>(windowOf(*form));
  const auto found = controlWindows_.find(&control);
  return found == controlWindows_.end() ? 0 : found->second;
}

std::vector<WindowHandle> HeadlessToolkit::childWindows(WindowHandle window) {
  std::vector<WindowHandle> children;
  // The newest one lies on top.
  for (auto entry = windows_.rbegin(); entry != windows_.rend(); ++entry) {
    if (window != 0 && entry->second.parent == window) children.push_back(entry->first);
  }
  return children;
}

std::string HeadlessToolkit::windowTitle(WindowHandle window, std::size_t limit) {
  const auto found = windows_.find(window);
  return found == windows_.end() ? std::string() : found->second.title.substr(0, limit);
}

bool HeadlessToolkit::isWindowEnabled(WindowHandle window) {
  const auto found = windows_.find(window);
  return found != windows_.end() && found->second.enabled;
}

void HeadlessToolkit::enableWindow(WindowHandle window, bool enabled) {
  const auto found = windows_.find(window);
  if (found != windows_.end()) found->second.enabled = enabled;
}

WindowHandle HeadlessToolkit::addHostWindow(const std::string& title, const WindowRect& rect) {
  const WindowHandle window = addWindow(0, title);
  windows_[window].rect = rect;
  return window;
}

WindowHandle HeadlessToolkit::addChildWindow(WindowHandle parent, const std::string& title) {
  return hasWindow(parent) ? addWindow(parent, title) : 0;
}

WindowHandle HeadlessToolkit::addWindow(WindowHandle parent, const std::string& title) {
  Window& window = windows_[++lastHandle_];
  window.parent = parent;
  window.title = title;
  return lastHandle_;
}

void HeadlessToolkit::removeWindow(WindowHandle window) {
  for (const WindowHandle child : childWindows(window)) removeWindow(child);
  std::erase_if(controlWindows_, [window](const auto& entry) { return entry.second == window; });
  const auto found = windows_.find(window);
  if (found == windows_.end()) return;
  // The form is still loaded; 0 marks that it has lost its window.
  for (auto& [form, own] : formWindows_) {
    if (own == window) own = 0;
  }
  Form* const left = found->second.form;
  windows_.erase(found);
  if (left) left->windowGone();
}

}  // namespace vlclientui::headless
