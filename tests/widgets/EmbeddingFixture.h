#pragma once

// A form's window in a window of the host: what the tests of it share.

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "support/TestSystem.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

using Log = std::vector<std::string>;

/// A page for tests: two boxes and a button. It tells what comes to it.
class Page : public Form {
 public:
  struct Controls {
    explicit Controls(Page& form)
        : first(form, "first"), second(form, "second"), press(form, "press", "&P") {}
    TextBox first;
    TextBox second;
    Button press;
  };

  explicit Page(Toolkit& toolkit) : Form(toolkit, "Page") { setCaption("Page"); }

  Controls& controls() {
    load();
    return *controls_;
  }

  Log log;
  std::function<void()> whenPressed = [] {};
  std::function<void()> whenLeft = [] {};

 protected:
  std::shared_ptr<void> buildControls() override {
    controls_ = std::make_shared<Controls>(*this);
    for (TextBox* const box : {&controls_->first, &controls_->second}) {
      box->gotFocus.connect([this, box] { log.push_back(box->name() + " got"); });
      box->lostFocus.connect([this, box] { log.push_back(box->name() + " lost " + box->text()); });
    }
    controls_->press.click.connect([this] { whenPressed(); });
    return controls_;
  }
  void dropControls() override { controls_.reset(); }
  void onActivate() override { log.emplace_back("activate"); }
  void onEnter() override { log.emplace_back("enter"); }
  void onLeave() override {
    log.emplace_back("leave");
    whenLeft();
  }
  void onUnload() override { log.emplace_back("unload"); }

 private:
  std::shared_ptr<Controls> controls_;
};

inline void buildPage(QWidget& root) {
  root.resize(200, 120);
  auto* const layout = new QVBoxLayout(&root);
  for (const char* const name : {"first", "second"}) {
    auto* const box = new QLineEdit;
    box->setObjectName(QLatin1String(name));
    layout->addWidget(box);
  }
  auto* const button = new QPushButton;
  button->setObjectName(QStringLiteral("press"));
  layout->addWidget(button);
}

inline widgets::ViewRegistry pageViews() {
  widgets::ViewRegistry views;
  views.add("Page", buildPage);
  return views;
}

/// A host with a box above and a box below a place for a page.
struct Host : QWidget {
  Host() {
    resize(400, 400);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(&above);
    layout->addWidget(&place, 1);
    layout->addWidget(&below);
  }
  QLineEdit above;
  QWidget place;
  QLineEdit below;
};

class Embedding : public testing::Test {
 protected:
  Embedding() {
    host->show();
    host->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
    host->above.setFocus();
  }

  [[nodiscard]] WindowHandle handle() { return toolkit->windowOf(page); }
  [[nodiscard]] QWidget* view() { return toolkit->windows().widgetOf(handle()); }
  [[nodiscard]] QLineEdit* box(const char* name) {
    return view()->findChild<QLineEdit*>(QLatin1String(name));
  }

  /// As a dialog object embeds a page.
  WindowHandle embed() {
    page.moveTo(29.8, 134.1);
    const WindowHandle window = handle();
    toolkit->setStyle(window, toolkit->styleOf(window) | windowStyle::child);
    const WindowHandle old = toolkit->setParent(window, toolkit->windows().handleOf(&host->place));
    toolkit->showWindow(window, showModeShow);
    return old;
  }
  void layOut() {
    auto* const layout = new QVBoxLayout(&host->place);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view());
    QApplication::processEvents();
  }
  Log takeLog() { return std::exchange(page.log, {}); }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit =
      std::make_shared<widgets::QtToolkit>(system, widgets::pathTextsOf(system), pageViews());
  Page page{*toolkit};
  std::unique_ptr<Host> host = std::make_unique<Host>();
};

}  // namespace vlclientui::test
