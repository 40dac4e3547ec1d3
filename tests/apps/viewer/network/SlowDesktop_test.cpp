// The window of connections beside a secret store that takes its time.
#include <QLabel>
#include <QTreeWidget>
#include <condition_variable>
#include <mutex>

#include "apps/viewer/ViewerFixture.h"
#include "client/connections/SecretStore.h"
#include "client/waiting/Wait.h"
#include "viewer/network/ConnectionsWindow.h"
#include "viewer/waiting/WaitLine.h"

namespace vlclientui::test {
namespace {

using client::ConnectionBook;
using client::SecretKeeping;
using viewer::ConnectionEditor;
using viewer::ConnectionsWindow;
using viewer::person::choose;
using viewer::person::find;
using viewer::person::press;
using viewer::person::typeInto;

/// Answers when it is opened. A deaf one does not hear that nobody waits any more.
class SlowDesktop final : public client::SecretStore {
 public:
  enum class Manner { Polite, Deaf };

  std::string keep(const std::string& key, const std::string& /*label*/, const std::string& secret) override {
    if (!pass()) return "nobody opened it";
    kept[key] = secret;
    return {};
  }
  Found find(const std::string& key) override {
    return {kept.contains(key) ? std::optional(kept[key]) : std::nullopt, ""};
  }
  std::string forget(const std::string& key) override {
    if (!pass()) return "nobody opened it";
    kept.erase(key);
    return {};
  }
  void open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
  }
  void close(Manner manner) {
    const std::lock_guard lock(mutex_);
    isOpen_ = false;
    manner_ = manner;
  }
  void seeLeft() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_ == 0; });
  }

  std::map<std::string, std::string> kept;

 private:
  bool pass() {
    const client::Waiting waiting([this] {
      const std::lock_guard lock(mutex_);
      if (manner_ == Manner::Polite) isLeft_ = true;
      changed_.notify_all();
    });
    std::unique_lock lock(mutex_);
    ++waiting_;
    changed_.wait(lock, [this] { return isOpen_ || isLeft_; });
    --waiting_;
    changed_.notify_all();
    const bool wasLeft = std::exchange(isLeft_, false);
    return isOpen_ && !wasLeft;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  Manner manner_ = Manner::Polite;
  bool isOpen_ = true;
  bool isLeft_ = false;
  int waiting_ = 0;
};

// As that of the program they stay: what was given up may still use them.
ConnectionBook& lastingBook(ConnectionBook::Settings settings) {
  static std::vector<std::unique_ptr<ConnectionBook>> books;
  return *books.emplace_back(std::make_unique<ConnectionBook>(std::move(settings)));
}

class SlowDesktopTest : public ViewerFixture {
 protected:
  SlowDesktopTest() {
    connections_ = std::make_unique<ConnectionsWindow>(book_, host_.catalogue);
    connections_->show();
    connections_->activateWindow();
  }

  static QWidget& editor() {
    QWidget* const front = QApplication::activeModalWidget();
    if (qobject_cast<ConnectionEditor*>(front) == nullptr) throw viewer::person::Astray("there is no editor");
    return *front;
  }
  [[nodiscard]] QString news() const { return find<QLabel>(*connections_, "ConnectionNews").text(); }
  [[nodiscard]] int count() const {
    return find<QTreeWidget>(*connections_, "Connections").topLevelItemCount();
  }
  void describeHome() {
    act([this] { click(*connections_, "AddConnection"); });
    see("the editor", [] { return editor().isActiveWindow(); });
    act([] {
      typeInto(find<QLineEdit>(editor(), "ConnectionName"), "Home");
      typeInto(find<QLineEdit>(editor(), "ConnectionAddress"), "https://maps.example/wcs");
      choose(find<QComboBox>(editor(), "ConnectionSignIn"), "User and password");
      typeInto(find<QLineEdit>(editor(), "ConnectionUser"), "ann");
      typeInto(find<QLineEdit>(editor(), "ConnectionSecret"), "hemlig-ord");
      click(editor(), "SaveConnection");
    });
  }
  void keepHome() {
    client::Connection home{"Home", "https://maps.example/wcs", client::SignIn::Password, "ann", {}, "", {}};
    book_.save({home, "hemlig-ord", SecretKeeping::Desktop, ""});
  }

