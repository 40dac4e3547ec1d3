#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

using Names = std::vector<std::string>;

class EngineList : public EngineTest {};

TEST_F(EngineList, ShowsItsRowsInAWindowWhoseTitleBeginsWithChs) {
  showList({"Roads/", "Terrain"});
  EXPECT_EQ(surface().rowNames(), (Names{"Roads", "Terrain"}));
  EXPECT_EQ(surface().title(), "CHSList");
  EXPECT_EQ(surface().geometry(), (PixelRectangle{0, 30, 405, 200}));
  EXPECT_TRUE(surface().visible());
}

TEST_F(EngineList, TakesItsColumnsAfterItsRowsTheSameWay) {
  ASSERT_TRUE(engine->SetOption("List_Values", "<list_values><a displayName='A' Bands='3'/></list_values>"));
  ASSERT_TRUE(engine->SetOption("List_Fields", listFields));
  engine->ParentWindow(hostWindow);
  ASSERT_TRUE(engine->Show());
  EXPECT_EQ(surface().rowCells("A"), (Names{"A", "", "3"}));
}

TEST_F(EngineList, MakesNoWindowBeforeShow) {
  engine->SetOption("List_Fields", listFields);
  engine->SetOption("List_Values", listValues({"A"}));
  engine->ParentWindow(hostWindow);
  engine->Visible(true);
  EXPECT_TRUE(surfaces->surfaces().empty());
}

TEST_F(EngineList, IsNotShownWithoutAParent) {
  engine->SetOption("List_Values", listValues({"A"}));
  EXPECT_FALSE(engine->Show());
}

TEST_F(EngineList, IsNotShownOverDataThatAreNoXml) {
  engine->SetOption("List_Values", listValues({"A"}));
  engine->ParentWindow(hostWindow);
  engine->DataXml("<root>");
  EXPECT_FALSE(engine->Show());
}

TEST_F(EngineList, RefusesOptionsThatAreMalformedOrUnknown) {
  EXPECT_FALSE(engine->SetOption("List_Fields", "<list_fields>"));
  EXPECT_FALSE(engine->SetOption("List_Values", "no xml"));
  EXPECT_FALSE(engine->SetOption("readonly", "perhaps"));
  EXPECT_FALSE(engine->SetOption("ShowVScrollBar", ""));
  EXPECT_FALSE(engine->SetOption("List_Colours", "<list_colours/>"));
}

TEST_F(EngineList, MalformedRowsLeaveTheShownOnes) {
  showList({"A"});
  EXPECT_FALSE(engine->SetOption("List_Values", "<list_values><a></list_values>"));
  EXPECT_EQ(surface().rowNames(), (Names{"A"}));
}

TEST_F(EngineList, NewRowsReplaceTheShownOnes) {
  showList({"A"});
  ASSERT_TRUE(engine->SetOption("List_Values", listValues({"B", "C"})));
  EXPECT_EQ(surface().rowNames(), (Names{"B", "C"}));
}

TEST_F(EngineList, NewColumnsReplaceTheShownOnes) {
  showList({"A"});
  ASSERT_TRUE(engine->SetOption("List_Fields", "<list_fields><Name width='1'/></list_fields>"));
  EXPECT_EQ(surface().list()->columnCount(), 1U);
}

TEST_F(EngineList, AClickReportsTheNameAndTheRoot) {
  showList({"Roads/", "Terrain"});
  record();
  surface().userClicksRow("Terrain");
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].EventName, "Click");
  EXPECT_EQ(events[0].ItemName, "Terrain");
  EXPECT_EQ(events[0].Value, "/");
  EXPECT_EQ(events[0].ControlName, "");
  EXPECT_EQ(events[0].KeyCode, 0);
}

