#include "widgets/Mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QSet>
#include <QTabBar>
#include <QVariant>

#include "widgets/QtVersions.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr QChar mark('&');

/// Where the marked letter stands; -1 for none. A doubled mark is one to be read.
QtSize placeOfLetter(const QString& caption) {
  for (QtSize at = caption.indexOf(mark); at >= 0 && at + 1 < caption.size();
       at = caption.indexOf(mark, at + 2)) {
    if (caption[at + 1] != mark) return at + 1;
  }
  return -1;
}

QString withoutLetter(const QString& caption) {
  const QtSize at = placeOfLetter(caption);
  return at < 0 ? caption : QString(caption).remove(at - 1, 1);
}

/// With the first of its letters marked that is not taken.
QString withFreeLetter(const QString& caption, const QSet<QChar>& taken) {
  const QString bare = withoutLetter(caption);
  for (QtSize at = 0; at < bare.size(); ++at) {
    if (bare[at].isLetterOrNumber() && !taken.contains(bare[at].toUpper())) {
      return bare.left(at) + mark + bare.mid(at);
    }
  }
  return bare;
}

void addCaptionsOf(std::vector<MarkedCaption>& captions, QWidget& widget) {
  if (auto* const label = qobject_cast<QLabel*>(&widget)) {
    if (label->buddy())
      captions.push_back({label, label->text(), [label](auto& text) { label->setText(text); }});
  } else if (auto* const button = qobject_cast<QAbstractButton*>(&widget)) {
    captions.push_back({button, button->text(), [button](auto& text) { button->setText(text); }});
  } else if (auto* const group = qobject_cast<QGroupBox*>(&widget)) {
    captions.push_back({group, group->title(), [group](auto& text) { group->setTitle(text); }});
  } else if (auto* const tabs = qobject_cast<QTabBar*>(&widget)) {
    for (int tab = 0; tab < tabs->count(); ++tab) {
      captions.push_back(
          {tabs, tabs->tabText(tab), [tabs, tab](auto& text) { tabs->setTabText(tab, text); }});
    }
  } else if (auto* const menus = qobject_cast<QMenuBar*>(&widget)) {
    for (QAction* const menu : menus->actions()) {
      captions.push_back({menus, menu->text(), [menu](auto& text) { menu->setText(text); }});
    }
  }
}

}  // namespace

QString withMnemonic(const QWidget& widget, const std::string& caption) {
  const QString text = toQt(caption);
  const QString letter = widget.property(mnemonicProperty).toString();
  const QtSize at = text.indexOf(letter, 0, Qt::CaseInsensitive);
  if (letter.isEmpty() || at < 0 || text.contains(mark)) return text;
  return text.left(at) + mark + text.mid(at);
}

std::vector<MarkedCaption> captionsIn(QWidget& root) {
  std::vector<MarkedCaption> captions;
  for (QWidget* const widget : root.findChildren<QWidget*>()) {
    const bool counts = widget->isVisibleTo(&root) || widget->property(keepsLetterProperty).toBool();
    if (counts && widget->window() == root.window()) addCaptionsOf(captions, *widget);
  }
  return captions;
}

QChar letterOf(const QString& caption) {
  const QtSize at = placeOfLetter(caption);
  return at < 0 ? QChar() : caption[at].toUpper();
}

void settleMnemonics(QWidget& page) {
  QSet<QChar> taken;
  for (const MarkedCaption& caption : captionsIn(*page.window())) {
    if (!page.isAncestorOf(caption.widget)) taken.insert(letterOf(caption.text));
  }
  for (const MarkedCaption& caption : captionsIn(page)) {
    if (letterOf(caption.text).isNull()) continue;
    const bool isFree = !taken.contains(letterOf(caption.text));
    const QString settled = isFree ? caption.text : withFreeLetter(caption.text, taken);
    if (!isFree) caption.write(settled);
    taken.insert(letterOf(settled));
  }
}

}  // namespace vlclientui::widgets
