#include "widgets/WindowHandles.h"

#include <QVBoxLayout>
#include <QVariant>
#include <memory>

#include <gtest/gtest.h>

namespace vlclientui::widgets {
namespace {

TEST(WindowHandles, AWindowKeepsItsNumber) {
  WindowHandles handles;
  QWidget one;
  QWidget two;
  const WindowHandle handle = handles.handleOf(&one);
  EXPECT_NE(handle, 0);
  EXPECT_NE(handles.handleOf(&two), handle);
  EXPECT_EQ(handles.handleOf(&one), handle);
  EXPECT_EQ(handles.widgetOf(handle), &one);
}

TEST(WindowHandles, NoWindowIsZero) {
  WindowHandles handles;
  EXPECT_EQ(handles.handleOf(nullptr), 0);
  EXPECT_EQ(handles.widgetOf(0), nullptr);
  EXPECT_EQ(handles.widgetOf(99), nullptr);
}

TEST(WindowHandles, NumberOfADeadWindowNamesNoneAndIsNotGivenAgain) {
  WindowHandles handles;
  auto dead = std::make_unique<QWidget>();
  const WindowHandle old = handles.handleOf(dead.get());
  dead.reset();
  EXPECT_EQ(handles.widgetOf(old), nullptr);
  QWidget next;
  EXPECT_GT(handles.handleOf(&next), old);
}

TEST(WindowHandles, ChildrenComeTopmostFirst) {
  WindowHandles handles;
  QWidget parent;
  QWidget bottom(&parent);
  QWidget top(&parent);
  QWidget grandChild(&bottom);
  const auto children = handles.childrenOf(handles.handleOf(&parent));
  EXPECT_EQ(children, (std::vector{handles.handleOf(&top), handles.handleOf(&bottom)}));
}

TEST(WindowHandles, WhatStandsInASlotStandsInTheWindow) {
  WindowHandles handles;
  QWidget parent;
  QWidget slot(&parent);
  slot.setProperty(engineSlotProperty, true);
  QWidget surface(&slot);
  EXPECT_EQ(&surfacePlaceIn(parent), &slot);
  EXPECT_EQ(handles.childrenOf(handles.handleOf(&parent)), std::vector{handles.handleOf(&surface)});
}

TEST(WindowHandles, HiddenSlotsArePassedOverWhileAnotherCanBeSeen) {
  QWidget parent;
  QWidget side(&parent);
  QWidget hidden(&side);
  QWidget shown(&parent);
  for (QWidget* const slot : {&hidden, &shown}) slot->setProperty(engineSlotProperty, true);
  EXPECT_EQ(&surfacePlaceIn(parent), &hidden);
  side.hide();
  EXPECT_EQ(&surfacePlaceIn(parent), &shown);
  shown.hide();
  EXPECT_EQ(&surfacePlaceIn(parent), &hidden);
}

TEST(WindowHandles, WindowWithoutASlotTakesTheSurfaceItself) {
  QWidget parent;
  QWidget child(&parent);
  EXPECT_EQ(&surfacePlaceIn(parent), &parent);
}

}  // namespace
}  // namespace vlclientui::widgets