TEST_F(EngineList, EventsComeFromTheEngineItself) {
  showList({"A"});
  const Plexa* raiser = nullptr;
  engine->Notify.connect([&](Plexa& plexa, const PlexaEvent&) { raiser = &plexa; });
  surface().userClicksRow("A");
  EXPECT_EQ(raiser, engine.get());
}

TEST_F(EngineList, ADoubleClickReportsAClickFirst) {
  showList({"Terrain"});
  record();
  surface().userDoubleClicksRow("Terrain");
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].EventName, "Click");
  EXPECT_EQ(events[1].EventName, "DblClick");
  EXPECT_EQ(events[1].ItemName, "Terrain");
  EXPECT_EQ(events[1].Value, "/");
  EXPECT_EQ(events[1].KeyCode, 0);
}

TEST_F(EngineList, EnterIsADoubleClickOnTheSelectedRow) {
  showList({"A", "B"});
  surface().userClicksRow("B");
  record();
  surface().userPressesEnter();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].EventName, "DblClick");
  EXPECT_EQ(events[0].ItemName, "B");
}

TEST_F(EngineList, BelowTheRootTheParentPathLeadsToTheRow) {
  showList({"Roads/"});
  answerWith({"2004/"});
  surface().userDoubleClicksRow("Roads");
  answerWith({"West"});
  surface().userDoubleClicksRow("2004");
  events.clear();
  surface().userClicksRow("West");
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].Value, "/Roads/2004");
  EXPECT_EQ(events[0].ItemName, "West");
}

TEST_F(EngineList, TheDoubleClickItselfStillReportsTheOldPath) {
  showList({"Roads/"});
  answerWith({"West"});
  surface().userDoubleClicksRow("Roads");
  EXPECT_EQ(events.back().EventName, "DblClick");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, BackspaceGoesUpWhenRowsCome) {
  showList({"Roads/"});
  answerWith({"2004/"});
  surface().userDoubleClicksRow("Roads");
  surface().userDoubleClicksRow("2004");
  answerWith({"2004/"});
  surface().userPressesBackspace();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].EventName, "DblClick");
  EXPECT_EQ(events[0].KeyCode, 8);
  EXPECT_EQ(events[0].Value, "/Roads/2004");
  surface().userClicksRow("2004");
  EXPECT_EQ(events.back().Value, "/Roads");
  surface().userPressesBackspace();
  surface().userClicksRow("2004");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, BackspaceAtTheRootIsNotReported) {
  showList({"Roads/"});
  record();
  surface().userPressesBackspace();
  EXPECT_TRUE(events.empty());
}

TEST_F(EngineList, BackspaceWithoutNewRowsStaysWhereItWas) {
  showList({"Roads/"});
  answerWith({"West"});
  surface().userDoubleClicksRow("Roads");
  engine->Notify.disconnectAll();
  record();
  surface().userPressesBackspace();
  surface().userClicksRow("West");
  EXPECT_EQ(events.back().Value, "/Roads");
}

TEST_F(EngineList, BackspaceWorksInAFolderWithoutRows) {
  showList({"Roads/"});
  answerWith({});
  surface().userDoubleClicksRow("Roads");
  answerWith({"Roads/"});
  surface().userPressesBackspace();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].KeyCode, 8);
}

TEST_F(EngineList, ADoubleClickOnAFolderThatBringsNoRowsStaysWhereItWas) {
  showList({"Roads/", "A"});
  record();
  surface().userDoubleClicksRow("Roads");
  surface().userClicksRow("A");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, ADoubleClickOnAServiceWhoseHandlerBringsRowsWentIntoTheFolderOfItsName) {
  showList({"Roads/", "Roads"});
  answerWith({"West"});
  surface().userDoubleClicksRow(1);
  EXPECT_EQ(events.back().Value, "/");
  surface().userClicksRow("West");
  EXPECT_EQ(events.back().Value, "/Roads");
  answerWith({"Roads/", "Roads"});
  surface().userPressesBackspace();
  surface().userClicksRow(1);
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, ADoubleClickOnAServiceWhoseHandlerBringsNoRowsGoesNowhere) {
  showList({"Roads/", "A"});
  record();
  surface().userDoubleClicksRow("A");
  surface().userClicksRow("A");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, AFolderBelowAFolderOfItsNameIsAnotherPlaceThoughItsRowsAreTheSame) {
  showList({"Roads/"});
  answerWith({"Roads/"});
  surface().userDoubleClicksRow("Roads");
  surface().userDoubleClicksRow("Roads");
  surface().userClicksRow("Roads");
  EXPECT_EQ(events.back().Value, "/Roads/Roads");
}

