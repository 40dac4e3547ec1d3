#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

class EnginePage : public EngineTest {
 protected:
  void give(const std::string& attributes, const std::string& form, const std::string& data) {
    engine->AttributeDefinition(attributes);
    engine->FormDefinition(form);
    engine->DataXml(data);
    engine->DataRootPath("//");
  }

  /// Shows a page inside a window as its holders do.
  void showEmbedded() {
    engine->EmbeddedMode(true);
    give("<V><A A_LIST_='x=Ex;y=Why'/></V>", "<V><A/><B/></V>", "<V><A>x</A><B>1</B></V>");
    engine->ParentWindow(hostWindow);
    engine->Top(8);
    engine->Left(5);
    engine->Width(405);
    engine->Height(300);
    ASSERT_TRUE(engine->Show());
  }
};

TEST_F(EnginePage, WithoutAParentItGetsAWindowOfItsOwn) {
  engine->ModalFrame(false);
  engine->Caption("Service Properties");
  give("<V><A/></V>", "<V><A A_LABEL_='Title'/></V>", "<V><A>Alps</A></V>");
  ASSERT_TRUE(engine->Show());
  ASSERT_EQ(surfaces->windows().size(), 1U);
  const auto& window = surfaces->windows()[0];
  EXPECT_EQ(window.caption, "Service Properties");
  EXPECT_EQ(window.frame, WindowFrame::Resizable);
  EXPECT_EQ(window.form->findField("A")->label, "Title");
  EXPECT_EQ(window.form->findField("A")->value, "Alps");
}

TEST_F(EnginePage, AFrameOfADialogIsTheUsualOne) {
  give("", "<V><A/></V>", "<V><A/></V>");
  ASSERT_TRUE(engine->Show());
  EXPECT_EQ(surfaces->windows()[0].frame, WindowFrame::Modal);
}

TEST_F(EnginePage, ShowReturnsWhenItsOwnWindowIsClosed) {
  std::vector<std::string> order;
  surfaces->setWindowScript([&](const headless::HeadlessWindow&) { order.emplace_back("open"); });
  give("", "<V><A/></V>", "<V><A/></V>");
  ASSERT_TRUE(engine->Show());
  order.emplace_back("closed");
  EXPECT_EQ(order, (std::vector<std::string>{"open", "closed"}));
}

TEST_F(EnginePage, TheHolderMayReleaseItWhileItsWindowIsOpen) {
  surfaces->setWindowScript([this](const headless::HeadlessWindow&) { engine.reset(); });
  give("", "<V><A/></V>", "<V><A/></V>");
  auto* raw = engine.get();
  EXPECT_TRUE(raw->Show());
  EXPECT_TRUE(surfaces->surfaces().empty());
}

TEST_F(EnginePage, StandsEmbeddedInItsParentAtItsPlace) {
  showEmbedded();
  EXPECT_EQ(surface().geometry(), (PixelRectangle{5, 8, 405, 300}));
  EXPECT_EQ(surface().form()->findField("A")->value, "Ex");
  EXPECT_FALSE(surface().title().starts_with("CHS"));
}

TEST_F(EnginePage, EmbeddedWithoutAParentIsNotShown) {
  engine->EmbeddedMode(true);
  give("", "<V><A/></V>", "<V><A/></V>");
  EXPECT_FALSE(engine->Show());
  EXPECT_TRUE(surfaces->windows().empty());
}

TEST_F(EnginePage, DocumentsThatMakeNoPageAreNotShown) {
  EXPECT_FALSE(engine->Show());
  give("<V", "<V><A/></V>", "<V><A/></V>");
  EXPECT_FALSE(engine->Show());
  give("", "<V><A></V>", "<V><A/></V>");
  EXPECT_FALSE(engine->Show());
  give("", "<V><A/></V>", "no xml");
  EXPECT_FALSE(engine->Show());
  give("", "<V><A A_KIND_='knob'/></V>", "<V><A/></V>");
  EXPECT_FALSE(engine->Show());
  EXPECT_TRUE(surfaces->windows().empty());
}

