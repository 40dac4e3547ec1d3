#include "viewpoint/ViewPoint.h"

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"
#include "viewpoint/ViewPointDialogForm.h"

namespace vlclientui {
namespace {

TEST(ViewPoint, PageAndDialogHaveCaptionsOfTheirOwn) {
  headless::HeadlessToolkit toolkit;
  EXPECT_EQ(ViewPoint(toolkit).caption(), "View Point");
  EXPECT_EQ(ViewPointDialogForm(toolkit).caption(), "ViewPoint");
}

}  // namespace
}  // namespace vlclientui