TEST_F(EngineList, ARowOfTwoPointsWhoseHandlerBringsRowsWentUp) {
  showList({"Roads/"});
  answerWith({"..", "2004/"});
  surface().userDoubleClicksRow("Roads");
  surface().userDoubleClicksRow("2004");
  surface().userDoubleClicksRow("..");
  surface().userClicksRow("2004");
  EXPECT_EQ(events.back().Value, "/Roads");
  surface().userDoubleClicksRow("..");
  surface().userDoubleClicksRow("..");
  surface().userClicksRow("2004");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, AFolderWithoutANameIsAPlaceOfItsOwn) {
  showList({"Roads/"});
  answerWith({"", "West"});
  surface().userDoubleClicksRow("Roads");
  surface().userDoubleClicksRow("");
  surface().userClicksRow("West");
  EXPECT_EQ(events.back().Value, "/Roads/");
  surface().userPressesBackspace();
  surface().userClicksRow("West");
  EXPECT_EQ(events.back().Value, "/Roads");
}

TEST_F(EngineList, MalformedRowsFromTheHandlerMoveNothing) {
  showList({"Roads/"});
  record();
  engine->Notify.connect([](Plexa& raiser, const PlexaEvent&) { raiser.SetOption("List_Values", "<oops"); });
  surface().userDoubleClicksRow("Roads");
  surface().userClicksRow("Roads");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, RowsSetTwiceByOneHandlerMoveOnce) {
  showList({"Roads/"});
  record();
  engine->Notify.connect([](Plexa& raiser, const PlexaEvent& event) {
    if (event.EventName != "DblClick") return;
    raiser.SetOption("List_Values", listValues({"x"}));
    raiser.SetOption("List_Values", listValues({"y"}));
  });
  surface().userDoubleClicksRow("Roads");
  surface().userClicksRow("y");
  EXPECT_EQ(events.back().Value, "/Roads");
}

TEST_F(EngineList, RowsSetOutsideAnEventStayAtThePlace) {
  showList({"Roads/"});
  answerWith({"West"});
  surface().userDoubleClicksRow("Roads");
  engine->SetOption("List_Values", listValues({"East"}));
  surface().userClicksRow("East");
  EXPECT_EQ(events.back().Value, "/Roads");
}

TEST_F(EngineList, RowsThatComeAfterTheHandlerReturnedMoveNothing) {
  showList({"Roads/"});
  record();
  surface().userDoubleClicksRow("Roads");
  engine->SetOption("List_Values", listValues({"Late"}));
  surface().userClicksRow("Late");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, ANewEngineIsAtTheRoot) {
  showList({"Roads/"});
  answerWith({"West"});
  surface().userDoubleClicksRow("Roads");
  engine->ParentWindow(0);
  engine = factory.createPlexa();
  showList({"Roads/"});
  record();
  surface().userClicksRow("Roads");
  EXPECT_EQ(events.back().Value, "/");
}

TEST_F(EngineList, MessageRowsReportLikeOtherRows) {
  engine->SetOption("List_Fields", listFields);
  engine->SetOption("List_Values",
                    "<list_values><Europe icon=\"\" displayName=\"(Server not found)\"/></list_values>");
  engine->ParentWindow(hostWindow);
  ASSERT_TRUE(engine->Show());
  record();
  surface().userDoubleClicksRow("(Server not found)");
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[1].ItemName, "(Server not found)");
  EXPECT_EQ(events[1].Value, "/");
}

