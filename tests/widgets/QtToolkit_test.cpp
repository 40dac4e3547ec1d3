#include "widgets/QtToolkit.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include <gmock/gmock.h>

#include "contracts/Operations.h"
#include "contracts/RuntimeFailure.h"
#include "support/TemporaryDataHome.h"
#include "widgets/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QtToolkit : public WidgetTest {
 protected:
  struct Seen {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QStringList buttons;
  };

  /// Shows the message, presses the button and tells what stood there.
  Seen seen(const MessageBox& box, const QString& button, MessageAnswer expected) {
    Seen result;
    answerNextMessage(button, [&result] {
      const auto& shown = *qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      result = {shown.windowTitle(), shown.text(), shown.icon(), {}};
      for (QAbstractButton* each : shown.buttons()) result.buttons << each->text().remove('&');
    });
    EXPECT_EQ(toolkit->showMessage(box), expected);
    result.buttons.sort();
    return result;
  }

  /// Acts on the next file dialog.
  static void actOnFileDialog(const std::function<void(QFileDialog&)>& act) {
    QTimer::singleShot(0, [act] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_TRUE(dialog);
      act(*dialog);
    });
  }
};

TEST_F(QtToolkit, MessageHasItsTextTitleIconAndButton) {
  const Seen box =
      seen({"Invalid xml retrieved.", "Invalid Xml", MessageIcon::Critical}, "OK", MessageAnswer::Ok);
  EXPECT_EQ(box.title, "Invalid Xml");
  EXPECT_EQ(box.text, "Invalid xml retrieved.");
  EXPECT_EQ(box.icon, QMessageBox::Critical);
  EXPECT_EQ(box.buttons, QStringList("OK"));
}

TEST_F(QtToolkit, MessageWithoutATitleHasTheNameOfTheProgram) {
  EXPECT_EQ(seen({"text", ""}, "OK", MessageAnswer::Ok).title, "Sample host");
}

TEST_F(QtToolkit, MessageOffersTheButtonsAskedFor) {
  EXPECT_EQ(seen({"t", "", MessageIcon::Question, MessageButtons::YesNo}, "No", MessageAnswer::No).buttons,
            QStringList({"No", "Yes"}));
  EXPECT_EQ(seen({"t", "", MessageIcon::Exclamation, MessageButtons::YesNoCancel}, "Yes", MessageAnswer::Yes)
                .buttons,
            QStringList({"Cancel", "No", "Yes"}));
  EXPECT_EQ(
      seen({"t", "", MessageIcon::Information, MessageButtons::OkCancel}, "Cancel", MessageAnswer::Cancel)
          .buttons,
      QStringList({"Cancel", "OK"}));
}

TEST_F(QtToolkit, MessageShowsNativePathsAndNoMarkup) {
  const Seen box = seen({"The file: 'C:\\x\\<b>y</b>' is missing.", ""}, "OK", MessageAnswer::Ok);
  EXPECT_EQ(box.text.toStdString(), "The file: '" + system->home().string() + "/x/<b>y</b>' is missing.");
}

TEST_F(QtToolkit, MessagesAreCountedAndReportsAreNot) {
  answerNextMessage();
  toolkit->showMessage({"one", ""});
  EXPECT_EQ(toolkit->messageCount(), 1U);
  answerNextMessage();
  toolkit->reportFailure("two");
  EXPECT_EQ(toolkit->messageCount(), 1U);
  EXPECT_THAT(messages, ElementsAre(QStringLiteral("one"), QStringLiteral("two")));
}

