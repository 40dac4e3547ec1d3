#include "export/Envelope.h"

#include "documents/NumberText.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

LocaleFormat userLocale() { return currentPlatform().system->localeFormat(); }

std::string shown(double coordinate) { return doubleToText(coordinate, userLocale()); }

double coordinateOf(const std::string& text) {
  const LocaleFormat locale = userLocale();
  return isNumeric(text, locale) ? textToDouble(text, locale) : 0;
}

}  // namespace

std::string Envelope::XMin() const { return shown(xMin_); }
void Envelope::XMin(const std::string& text) { xMin_ = coordinateOf(text); }
std::string Envelope::XMax() const { return shown(xMax_); }
void Envelope::XMax(const std::string& text) { xMax_ = coordinateOf(text); }
std::string Envelope::YMin() const { return shown(yMin_); }
void Envelope::YMin(const std::string& text) { yMin_ = coordinateOf(text); }
std::string Envelope::YMax() const { return shown(yMax_); }
void Envelope::YMax(const std::string& text) { yMax_ = coordinateOf(text); }

Object* Envelope::queryInterface(std::string_view interfaceName) {
  return interfaceName == "_Envelope" ? this : nullptr;
}

std::vector<std::shared_ptr<Envelope>>& customEnvelopes() {
  static std::vector<std::shared_ptr<Envelope>> envelopes;
  return envelopes;
}

}  // namespace vlclientui