TEST_F(EnginePage, TheReadOnlyOptionMakesEveryFieldReadOnly) {
  ASSERT_TRUE(engine->SetOption("readonly", "true"));
  showEmbedded();
  EXPECT_TRUE(surface().form()->findField("A")->readOnly);
}

TEST_F(EnginePage, ThePagesScrollBarFollowsItsOption) {
  ASSERT_TRUE(engine->SetOption("ShowVScrollBar", "False"));
  showEmbedded();
  EXPECT_FALSE(surface().pageScrollBar());
  ASSERT_TRUE(engine->SetOption("ShowVScrollBar", "True"));
  EXPECT_TRUE(surface().pageScrollBar());
}

TEST_F(EnginePage, PropertiesReadBackAsGiven) {
  give("<V> <A/></V>", "<F/>", "<V>\r\n<A/></V>");
  EXPECT_EQ(engine->AttributeDefinition(), "<V> <A/></V>");
  EXPECT_EQ(engine->FormDefinition(), "<F/>");
  EXPECT_EQ(engine->DataXml(), "<V>\r\n<A/></V>");
}

TEST_F(EnginePage, WithoutEditsTheResultIsTheDataAsGiven) {
  showEmbedded();
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), "<V><A>x</A><B>1</B></V>");
}

TEST_F(EnginePage, NewDataReplaceTheShownOnes) {
  showEmbedded();
  engine->DataXml("<V><A>y</A><B>2</B></V>");
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(surface().form()->findField("A")->value, "Why");
  EXPECT_EQ(engine->GetResultXml(), "<V><A>y</A><B>2</B></V>");
}

TEST_F(EnginePage, DataThatMakeNoPageLeaveTheShownValuesAndCommitTells) {
  showEmbedded();
  engine->DataXml("<V>");
  EXPECT_FALSE(engine->Commit());
  EXPECT_EQ(surface().form()->findField("A")->value, "Ex");
  engine->DataXml("<V><A>y</A></V>");
  EXPECT_TRUE(engine->Commit());
}

TEST_F(EnginePage, AFieldIsFoundByItsNameBehindAnAt) {
  showEmbedded();
  const auto control = engine->FindControl("@A");
  ASSERT_TRUE(control);
  EXPECT_EQ(control->Text(), "Ex");
  EXPECT_EQ(control->ListCount(), 2);
  EXPECT_EQ(control->List(0), "Ex");
  EXPECT_EQ(control->List(1), "Why");
}

TEST_F(EnginePage, AFieldThatThePageLacksIsNotFound) {
  EXPECT_EQ(engine->FindControl("@A"), nullptr);
  showEmbedded();
  EXPECT_EQ(engine->FindControl("@C"), nullptr);
  EXPECT_EQ(engine->FindControl("A"), nullptr);
  EXPECT_EQ(engine->FindControl(""), nullptr);
}

TEST_F(EnginePage, AnEntryThatAListLacksIsAFailure) {
  showEmbedded();
  const auto control = engine->FindControl("@A");
  EXPECT_THROW((void)control->List(2), RuntimeFailure);
  EXPECT_THROW((void)control->List(-1), RuntimeFailure);
}

TEST_F(EnginePage, HidingAndDisablingAFieldShowsAtOnceAndLastsOverNewData) {
  showEmbedded();
  engine->FindControl("@A")->Visible(false);
  engine->FindControl("@B")->Enabled(false);
  EXPECT_FALSE(surface().form()->findField("A")->visible);
  EXPECT_FALSE(surface().form()->findField("B")->enabled);
  engine->DataXml("<V><A>y</A><B>2</B></V>");
  EXPECT_FALSE(surface().form()->findField("A")->visible);
  EXPECT_FALSE(surface().form()->findField("B")->enabled);
  EXPECT_TRUE(surface().form()->findField("B")->visible);
}

TEST_F(EnginePage, AFieldOfAReleasedEngineFails) {
  showEmbedded();
  const auto control = engine->FindControl("@A");
  engine->ParentWindow(0);
  engine.reset();
  EXPECT_THROW((void)control->Text(), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::engine
