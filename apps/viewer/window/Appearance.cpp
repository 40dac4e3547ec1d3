#include "viewer/window/Appearance.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>
#include <QToolTip>
#include <optional>
#include <utility>

namespace vlclientui::viewer {
namespace {

constexpr const char* settingKey = "appearance";
constexpr const char* followingStyle = "fusion";  // takes every color from the palette

QString tr(const char* text) { return QCoreApplication::translate("Appearance", text); }

/// What a palette is made of.
struct Inks {
  QColor window;
  QColor base;
  QColor alternate;
  QColor button;
  QColor text;
  QColor faint;  ///< of what is disabled
  QColor mark;   ///< behind what is selected
  QColor onMark;
  QColor link;
};

QPalette paletteOf(const Inks& inks) {
  QPalette palette(inks.button, inks.window);
  palette.setColor(QPalette::Base, inks.base);
  palette.setColor(QPalette::AlternateBase, inks.alternate);
  palette.setColor(QPalette::ToolTipBase, inks.base);
  palette.setColor(QPalette::Highlight, inks.mark);
  palette.setColor(QPalette::HighlightedText, inks.onMark);
  palette.setColor(QPalette::Link, inks.link);
  palette.setColor(QPalette::LinkVisited, inks.link);
  palette.setColor(QPalette::PlaceholderText, inks.faint);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                          QPalette::BrightText}) {
    palette.setColor(role, inks.text);
    palette.setColor(QPalette::Disabled, role, inks.faint);
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, inks.faint);
  return palette;
}

const Inks light{.window = QColor(0xef, 0xef, 0xef),
                 .base = Qt::white,
                 .alternate = QColor(0xf5, 0xf6, 0xf7),
                 .button = QColor(0xf3, 0xf3, 0xf3),
                 .text = QColor(0x14, 0x18, 0x1b),
                 .faint = QColor(0x70, 0x74, 0x78),
                 .mark = QColor(0x1f, 0x6f, 0xa8),
                 .onMark = Qt::white,
                 .link = QColor(0x0b, 0x57, 0x8f)};
const Inks dark{.window = QColor(0x2e, 0x31, 0x34),
                .base = QColor(0x1f, 0x21, 0x23),
                .alternate = QColor(0x27, 0x29, 0x2c),
                .button = QColor(0x3a, 0x3e, 0x42),
                .text = QColor(0xec, 0xee, 0xf0),
                .faint = QColor(0x8f, 0x95, 0x9b),
                .mark = QColor(0x2f, 0x75, 0xa8),
                .onMark = Qt::white,
                .link = QColor(0x7f, 0xc2, 0xf2)};
const Inks highContrast{.window = Qt::black,
                        .base = Qt::black,
                        .alternate = QColor(0x14, 0x14, 0x14),
                        .button = QColor(0x1a, 0x1a, 0x1a),
                        .text = Qt::white,
                        .faint = QColor(0xa8, 0xa8, 0xa8),
                        .mark = QColor(0xff, 0xe1, 0x00),
                        .onMark = Qt::black,
                        .link = QColor(0x5c, 0xd6, 0xff)};

/// The words of the menu, and those of the settings.
struct Choice {
  Appearance appearance;
  const char* key;
  const char* text;
};
constexpr Choice choices[] = {
    {Appearance::Desktop, "Desktop", QT_TRANSLATE_NOOP("Appearance", "As the &desktop")},
    {Appearance::Light, "Light", QT_TRANSLATE_NOOP("Appearance", "&Light")},
    {Appearance::Dark, "Dark", QT_TRANSLATE_NOOP("Appearance", "Da&rk")},
    {Appearance::HighContrast, "HighContrast", QT_TRANSLATE_NOOP("Appearance", "&High contrast")}};

/// Of the desktop, while other colors are used.
std::optional<QString>& formerStyle() {
  static std::optional<QString> name;
  return name;
}

}  // namespace

QPalette paletteOf(Appearance appearance) {
  switch (appearance) {
    case Appearance::Light:
      return paletteOf(light);
    case Appearance::Dark:
      return paletteOf(dark);
    case Appearance::HighContrast:
      return paletteOf(highContrast);
    case Appearance::Desktop:
      break;
  }
  return {};
}

void useAppearance(Appearance appearance) {
  const bool isOwn = appearance != Appearance::Desktop;
  const QString style = QApplication::style()->objectName();
  if (isOwn && style.compare(QLatin1String(followingStyle), Qt::CaseInsensitive) != 0) {
    formerStyle() = style;
    QApplication::setStyle(QStyleFactory::create(QLatin1String(followingStyle)));
  } else if (const auto former = std::exchange(formerStyle(), std::nullopt); !isOwn && former) {
    QApplication::setStyle(QStyleFactory::create(*former));
  }
  const QPalette palette = paletteOf(appearance);
  QApplication::setPalette(palette);
  QToolTip::setPalette(palette);
}

void addAppearanceMenu(QMenu& menu, QSettings& settings) {
  QMenu* const looks = menu.addMenu(tr("&Appearance"));
  looks->setObjectName("Appearance");
  auto* const group = new QActionGroup(looks);
  const QString kept = settings.value(settingKey).toString();
  for (const Choice& choice : choices) {
    QAction* const action = looks->addAction(tr(choice.text));
    action->setObjectName(QLatin1String("Appearance") + choice.key);
    action->setCheckable(true);
    group->addAction(action);
    const bool isKept = kept == QLatin1String(choice.key);
    action->setChecked(isKept ||
                       (choice.appearance == Appearance::Desktop && group->checkedAction() == nullptr));
    QObject::connect(action, &QAction::triggered, looks, [choice, &settings] {
      settings.setValue(settingKey, choice.key);
      useAppearance(choice.appearance);
    });
    if (isKept && choice.appearance != Appearance::Desktop) useAppearance(choice.appearance);
  }
}

}  // namespace vlclientui::viewer
