#include "widgets/Mnemonics.h"

#include <QVariant>

#include "widgets/Text.h"

namespace vlclientui::widgets {

QString withMnemonic(const QWidget& widget, const std::string& caption) {
  const QString text = toQt(caption);
  const QString letter = widget.property(mnemonicProperty).toString();
  const qsizetype at = text.indexOf(letter, 0, Qt::CaseInsensitive);
  if (letter.isEmpty() || at < 0 || text.contains(QLatin1Char('&'))) return text;
  return text.left(at) + QLatin1Char('&') + text.mid(at);
}

}  // namespace vlclientui::widgets
