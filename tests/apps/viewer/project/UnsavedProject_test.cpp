// Changes that no project holds.
#include <fstream>

#include "apps/viewer/ViewerProjectFixture.h"
#include "viewer/project/ProjectDocument.h"

namespace vlclientui::test {
namespace {

using viewer::person::find;
using viewer::person::press;

constexpr const char* geoid = "World/EGM96_Geoid";
constexpr const char* empty = "<VLProject Version='1'><Services/></VLProject>";

class UnsavedProject : public ViewerProjectFixture {
 protected:
  [[nodiscard]] bool isMarked() const { return window_->isWindowModified(); }
  void makeEmptyProject() const { std::ofstream(file("empty.VLProject")) << empty; }
  /// What `begin` begins replaces the map, once a person has answered.
  void seeThatItAsks(const std::function<void()>& begin) {
    pickSample(geoid);
    act(begin);
    answerUnsaved(QMessageBox::Cancel);
    seeNoWindow();
    act([this, begin] {
      EXPECT_EQ(rows().size(), 1U) << "nothing was replaced";
      EXPECT_TRUE(isMarked());
      EXPECT_FALSE(map().image().reference.isEmpty()) << "it stays picked";
      begin();
    });
    answerUnsaved(QMessageBox::Discard);
    see("another map", [this] { return rows().empty(); });
    act([this] { EXPECT_FALSE(isMarked()); });
    run();
  }
  /// No session can be written from now on.
  void blockSession() const { std::filesystem::create_directory(file("session.VLProject")); }
};

TEST_F(UnsavedProject, IsMarkedInTheTitleUntilItIsSaved) {
  EXPECT_FALSE(isMarked());
  pickSample(geoid);
  EXPECT_TRUE(isMarked());
  saveAs("valley");
  EXPECT_FALSE(isMarked());
  EXPECT_EQ(window_->windowTitle(), "valley[*] \u2013 Viewer");
  action("ToggleVisible").trigger();
  EXPECT_TRUE(isMarked());
  action("ToggleVisible").trigger();
  EXPECT_FALSE(isMarked()) << "it is again as it was saved";
  map().zoom(2);
  EXPECT_FALSE(isMarked()) << "looking around changes nothing";
  action("SystemWebMercator").trigger();
  EXPECT_TRUE(isMarked());
  action("SaveProject").trigger();
  EXPECT_FALSE(isMarked());
}

TEST_F(UnsavedProject, IsAskedAboutBeforeANewOneBegins) {
  seeThatItAsks([this] { action("NewProject").trigger(); });
}

TEST_F(UnsavedProject, IsAskedAboutBeforeAnotherOneIsOpened) {
  makeEmptyProject();
  seeThatItAsks([this] { window_->openFile(file("empty.VLProject")); });
}

TEST_F(UnsavedProject, IsAskedAboutBeforeAnotherOneIsDropped) {
  makeEmptyProject();
  seeThatItAsks([this] { drop({file("empty.VLProject")}); });
}

TEST_F(UnsavedProject, IsNotAskedAboutWhereTheOtherOneCannotBeRead) {
  pickSample(geoid);
  std::ofstream(file("bad.VLProject")) << "<Other/>";
  act([this] { window_->openFile(file("bad.VLProject")); });
  seeMessage("Project", "it holds no VLProject");
  run();
  EXPECT_EQ(rows().size(), 1U);
}

TEST_F(UnsavedProject, IsSavedFromTheQuestion) {
  pickSample(geoid);
  saveAs("valley");
  action("ToggleVisible").trigger();
  act([this] { action("NewProject").trigger(); });
  answerUnsaved(QMessageBox::Save);
  see("a new map", [this] { return rows().empty(); });
  run();
  const viewer::Project saved = viewer::openProject(*host_.platform->xml, file("valley.VLProject"));
  ASSERT_EQ(saved.services.size(), 1U);
  EXPECT_FALSE(saved.services.front().state.isVisible);
}

TEST_F(UnsavedProject, StaysWhereSavingFromTheQuestionIsCanceled) {
  pickSample(geoid);
  act([this] { action("NewProject").trigger(); });
  answerUnsaved(QMessageBox::Save);
  see("the question for a file", [] { return window("Save the project").isVisible(); });
  act([] { press(window("Save the project"), Qt::Key_Escape); });
  seeNoWindow();
  run();
  EXPECT_EQ(rows().size(), 1U);
}

TEST_F(UnsavedProject, ComesBackWithItsNameAndItsMarkAfterARestart) {
  startAgain();
  pickSample(geoid);
  saveAs("valley");
  window_->close();
  startAgain();
  EXPECT_EQ(window_->windowTitle(), "valley[*] \u2013 Viewer");
  EXPECT_FALSE(isMarked());
  action("ToggleVisible").trigger();
  EXPECT_TRUE(window_->close()) << "the session keeps it, so nothing is asked";
  startAgain();
  EXPECT_EQ(window_->windowTitle(), "valley[*] \u2013 Viewer");
  EXPECT_TRUE(isMarked());
  action("SaveProject").trigger();
  EXPECT_FALSE(isMarked());
}

TEST_F(UnsavedProject, IsMarkedAfterARestartWhereItsFileIsGone) {
  startAgain();
  pickSample(geoid);
  saveAs("valley");
  window_->close();
  std::filesystem::remove(file("valley.VLProject"));
  startAgain();
  EXPECT_TRUE(isMarked());
}

TEST_F(UnsavedProject, IsOneOfThatWhichItsSessionTellsAndOfNoOther) {
  makeEmptyProject();
  std::ofstream(file("viewer.ini")) << "[General]\nopenProject=" << file("empty.VLProject").string() << "\n";
  std::ofstream(file("session.VLProject"))
      << "<VLProject Version='1'><Services><Service Reference='ImageService://127.0.0.1/" << geoid
      << "'/></Services></VLProject>";
  startAgain();
  EXPECT_EQ(rows().size(), 1U);
  EXPECT_EQ(window_->windowTitle(), "Viewer[*]");
  EXPECT_TRUE(isMarked());
}

TEST_F(UnsavedProject, IsOneOfTheProjectThatWasOpenAlsoWithoutAnEnd) {
  startAgain();
  pickSample(geoid);
  saveAs("valley");
  const auto isKept = [this] {
    return std::filesystem::exists(file("session.VLProject")) &&
           viewer::openProject(*host_.platform->xml, file("session.VLProject")).file ==
               file("valley.VLProject").string();
  };
  EXPECT_TRUE(QTest::qWaitFor(isKept, 20'000));
}

TEST_F(UnsavedProject, IsAskedAboutAtTheEndWhereTheSessionCannotBeKept) {
  startAgain();
  pickSample(geoid);
  blockSession();
  act([this] { window_->close(); });
  answerUnsaved(QMessageBox::Cancel);
  seeNoWindow();
  act([this] {
    EXPECT_TRUE(window_->isVisible());
    window_->close();
  });
  answerUnsaved(QMessageBox::Discard);
  see("the end", [this] { return !window_->isVisible(); });
  run();
}

TEST_F(UnsavedProject, IsKeptAtTheEndWhereItCouldNotBeKeptBefore) {
  startAgain();
  pickSample(geoid);
  blockSession();
  const auto couldNot = [this] { return told().startsWith("The session cannot be kept"); };
  ASSERT_TRUE(QTest::qWaitFor(couldNot, 20'000));
  std::filesystem::remove(file("session.VLProject"));
  EXPECT_TRUE(window_->close());
  EXPECT_EQ(viewer::openProject(*host_.platform->xml, file("session.VLProject")).services.size(), 1U);
}

TEST_F(UnsavedProject, AsksBeforeASavedOneReplacesAFileWhoseNameWasNotTypedWhole) {
  std::ofstream(file("valley.VLProject")) << empty;
  pickSample(geoid);
  act([this] { action("SaveProjectAs").trigger(); });
  see("the question for a file", [] { return window("Save the project").isVisible(); });
  act([this] {
    QWidget& dialog = window("Save the project");
    viewer::person::typeInto(find<QLineEdit>(dialog, "fileNameEdit"),
                             QString::fromStdString(file("valley").string()));
    press(dialog, Qt::Key_Return);
  });
  see("the question",
      [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr; });
  act([] {
    auto& question = dynamic_cast<QMessageBox&>(modalWindow());
    EXPECT_TRUE(question.text().contains("valley.VLProject exists. Replace it?"));
    viewer::person::click(*question.button(QMessageBox::No));
  });
  seeNoWindow();
  run();
  EXPECT_TRUE(viewer::openProject(*host_.platform->xml, file("valley.VLProject")).services.empty());
  EXPECT_TRUE(isMarked());
}

}  // namespace
}  // namespace vlclientui::test
