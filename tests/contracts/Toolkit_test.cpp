#include "contracts/Toolkit.h"

#include <gtest/gtest.h>

#include "headless/HeadlessToolkit.h"

namespace vlclientui {
namespace {

TEST(Toolkit, CountsTheMessagesThatItShowed) {
  headless::HeadlessToolkit toolkit;
  EXPECT_EQ(toolkit.messageCount(), 0U);
  toolkit.showMessage({"one", ""});
  toolkit.showMessage({"two", ""});
  EXPECT_EQ(toolkit.messageCount(), 2U);
}

TEST(Toolkit, CountsAMessageBeforeAnybodyAnswersIt) {
  headless::HeadlessToolkit toolkit;
  std::size_t counted = 0;
  toolkit.onMessage([&](const MessageBox&) { counted = toolkit.messageCount(); });
  toolkit.showMessage({"one", ""});
  EXPECT_EQ(counted, 1U);
}

TEST(Toolkit, NamesTheAnswersOfAPersonAsRunFilesWriteThem) {
  EXPECT_STREQ(wordOf(MessageAnswer::Ok), "Ok");
  EXPECT_STREQ(wordOf(MessageAnswer::Cancel), "Cancel");
  EXPECT_STREQ(wordOf(MessageAnswer::Yes), "Yes");
  EXPECT_STREQ(wordOf(MessageAnswer::No), "No");
  EXPECT_STREQ(wordOf(static_cast<MessageAnswer>(99)), "");
}

}  // namespace
}  // namespace vlclientui
