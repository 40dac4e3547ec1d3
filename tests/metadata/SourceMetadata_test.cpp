#include "metadata/SourceMetadata.h"

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"

namespace vlclientui {
namespace {

TEST(SourceMetadata, HasNoEngineBeforeItIsLoaded) {
  headless::HeadlessToolkit toolkit;
  EXPECT_EQ(SourceMetadata(toolkit).myPlexa, nullptr);
}

}  // namespace
}  // namespace vlclientui
