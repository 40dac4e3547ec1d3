#include <string>

#include "documents/NumberText.h"
#include "documents/TextCase.h"
#include "export/BoxNumbers.h"
#include "export/Complaints.h"
#include "export/ExportControl.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

// What a person may enter. Leaving a box whose text is not a number shows a message and restores the saved
// text; nothing is recalculated. A number that cannot be exported stays in its box in red, and OK shows its
// complaint.

namespace vlclientui {

namespace {

constexpr std::size_t customExtentEntry = 2;
constexpr double bestQuality = 100;
constexpr const char* qualityText = "The compression factor cannot be more than 100 and less than 0.";

bool isOneModifierAlone(std::int32_t shift) {
  return shift == keyModifier::shift || shift == keyModifier::control || shift == keyModifier::alt;
}

}  // namespace

void ExportControl::saveText(const Field& field) {
  endsQuietly([&] {
    const std::string& text = field.box.text();
    if (field.onFocus == OnFocus::SavesText) field.saved = text;
    if (field.onFocus == OnFocus::SavesTrimmed) field.saved = trimmedBlanks(text);
  });
}

void ExportControl::leave(const Field& field) {
  endsQuietly([&] {
    if (refuses(field)) return;
    if (field.decimalPoint == DecimalPoint::Converted) toUsersSeparator(field.box);
    (this->*field.afterChecks)(field);
  });
}

bool ExportControl::refuses(const Field& field) {
  const std::string& text = field.box.text();
  if (text.empty() || isNumeric(text, currentPlatform().system->localeFormat())) return false;
  callOut(currentPlatform().toolkit)
      ->showMessage(
          {"Cannot enter characters", "Export Properties", MessageIcon::Exclamation, MessageButtons::Ok});
  field.box.setText(field.saved);
  return true;
}

bool ExportControl::changed(const Field& field) { return trimmedBlanks(field.box.text()) != field.saved; }

void ExportControl::checkCount(const Direction& direction) {
  TextBox& box = direction.count;
  if (direction.maxCount == 0) return;
  const std::string limit = std::to_string(direction.maxCount);
  const std::string unit = direction.countUnit;
  if (numberOf(box) > direction.maxCount) {
    box.setTextColor(TextColor::Red);
    complain(box, direction.countComplaint,
             "Number of " + unit + " cannot be more than the maximum " + unit + " allowed. [Max. " + unit +
                 " allowed: " + limit + "]");
    box.setToolTip("Maximum number of " + unit + " allowed is " + limit + ".");
  } else {
    box.setTextColor(TextColor::Normal);
    box.setToolTip(direction.countToolTip);
    complain(box, direction.countComplaint, "");
  }
  if (numberOf(box) <= 0) {
    box.setTextColor(TextColor::Red);
    complain(box, direction.countComplaint, direction.countNotPositiveText);
    box.setToolTip(direction.countNotPositiveText);
  }
}

void ExportControl::checkCompression() {
  const double quality = numberOf(uiTxtCompression);
  const bool good = quality >= 0 && quality <= bestQuality;
  uiTxtCompression.setTextColor(good ? TextColor::Normal : TextColor::Red);
  complain(uiTxtCompression, myCompFactorLabel, good ? "" : qualityText);
}

void ExportControl::keyPressedIn(const KeyEvent& key) {
  if (!isOneModifierAlone(key.shift)) switchToCustomExtent();
}

void ExportControl::switchToCustomExtent() {
  // By position: with the standard entries this is "Custom Extent", which loads nothing.
  if (userEditing_) MainCombo.setIndex(customExtentEntry);
}

}  // namespace vlclientui
