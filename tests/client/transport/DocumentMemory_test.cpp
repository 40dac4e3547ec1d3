#include "client/transport/DocumentMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Header = HttpHeader;

HttpAnswer document(const std::string& body, std::vector<HttpHeader> headers = {{"ETag", "\"1\""}}) {
  HttpAnswer answer;
  answer.status = 200;
  answer.body = body;
  answer.headers = std::move(headers);
  return answer;
}

TEST(DocumentMemory, AsksByTagAndDateOfWhatItKnows) {
  DocumentMemory memory(10000);
  memory.keep("a", document("text", {{"etag", "\"7\""}, {"LAST-MODIFIED", "Tue, 01 Sep 2026 10:00:00 GMT"}}));
  EXPECT_THAT(memory.conditions("a"),
              ElementsAre(Header{"If-None-Match", "\"7\""},
                          Header{"If-Modified-Since", "Tue, 01 Sep 2026 10:00:00 GMT"}));
}

TEST(DocumentMemory, AsksNothingOfWhatItDoesNotKnow) {
  DocumentMemory memory(10000);
  EXPECT_THAT(memory.conditions("a"), IsEmpty());
  EXPECT_FALSE(memory.confirmed("a"));
}

TEST(DocumentMemory, HandsOutTheWholeAnswerAgain) {
  DocumentMemory memory(10000);
  memory.keep("a", document("text"));
  const auto again = memory.confirmed("a");
  ASSERT_TRUE(again);
  EXPECT_EQ(again->status, 200);
  EXPECT_EQ(again->body, "text");
  EXPECT_EQ(again->header("ETag"), "\"1\"");
}

TEST(DocumentMemory, KeepsWholeAnswersAlone) {
  DocumentMemory memory(10000);
  HttpAnswer part = document("text");
  part.status = 206;
  memory.keep("a", part);
  EXPECT_THAT(memory.conditions("a"), IsEmpty());
}

TEST(DocumentMemory, KeepsNothingThatCannotBeAskedForOrMayNotBeKept) {
  DocumentMemory memory(10000);
  memory.keep("a", document("text", {}));
  memory.keep("b", document("text", {{"ETag", "\"1\""}, {"Cache-Control", "private, No-Store"}}));
  memory.keep("c", document("text", {{"ETag", "\"1\""}, {"Vary", "*"}}));
  EXPECT_EQ(memory.bytes(), 0U);
}

TEST(DocumentMemory, ForgetsTheFormerAnswerForANewOne) {
  DocumentMemory memory(10000);
  memory.keep("a", document("text"));
  memory.keep("a", document("another text", {{"ETag", "\"2\""}}));
  EXPECT_EQ(memory.confirmed("a")->body, "another text");
  memory.keep("a", document("may not be kept", {}));
  EXPECT_FALSE(memory.confirmed("a"));
  EXPECT_EQ(memory.bytes(), 0U);
}

TEST(DocumentMemory, ForgetsWhatWasNotUsedForLongest) {
  DocumentMemory memory(1000);
  for (const char* const key : {"a", "b", "c", "d"}) memory.keep(key, document(std::string(200, 'x')));
  EXPECT_FALSE(memory.conditions("a").empty());
  memory.keep("e", document(std::string(200, 'x')));
  EXPECT_TRUE(memory.confirmed("a"));
  EXPECT_FALSE(memory.confirmed("b"));
  EXPECT_LE(memory.bytes(), 1000U);
}

TEST(DocumentMemory, KeepsNoDocumentThatWouldDriveOutAllOthers) {
  DocumentMemory memory(1000);
  memory.keep("a", document(std::string(251, 'x')));
  EXPECT_EQ(memory.bytes(), 0U);
}

}  // namespace
}  // namespace vlclientui::client
