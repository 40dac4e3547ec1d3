// Somebody at the windows of a program that knows nothing of it. The file that VLCLIENTUI_PERSON names says
// what is done: a run file for windows of the library, or lines of "press NAME", "set NAME TEXT", "grab" and
// "close" for one of the program's own. Reading a caption, like "grab", leaves a picture where
// VLCLIENTUI_PICTURES names a folder.

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "host/Compose.h"
#include "runs/RunPlayer.h"

namespace vlclientui::pages {
namespace {

constexpr int restBetween = 100;  // milliseconds between two acts

QWidget* shownWindow() {
  if (QWidget* const modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) return window;
  }
  return nullptr;
}

void grab() {
  const QString folder = qEnvironmentVariable("VLCLIENTUI_PICTURES");
  if (!folder.isEmpty())
    shownWindow()->grab().save(folder + "/own-" + QApplication::applicationName() + ".png");
}

/// Acts on a window of the program itself.
class Hands {
 public:
  explicit Hands(const QString& text) : lines_(text.split('\n', Qt::SkipEmptyParts)) {}

  void step() {
    QWidget* const window = shownWindow();
    if (window && !lines_.isEmpty()) act(*window, lines_.takeFirst());
    if (!lines_.isEmpty()) QTimer::singleShot(restBetween, [this] { step(); });
  }

 private:
  static void act(QWidget& window, const QString& line) {
    const QString verb = line.section(' ', 0, 0);
    const QString name = line.section(' ', 1, 1);
    if (verb == "grab") return grab();
    if (verb == "close") return void(window.close());
    if (verb == "press") return window.findChild<QAbstractButton*>(name)->click();
    if (auto* const list = window.findChild<QComboBox*>(name)) return choose(*list, line.section(' ', 2));
    type(*window.findChild<QLineEdit*>(name), line.section(' ', 2));
  }

  static void choose(QComboBox& list, const QString& entry) {
    list.setCurrentText(entry);
    emit list.activated(list.currentIndex());
  }

  static void type(QLineEdit& box, const QString& text) {
    box.setFocus();
    box.setText(text);
    emit box.textEdited(text);
    emit box.editingFinished();
  }

  QStringList lines_;
};

void sitDown() {
  QFile file(qEnvironmentVariable("VLCLIENTUI_PERSON"));
  if (!file.open(QIODevice::ReadOnly)) return;
  const QByteArray text = file.readAll();
  if (!text.startsWith("vlrun")) {
    static Hands hands(QString::fromUtf8(text));
    QTimer::singleShot(restBetween, [] { hands.step(); });
    return;
  }
  static const host::ComposedHost paths = host::composeHeadlessPlatform({});
  static runs::RunPlayer player(
      runs::readRun(text.toStdString()), *paths.platform->system,
      {{},
       [](const std::string&, const std::string&) { grab(); },
       [](std::function<void()> action) { QTimer::singleShot(restBetween, std::move(action)); }});
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(sitDown)

}  // namespace vlclientui::pages
