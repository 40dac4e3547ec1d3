#include "properties/ServicePropertiesDialogForm.h"

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"

namespace vlclientui {
namespace {

TEST(ServicePropertiesDialogForm, StartsFromItsDesignCaption) {
  headless::HeadlessToolkit toolkit;
  EXPECT_EQ(ServicePropertiesDialogForm(toolkit).caption(), "Service Properties");
}

}  // namespace
}  // namespace vlclientui