TEST_F(EngineList, AHandlerMayReleaseTheEngine) {
  showList({"Roads/"});
  engine->Notify.connect([this](Plexa&, const PlexaEvent&) {
    engine->ParentWindow(0);
    engine.reset();
  });
  surface().userDoubleClicksRow("Roads");
  EXPECT_TRUE(surfaces->surfaces().empty());
}

TEST_F(EngineList, AHandlerMayPutAnotherEngineInItsPlace) {
  showList({"Roads/"});
  engine->Notify.connect([this](Plexa&, const PlexaEvent&) {
    engine = factory.createPlexa();
    showList({"New"});
  });
  surface().userClicksRow("Roads");
  EXPECT_EQ(surfaces->surfaces().size(), 1U);
  EXPECT_EQ(surface().rowNames(), (Names{"New"}));
}

TEST_F(EngineList, AHandlersFailureReachesTheRaiserWithThePlaceKeptRight) {
  showList({"Roads/"});
  record();
  engine->Notify.connect([](Plexa& raiser, const PlexaEvent& event) {
    if (event.EventName != "DblClick") return;
    raiser.SetOption("List_Values", listValues({"West"}));
    throw RuntimeFailure("after the rows");
  });
  EXPECT_THROW(surface().userDoubleClicksRow("Roads"), RuntimeFailure);
  surface().userClicksRow("West");
  EXPECT_EQ(events.back().Value, "/Roads");
}

TEST_F(EngineList, APropertyWrittenFromCodeRaisesNothing) {
  showList({"A"});
  record();
  engine->SetOption("List_Values", listValues({"B"}));
  engine->DataXml(emptyPage);
  engine->Commit();
  engine->Visible(false);
  EXPECT_TRUE(events.empty());
}

TEST_F(EngineList, GeometryAndVisibilityFollowAfterShow) {
  showList({"A"});
  engine->Left(5);
  engine->Height(111);
  engine->Visible(false);
  EXPECT_EQ(surface().geometry(), (PixelRectangle{5, 30, 405, 111}));
  EXPECT_FALSE(surface().visible());
}

TEST_F(EngineList, ParentZeroTakesItOutOfItsWindowAndAnotherParentPutsItBack) {
  showList({"A"});
  engine->ParentWindow(0);
  EXPECT_EQ(surfaces->surfaceIn(hostWindow), nullptr);
  engine->ParentWindow(0);
  engine->ParentWindow(hostWindow);
  EXPECT_EQ(surface().rowNames(), (Names{"A"}));
}

TEST_F(EngineList, ReleasingAnAttachedEngineTakesItsWindowAway) {
  std::vector<WindowHandle> gone;
  surfaces->setChildWindowHooks({[](WindowHandle, const std::string&) { return WindowHandle{9}; },
                                 [&](WindowHandle window) { gone.push_back(window); }});
  showList({"A"});
  engine.reset();
  EXPECT_EQ(gone, (std::vector<WindowHandle>{9}));
}

TEST_F(EngineList, FindsTheFirstRowOfANameOnceItIsShown) {
  const auto& shown = dynamic_cast<const Engine&>(*engine);
  EXPECT_FALSE(shown.showsList());
  EXPECT_FALSE(shown.rowNamed("A"));
  showList({"B", "A", "A"});
  EXPECT_TRUE(shown.showsList());
  EXPECT_EQ(shown.rowNamed("A"), 1U);
  EXPECT_FALSE(shown.rowNamed("C"));
}

TEST_F(EngineList, HasNoFieldAtAnyPath) {
  showList({"A"});
  EXPECT_FALSE(dynamic_cast<const Engine&>(*engine).fieldAt("//A"));
}

}  // namespace
}  // namespace vlclientui::engine
