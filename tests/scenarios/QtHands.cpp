#include "scenarios/QtHands.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QTest>
#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "widgets/FormWindow.h"

namespace vlclientui::test {

namespace {

constexpr int watchMilliseconds = 5;

std::string titled(const QString& title, const QString& text) {
  return (title + QLatin1Char('|') + text).toStdString();
}

}  // namespace

QtHands::QtHands() {
  QObject::connect(&watch_, &QTimer::timeout, &watch_, [this] { answerWindowOnTop(); });
  watch_.start(watchMilliseconds);
}

QWidget& QtHands::window() const {
  need(window_, "no window is open");
  return *window_;
}

void QtHands::click(const std::string& name) const { click(find<QAbstractButton>(name)); }

void QtHands::click(QAbstractButton& button) const {
  waitForWindow();
  // A check box is sensitive on its mark and text only, which may be narrower than the widget.
  QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

void QtHands::enter(QLineEdit& box) const {
  waitForWindow();
  QTest::mouseClick(&box, Qt::LeftButton);
}

void QtHands::type(QLineEdit& box, const std::string& text) const {
  enter(box);
  box.selectAll();
  if (text.empty()) QTest::keyClick(&box, Qt::Key_Delete);
  QTest::keyClicks(&box, QString::fromStdString(text));
}

void QtHands::pick(QComboBox& box, const std::string& entry) const {
  const int index = box.findText(QString::fromStdString(entry));
  need(index >= 0, "no entry " + entry);
  waitForWindow();
  QTest::mouseClick(&box, Qt::LeftButton);
  QAbstractItemView* const entries = box.view();
  entries->setCurrentIndex(entries->model()->index(index, 0));
  QTest::keyClick(entries, Qt::Key_Return);
}

void QtHands::press(Qt::Key key) const {
  waitForWindow();
  QWidget* const focused = window().window()->focusWidget();
  QTest::keyClick(focused ? focused : &window(), key);
}

void QtHands::waitForWindow() const {
  if (!window_) return;
  QWidget* const top = window_->window();
  const QWidget* const modal = QApplication::activeModalWidget();
  if (top->isActiveWindow() || (modal && modal != top)) return;
  top->activateWindow();
  static_cast<void>(QTest::qWaitForWindowActive(top));
}

bool QtHands::isVisiting(const QDialog& window) const {
  return std::ranges::any_of(visited_, [&window](const auto& visited) { return visited == &window; });
}

void QtHands::answerWindowOnTop() {
  auto* const top = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!top || isVisiting(*top)) return;
  if (auto* const box = qobject_cast<QMessageBox*>(top)) return answerMessage(*box);
  if (auto* const dialog = qobject_cast<QFileDialog*>(top)) return answerFileDialog(*dialog);
  if (dynamic_cast<widgets::FormWindow*>(top)) return startVisit(*top);
  answerOtherWindow(*top);
}

/// The visit runs outside the timer's event, since a timer does not fire again inside its own.
void QtHands::startVisit(QDialog& window) {
  if (visits_.empty()) {
    ADD_FAILURE() << "nobody awaits the window " << window.objectName().toStdString();
    window.close();
    return;
  }
  visited_.emplace_back(&window);
  QTimer::singleShot(0, &window,
                     [this, &window, visit = std::move(visits_.front())] { runVisit(window, visit); });
  visits_.pop_front();
}

void QtHands::runVisit(QDialog& window, const std::function<void()>& visit) {
  const QPointer<QWidget> before = std::exchange(window_, &window);
  const QPointer<QDialog> visited = &window;
  try {
    visit();
  } catch (const std::exception& failure) {
    ADD_FAILURE() << failure.what();
  }
  if (visited && visited->isVisible()) visited->close();
  visited_.pop_back();
  // The closed window stays the current one, so that a test can still ask about it.
  if (before && before->isVisible()) window_ = before;
}

void QtHands::answerMessage(QMessageBox& box) {
  messages_.push_back(titled(box.windowTitle(), box.text()));
  auto button = box.standardButtons().testFlag(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok;
  if (box.standardButtons().testFlag(QMessageBox::Cancel) && !answers_.empty()) {
    if (answers_.front() == MessageAnswer::Cancel) button = QMessageBox::Cancel;
    answers_.pop_front();
  }
  box.button(button)->click();
}

void QtHands::answerFileDialog(QFileDialog& dialog) {
  fileDialogs_.push_back(titled(dialog.windowTitle(), dialog.nameFilters().join(QLatin1Char(';'))));
  if (files_.empty()) return dialog.reject();
  dialog.selectFile(files_.front());
  files_.pop_front();
  // Queued: the dialog may ask before overwriting, and a timer does not fire inside its own event.
  QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
}

void QtHands::answerOtherWindow(QDialog& window) {
  if (otherVisit_) {
    otherVisit_(window);
  } else {
    ADD_FAILURE() << "nobody awaits the window " << window.windowTitle().toStdString();
  }
  window.close();
}

}  // namespace vlclientui::test
