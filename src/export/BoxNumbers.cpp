#include "export/BoxNumbers.h"

#include <cmath>

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {
LocaleFormat userLocale() { return currentPlatform().system->localeFormat(); }
}  // namespace

double numberOf(const TextBox& box) { return textToDouble(box.text(), userLocale()); }

double numberOrZero(const TextBox& box) { return box.text().empty() ? 0 : numberOf(box); }

std::string plainText(double number) {
  if (!std::isfinite(number)) failOverflow("a computed value");
  return doubleToText(number, userLocale());
}

double quotient(double dividend, double divisor) {
  if (divisor == 0) throw RuntimeFailure("a division by zero", FailureKind::DivisionByZero);
  return dividend / divisor;
}

std::string formattedText(const std::string& text, std::string_view picture) {
  const LocaleFormat locale = userLocale();
  return isNumeric(text, locale) ? formatDouble(textToDouble(text, locale), picture, locale) : text;
}

void format(TextBox& box, std::string_view picture) { box.setText(formattedText(box.text(), picture)); }

std::string roundedText(double number, std::string_view picture) {
  const LocaleFormat locale = userLocale();
  return plainText(textToDouble(formatDouble(number, picture, locale), locale));
}

std::string zeroText() { return formatDouble(0, "0.000", userLocale()); }

void writeSize(TextBox& box, double size, std::string_view picture) {
  const std::string plain = plainText(size);
  box.setText(plain == "0" ? zeroText() : formattedText(plain, picture));
}

double documentNumber(const std::string& text) { return textToDouble(text, LocaleFormat{}); }

}  // namespace vlclientui