  std::shared_ptr<SlowDesktop> desktop_ = std::make_shared<SlowDesktop>();
  ConnectionBook& book_ = lastingBook({home_.path() / "connections", desktop_});
  std::unique_ptr<ConnectionsWindow> connections_;
};

TEST_F(SlowDesktopTest, IsWaitedForInTheEditorWhichCanGiveUpAndSaveLater) {
  desktop_->close(SlowDesktop::Manner::Polite);
  describeHome();
  act([] {
    EXPECT_FALSE(find<QPushButton>(editor(), "SaveConnection").isEnabled());
    EXPECT_FALSE(find<QLineEdit>(editor(), "ConnectionName").isEnabled());
  });
  see("for what it waits", [] { return find<viewer::WaitLine>(editor(), "WaitLine").isVisible(); });
  act([] {
    keepPicture(editor(), "editor-waits");
    press(editor(), Qt::Key_Escape);
  });
  see("that nothing is saved", [] {
    return find<QLabel>(editor(), "ConnectionProblem").text() == "The wait was given up; nothing is saved.";
  });
  act([this] {
    EXPECT_TRUE(book_.connections().empty());
    EXPECT_EQ(editor().findChild<viewer::WaitLine*>()->isVisible(), false);
    desktop_->seeLeft();
    desktop_->open();
    click(editor(), "SaveConnection");
  });
  see("it in the list", [this] { return count() == 1 && QApplication::activeModalWidget() == nullptr; });
  run();
  EXPECT_EQ(news().toStdString(), "Saved Home. The password is kept in the secret store of the desktop.");
  EXPECT_EQ(desktop_->kept.size(), 1U);
}

TEST_F(SlowDesktopTest, IsWaitedForBesideAListThatStaysUsable) {
  keepHome();
  connections_ = std::make_unique<ConnectionsWindow>(book_, host_.catalogue);
  connections_->show();
  desktop_->close(SlowDesktop::Manner::Polite);
  act([this] {
    viewer::person::clickRow(find<QTreeWidget>(*connections_, "Connections"), 0);
    click(*connections_, "RemoveConnection");
  });
  see("the question", [] { return window("Remove connection").isVisible(); });
  act([] { press(window("Remove connection"), Qt::Key_Y); });
  see("the wait", [this] { return find<QPushButton>(*connections_, "CancelTrial").isVisible(); });
  act([this] {
    EXPECT_FALSE(find<QPushButton>(*connections_, "TryConnection").isEnabled());
    EXPECT_TRUE(find<QPushButton>(*connections_, "AddConnection").isEnabled());
    keepPicture(*connections_, "connections-wait");
    click(*connections_, "CancelTrial");
  });
  see("what is left", [this] { return news().contains("may still be in the secret store"); });
  run();
  EXPECT_EQ(count(), 0);
  EXPECT_FALSE(connections_->isWaiting());
}

TEST_F(SlowDesktopTest, MayStayDeafWhenTheWindowCloses) {
  keepHome();
  desktop_->close(SlowDesktop::Manner::Deaf);
  connections_ = std::make_unique<ConnectionsWindow>(book_, host_.catalogue);
  connections_->show();
  act([this] {
    viewer::person::clickRow(find<QTreeWidget>(*connections_, "Connections"), 0);
    click(*connections_, "RemoveConnection");
  });
  see("the question", [] { return window("Remove connection").isVisible(); });
  act([] { press(window("Remove connection"), Qt::Key_Y); });
  see("the wait", [this] { return connections_->isWaiting(); });
  run();
  connections_.reset();
  desktop_->open();
  desktop_->seeLeft();
  EXPECT_TRUE(book_.connections().empty());
}

}  // namespace
}  // namespace vlclientui::test
