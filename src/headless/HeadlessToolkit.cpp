#include "headless/HeadlessToolkit.h"

#include <utility>

namespace vlclientui::headless {

namespace {

/// The front of the queue, taken off; nothing when it is empty.
template <class Value>
std::optional<Value> takeNext(std::deque<Value>& queue) {
  if (queue.empty()) return std::nullopt;
  std::optional<Value> next(std::move(queue.front()));
  queue.pop_front();
  return next;
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
  return takeNext(fileChoices_);
}

std::optional<std::string> HeadlessToolkit::saveFile(const FileDialog& dialog) {
  saveDialogs_.push_back(dialog);
  return takeNext(fileChoices_);
}

std::optional<FolderChoice> HeadlessToolkit::browseForFolder(const FolderDialog& dialog) {
  folderDialogs_.push_back(dialog);
  return takeNext(folderChoices_);
}

void HeadlessToolkit::setPointer(Pointer pointer) { pointers_.push_back(pointer); }

void HeadlessToolkit::letPendingEventsRun() {
  if (pendingEvents_) pendingEvents_();
}

void HeadlessToolkit::createView(Form& form) {
  const WindowHandle window = addWindow(0, form.caption());
  formWindows_[&form] = window;
  for (Control* const control : form.controls()) {
    if (auto* const hosted = dynamic_cast<HostedControl*>(control)) {
      controlWindows_[hosted] = addWindow(window, "");
    }
  }
}

void HeadlessToolkit::destroyView(Form& form) {
  const auto window = formWindows_.find(&form);
  if (window == formWindows_.end()) return;
  const WindowHandle handle = window->second;
  for (Control* const control : form.controls()) controlWindows_.erase(dynamic_cast<HostedControl*>(control));
  formWindows_.erase(window);
  removeWindow(handle);
}

void HeadlessToolkit::runModal(Form& form) {
  form.windowAppeared();
  const auto script = takeNext(scripts_);
  // A handler may have unloaded the form as it appeared; then nobody sees a window to act on.
  if (script && form.loaded()) (*script)(form);
  if (form.loaded()) form.userCloses();
}

WindowHandle HeadlessToolkit::windowOf(const HostedControl& control) {
  const auto found = controlWindows_.find(&control);
  return found == controlWindows_.end() ? 0 : found->second;
}

std::vector<WindowHandle> HeadlessToolkit::childWindows(WindowHandle window) {
  std::vector<WindowHandle> children;
  // The last one made lies on top.
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

WindowHandle HeadlessToolkit::addChildWindow(WindowHandle parent, const std::string& title) {
  return hasWindow(parent) ? addWindow(parent, title) : 0;
}

WindowHandle HeadlessToolkit::addWindow(WindowHandle parent, const std::string& title) {
  windows_[++lastHandle_] = {parent, title, true};
  return lastHandle_;
}

void HeadlessToolkit::removeWindow(WindowHandle window) {
  for (const WindowHandle child : childWindows(window)) removeWindow(child);
  windows_.erase(window);
}

}  // namespace vlclientui::headless