TEST_F(QtToolkit, PickedFileComesBackWithDriveAndBackslashes) {
  system->writeFile("C:\\maps\\a.VLRef", "x");
  QStringList filters;
  actOnFileDialog([&](QFileDialog& dialog) {
    filters = dialog.nameFilters();
    dialog.setDirectory(QString::fromStdString(system->nativeFile("C:\\maps").string()));
    dialog.selectFile("a.VLRef");
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(toolkit->openFile({"", "Reference (*.VLRef)|*.VLRef|All files (*.*)|*.*", ""}),
            "C:\\maps\\a.VLRef");
  EXPECT_EQ(filters, QStringList({"Reference (*.VLRef)", "All files (*)"}));
}

TEST_F(QtToolkit, FileToWriteComesBackWithDriveAndBackslashesAndNeedNotBeThere) {
  system->writeFile("C:\\Out\\there", "x");
  QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
  QString folder;
  actOnFileDialog([&](QFileDialog& dialog) {
    mode = dialog.acceptMode();
    folder = dialog.directory().path();
    EXPECT_EQ(dialog.windowTitle(), "Export image to:");
    EXPECT_EQ(dialog.nameFilters(), QStringList("Tif (*.Tif)"));
    dialog.selectFile("area.doc");
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(toolkit->saveFile({"", "Tif (*.Tif) | *.Tif", "Export image to:", "C:\\Out\\"}),
            "C:\\Out\\area.doc");
  EXPECT_EQ(mode, QFileDialog::AcceptSave);
  EXPECT_EQ(folder.toStdString(), system->nativeFile("C:\\Out").string());
}

TEST_F(QtToolkit, FileToWriteGetsTheSuffixOfTheChosenFilterWhereItHasNone) {
  system->writeFile("C:\\Out\\there", "x");
  const auto savedAs = [this](const QString& name, const char* filter) {
    actOnFileDialog([&](QFileDialog& dialog) {
      if (filter != nullptr) {
        auto* const list = dialog.findChild<QComboBox*>("fileTypeCombo");
        ASSERT_NE(list, nullptr);
        QTest::keyClick(list, Qt::Key_Down);
        EXPECT_EQ(list->currentText(), filter);
      }
      dialog.findChild<QLineEdit*>("fileNameEdit")->setText(name);
      QMetaObject::invokeMethod(&dialog, "accept");
    });
    return toolkit->saveFile({"", "VLRef (*.VLRef)| *.VLRef|Xml (*.xml) | *.xml", "", "C:\\Out\\"})
        .value_or("");
  };
  EXPECT_EQ(savedAs("west", nullptr), "C:\\Out\\west.VLRef");
  EXPECT_EQ(savedAs("west", "Xml (*.xml)"), "C:\\Out\\west.xml");
  EXPECT_EQ(savedAs("west.doc", nullptr), "C:\\Out\\west.doc");
}

TEST_F(QtToolkit, FileToWriteThatIsThereIsNotAskedAbout) {
  system->writeFile("C:\\Out\\area.Tif", "x");
  actOnFileDialog([](QFileDialog& dialog) {
    EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_THAT(dialog.selectedFiles(), ElementsAre(testing::Truly([](const QString& file) {
                  return file.endsWith(QLatin1String("/Out/area.Tif"));
                })));
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(toolkit->saveFile({"C:\\Out\\area.Tif", "Tif (*.Tif) | *.Tif", "Export image to:", ""}),
            "C:\\Out\\area.Tif");
  EXPECT_THAT(messages, IsEmpty());
}

TEST_F(QtToolkit, FileToWriteStartsInTheNearestFolderThatIsThere) {
  system->writeFile("C:\\Documents\\a", "x");
  QString folder;
  actOnFileDialog([&](QFileDialog& dialog) {
    folder = dialog.directory().path();
    dialog.reject();
  });
  EXPECT_FALSE(toolkit->saveFile({"", "Tif (*.Tif) | *.Tif", "", "C:\\Documents\\Nowhere\\Deeper\\"}));
  EXPECT_EQ(folder.toStdString(), system->nativeFile("C:\\Documents").string());
}

TEST_F(QtToolkit, FileToWriteStartsInTheDocumentsFolderWhereNoFolderIsTold) {
  const TemporaryFolder home;
  const EnvironmentKeeper homeVariable("HOME", home.path().string());
  const EnvironmentKeeper configVariable("XDG_CONFIG_HOME", std::nullopt);
  std::vector<std::string> folders;
  for (const bool hasDocuments : {false, true}) {
    if (hasDocuments) std::filesystem::create_directories(home.path() / "Documents");
    actOnFileDialog([&](QFileDialog& dialog) {
      folders.push_back(dialog.directory().path().toStdString());
      dialog.reject();
    });
    EXPECT_FALSE(toolkit->saveFile({"", "Xml (*.xml) | *.xml", ""}));
  }
  EXPECT_THAT(folders, ElementsAre(home.path().string(), (home.path() / "Documents").string()));
}

TEST_F(QtToolkit, TellsNewsWithPathsOfThisSystem) {
  std::vector<std::string> heard;
  toolkit->told.connect([&heard](const QString& news) { heard.push_back(news.toStdString()); });
  toolkit->tell("Saved to 'C:\\a.xml'");
  EXPECT_THAT(heard, ElementsAre("Saved to '" + system->nativeFile("C:\\a.xml").string() + "'"));
}

TEST_F(QtToolkit, CanceledDialogsGiveNothing) {
  actOnFileDialog([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_FALSE(toolkit->openFile({"", "All files (*.*)|*.*", ""}));
  actOnFileDialog([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_FALSE(toolkit->browseForFolder({18, 0, "Select", 0}));
}

TEST_F(QtToolkit, PickedFolderComesBackWithItsName) {
  system->writeFile("C:\\maps\\inner\\a", "x");
  QString title;
  actOnFileDialog([&](QFileDialog& dialog) {
    title = dialog.windowTitle();
    dialog.setDirectory(QString::fromStdString(system->nativeFile("C:\\maps").string()));
    dialog.selectFile("inner");
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  const auto choice = toolkit->browseForFolder({18, 0, "Select a folder.", 0});
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->path, "C:\\maps\\inner");
  EXPECT_EQ(choice->displayName, "inner");
  EXPECT_EQ(title, "Select a folder.");
}

TEST_F(QtToolkit, AsksForNoFolderWhereSomebodyElseActs) {
  struct Other : PersonInPlace {
    void windowAppeared(Form& /*form*/) override {}
    MessageAnswer answer(const MessageBox& /*box*/) override { return MessageAnswer::Ok; }
    std::optional<std::string> chooseFile(const FileDialog& /*dialog*/) override { return std::nullopt; }
    std::optional<FolderChoice> chooseFolder(const FolderDialog& dialog) override {
      return FolderChoice{"C:\\maps", dialog.title};
    }
  } other;
  std::vector<Operation> told;
  const OperationListener listener([&told](const Operation& operation) { told.push_back(operation); });
  const auto choice = toolkit->browseForFolder({18, 0, "Select", 0});
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->displayName, "Select");
  EXPECT_THAT(told, ElementsAre(Operation{Operation::Kind::File, {}, {}, "C:\\maps"}));
}

TEST_F(QtToolkit, PointerIsSetAndNotStacked) {
  toolkit->setPointer(Pointer::Hourglass);
  toolkit->setPointer(Pointer::Hourglass);
  ASSERT_TRUE(QGuiApplication::overrideCursor());
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  toolkit->setPointer(Pointer::Arrow);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::ArrowCursor);
  toolkit->setPointer(Pointer::Default);
  EXPECT_FALSE(QGuiApplication::overrideCursor());
  toolkit->setPointer(Pointer::Default);
  EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(QtToolkit, ClipboardTakesTheText) {
  toolkit->setClipboardText("h\xc3\xb6he");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("h\xc3\xb6he"));
}

TEST_F(QtToolkit, PendingEventsRunWhenAsked) {
  bool ran = false;
  QTimer::singleShot(0, [&] { ran = true; });
  toolkit->letPendingEventsRun();
  EXPECT_TRUE(ran);
}

TEST_F(QtToolkit, WindowBearsTheCaptionOfItsForm) {
  show([this] {
    EXPECT_EQ(toolkit->viewOf(form)->windowTitle(), "Sample");
    form.setCaption("Other");
    EXPECT_EQ(toolkit->viewOf(form)->windowTitle(), "Other");
  });
}

TEST_F(QtToolkit, ModalShowReturnsWhenTheFormIsUnloaded) {
  show([this] {
    EXPECT_TRUE(toolkit->viewOf(form)->isModal());
    QTest::mouseClick(&widget("cancel"), Qt::LeftButton);
    EXPECT_FALSE(form.loaded());
  });
  EXPECT_EQ(toolkit->viewOf(form), nullptr);
}

TEST_F(QtToolkit, EachShowHasANewWindowOverNewControls) {
  show([this] { controls().box.setText("first"); });
  show([this] { EXPECT_EQ(controls().box.text(), ""); });
}

TEST_F(QtToolkit, EscapeClicksTheCancelButton) {
  show([this] {
    QTest::keyClick(&widget("box"), Qt::Key_Escape);
    EXPECT_FALSE(form.loaded());
    EXPECT_THAT(takeLog(), ElementsAre("box key 27/0", "box lost focus", "cancel got focus"));
  });
}

TEST_F(QtToolkit, EscapeWithoutACancelButtonClosesTheForm) {
  show([this] {
    form.setCancelButton(nullptr);
    QTest::keyClick(&widget("box"), Qt::Key_Escape);
    EXPECT_FALSE(form.loaded());
  });
}

TEST_F(QtToolkit, CloseBoxClosesTheForm) {
  show([this] {
    toolkit->viewOf(form)->close();
    EXPECT_FALSE(form.loaded());
    EXPECT_THAT(takeLog(), IsEmpty());
  });
}

TEST_F(QtToolkit, DialogStandsOverTheActiveWindowOfTheHost) {
  QWidget host;
  host.show();
  host.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&host));
  show([this, &host] { EXPECT_EQ(toolkit->viewOf(form)->parentWidget(), &host); });
}

TEST_F(QtToolkit, QuittingTheProgramEndsAModalShow) {
  QTimer::singleShot(0, [this] {
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    form.showModal();
    EXPECT_FALSE(form.loaded());
  });
  QApplication::exec();
}

TEST_F(QtToolkit, OwnerThatGoesTakesTheDialogAlong) {
  auto host = std::make_unique<QWidget>();
  host->show();
  host->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(host.get()));
  QTimer::singleShot(0, [&] { host.reset(); });
  form.showModal();
  EXPECT_FALSE(form.loaded());
}

TEST_F(QtToolkit, ReleasedFormTakesItsWindowAlong) {
  auto released = std::make_unique<SampleForm>(*toolkit);
  released->load();
  QPointer<QWidget> window = toolkit->viewOf(*released);
  ASSERT_TRUE(window);
  released.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(window);
}

TEST_F(QtToolkit, FormWithoutALayoutDoesNotLoad) {
  widgets::QtToolkit bare(system, widgets::pathTextsOf(system), {});
  SampleForm homeless(bare);
  EXPECT_THROW(homeless.load(), RuntimeFailure);
  EXPECT_FALSE(homeless.loaded());
}

TEST_F(QtToolkit, HostedControlHasAWindowWhileItsFormIsLoaded) {
  SampleForm other(*toolkit);
  WindowHandle old = 0;
  show([&] {
    old = toolkit->windowOf(controls().hosted);
    EXPECT_NE(old, 0);
    EXPECT_EQ(toolkit->windowOf(controls().hosted), old);
    EXPECT_EQ(toolkit->windows().widgetOf(old), &widget("hosted"));
  });
  EXPECT_EQ(toolkit->windows().widgetOf(old), nullptr);
  EXPECT_THAT(toolkit->childWindows(old), IsEmpty());
  EXPECT_EQ(toolkit->windowTitle(old, 10), "");
  EXPECT_FALSE(toolkit->isWindowEnabled(old));
  toolkit->enableWindow(old, true);
}

TEST_F(QtToolkit, ChildWindowsAreFoundByTheBeginningOfTheirTitle) {
  show([this] {
    QWidget list(&widget("slot"));
    list.setWindowTitle("CHSList");
    const auto children = toolkit->childWindows(toolkit->windowOf(controls().hosted));
    ASSERT_FALSE(children.empty());
    EXPECT_EQ(toolkit->windowTitle(children.front(), 4), "CHSL");
    toolkit->enableWindow(children.front(), false);
    EXPECT_FALSE(toolkit->isWindowEnabled(children.front()));
    toolkit->enableWindow(children.front(), true);
    EXPECT_TRUE(list.isEnabled());
  });
}

/// The window system may call the closed list of a page the active window when the window around has gone.
TEST_F(QtToolkit, NoWindowStandsOverADropDownListThatHasClosed) {
  auto host = std::make_unique<QWidget>();
  auto page = std::make_unique<QWidget>(host.get());
  QComboBox box(page.get());
  box.addItems({"north", "south"});
  host->show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(host.get()));
  QTest::mouseClick(&box, Qt::LeftButton);
  QTest::keyClick(box.view(), Qt::Key_Return);
  EXPECT_EQ(widgets::QtToolkit::activeWindow(), host.get());
  page->hide();
  page->setParent(nullptr);
  host.reset();
  QCoreApplication::processEvents();
  EXPECT_EQ(widgets::QtToolkit::activeWindow(), nullptr);
}

TEST_F(QtToolkit, PixelHasFifteenTwips) {
  EXPECT_EQ(toolkit->twipsPerPixelX(), 15);
  EXPECT_EQ(toolkit->twipsPerPixelY(), 15);
}

}  // namespace
}  // namespace vlclientui::test
