#include "support/RecordingToolkit.h"

#include <sstream>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {

namespace {

std::string hexadecimal(std::int32_t value) {
  std::ostringstream text;
  text << "0x" << std::hex << value;
  return text.str();
}

}  // namespace

WindowHandle RecordingToolkit::addNamedWindow(const std::string& name, const WindowRect& rect) {
  const WindowHandle window = addHostWindow(name, rect);
  names_[window] = name;
  return window;
}

void RecordingToolkit::letPendingEventsRun() {
  log("letPendingEventsRun");
  HeadlessToolkit::letPendingEventsRun();
}

void RecordingToolkit::createView(Form& form) {
  HeadlessToolkit::createView(form);
  names_[windowOf(form)] = form.formName();
  log("createView " + form.formName());
}

void RecordingToolkit::destroyView(Form& form) {
  calls.push_back("destroyView " + form.formName());
  if (onCall) onCall(calls.back());
  HeadlessToolkit::destroyView(form);
}

void RecordingToolkit::runModal(Form& form) {
  log("runModal " + form.formName());
  HeadlessToolkit::runModal(form);
}

std::optional<WindowRect> RecordingToolkit::windowRect(WindowHandle window) {
  log("windowRect " + nameOf(window));
  const auto told = rects.find(nameOf(window));
  return told == rects.end() ? HeadlessToolkit::windowRect(window) : told->second;
}

std::int32_t RecordingToolkit::styleOf(WindowHandle window) {
  log("styleOf " + nameOf(window));
  return HeadlessToolkit::styleOf(window);
}

void RecordingToolkit::setStyle(WindowHandle window, std::int32_t style) {
  log("setStyle " + nameOf(window) + " " + hexadecimal(style));
  HeadlessToolkit::setStyle(window, style);
}

WindowHandle RecordingToolkit::setParent(WindowHandle window, WindowHandle parent) {
  log("setParent " + nameOf(window) + " " + nameOf(parent));
  return HeadlessToolkit::setParent(window, parent);
}

void RecordingToolkit::showWindow(WindowHandle window, std::int32_t mode) {
  log("showWindow " + nameOf(window) + " " + std::to_string(mode));
  HeadlessToolkit::showWindow(window, mode);
}

void RecordingToolkit::log(const std::string& call) {
  calls.push_back(call);
  if (onCall) onCall(call);
  if (!failAt.empty() && call.starts_with(failAt)) throw RuntimeFailure("the toolkit fails at " + failAt);
}

std::string RecordingToolkit::nameOf(WindowHandle window) const {
  if (window == 0) return "nothing";
  const auto found = names_.find(window);
  return found == names_.end() ? "unnamed" : found->second;
}

}  // namespace vlclientui::test
