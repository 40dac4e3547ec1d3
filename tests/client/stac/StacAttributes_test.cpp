// What of an item's properties becomes an attribute that people see, order by and hand on.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacReader.h"

namespace vlclientui::client::stac {
namespace {

using Properties = std::vector<std::pair<std::string, std::string>>;

StacDocument documentWith(const std::string& text) {
  auto read = StacReader().read(text);
  const auto* problem = std::get_if<StacProblem>(&read);
  EXPECT_EQ(problem, nullptr) << problem->text;
  return problem == nullptr ? std::get<StacDocument>(std::move(read)) : StacDocument();
}

Properties attributesOf(const std::string& properties) {
  const StacDocument document =
      documentWith(R"({"type":"Feature","id":"a","properties":{)" + properties + "}}");
  return document.items.empty() ? Properties() : document.items.front().attributes;
}

std::string fillers(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "\"p" + std::to_string(i) + "\":" + std::to_string(i) + ",";
  return text;
}

std::string valueIn(const Properties& attributes, const std::string& name) {
  const auto found = std::ranges::find(attributes, name, &Properties::value_type::first);
  return found == attributes.end() ? "(none)" : found->second;
}

TEST(StacAttributes, KeepWhatMosaicsAreOrderedByBehindAnyNumberOfOthers) {
  const Properties found = attributesOf(
      fillers(500) + R"("datetime":"2021-07-14T10:00:00Z","eo:cloud_cover":12.5,"gsd":10,"last":1)");
  EXPECT_EQ(found.front(), (Properties::value_type{"datetime", "2021-07-14T10:00:00Z"}));
  EXPECT_EQ(valueIn(found, "eo:cloud_cover"), "12.5");
  EXPECT_EQ(valueIn(found, "gsd"), "10");
  EXPECT_EQ(valueIn(found, "last"), "(none)");
  EXPECT_EQ(valueIn(found, "p99"), "99");
  EXPECT_EQ(valueIn(found, "p100"), "(none)");
}

TEST(StacAttributes, TakeTheDateOfASpanBehindAnyNumberOfOthers) {
  const Properties found =
      attributesOf(fillers(200) + R"("start_datetime":"2020-01-01T00:00:00Z","end_datetime":"2020-12-31")");
  EXPECT_EQ(found.front(), (Properties::value_type{"datetime", "2020-01-01T00:00:00Z"}));
  EXPECT_EQ(valueIn(found, "end_datetime"), "2020-12-31");
}

TEST(StacAttributes, StayBoundedWhereANameIsRepeated) {
  std::string many = fillers(100);
  for (int i = 0; i < 500; ++i) many += R"("gsd":10,)";
  EXPECT_EQ(attributesOf(many + R"("x":1)").size(), 101U);
}

TEST(StacAttributes, HoldNoKeysThatAServerSignedIntoThem) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"https://h/a.tif?se=2030&sig=verysecret&sp=r", "https://h/a.tif?se=2030&sig=***&sp=r"},
      {"see https://ann:verysecret@h/a.tif", "see https://h/a.tif"},
      {"../a.tif?token=verysecret", "../a.tif?token=***"},
      {"se=2030&sig=verysecret", "se=2030&sig=***"},
      {"s3://bucket/a.tif?X-Amz-Signature=verysecret", "s3://bucket/a.tif?X-Amz-Signature=***"},
      {"a = b", "a = b"},
      {"x=1 & y=2", "x=1 & y=2"}};
  for (const auto& [told, shown] : rows) {
    EXPECT_EQ(valueIn(attributesOf(R"("link":")" + told + "\""), "link"), shown);
    EXPECT_EQ(valueIn(attributesOf(R"("link":["b",")" + told + "\"]"), "link"), "b, " + shown);
  }
}

TEST(StacAttributes, OfANameThatIsOneOfAKeyAreHiddenWhole) {
  const Properties found = attributesOf(
      R"("sas_token":"verysecret","msft:key":"verysecret","apiKey":4711,"datetime":"2021-07-14")");
  EXPECT_EQ(
      found,
      (Properties{{"datetime", "2021-07-14"}, {"sas_token", "***"}, {"msft:key", "***"}, {"apiKey", "***"}}));
}

TEST(StacAttributes, AreNamedByAnIdWithoutKeys) {
  const StacDocument document =
      documentWith(R"({"type":"Feature","id":"https://h/a?sig=verysecret","properties":{}})");
  ASSERT_EQ(document.items.size(), 1U);
  EXPECT_EQ(document.items.front().id, "https://h/a?sig=***");
}

TEST(StacAttributes, AndTheWordsOfACollectionHoldNoKeys) {
  const StacDocument document = documentWith(
      R"({"type":"Collection","id":"c","title":"T https://h/?key=verysecret","description":"D https://ann:b@h/",
          "license":"https://h/l?token=verysecret","links":[]})");
  EXPECT_EQ(document.title, "T https://h/?key=***");
  EXPECT_EQ(document.description, "D https://h/");
  EXPECT_EQ(document.license, "https://h/l?token=***");
}

}  // namespace
}  // namespace vlclientui::client::stac
