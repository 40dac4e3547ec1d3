#include "contracts/controls/EntryNames.h"

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {
namespace {

const std::vector<std::string> entries{"a", "b", "a", "b #2", "#1", "a"};

TEST(EntryNames, NameEachEntrySoThatItIsFoundAgain) {
  for (std::size_t place = 0; place < entries.size(); ++place)
    EXPECT_EQ(placeOfEntry(entries, entryName(entries, place)), place) << place;
}

TEST(EntryNames, AreTextsWhereOneEntryHasThem) {
  EXPECT_EQ(entryName(entries, 1), "b");
  EXPECT_EQ(entryName(entries, 2), "a #2");
  EXPECT_EQ(placeOfEntry(entries, "b #2"), 3U) << "a text comes before a number";
}

TEST(EntryNames, AreRefusedWhereNoneOrSeveralHaveThem) {
  const auto reasonOf = [](const std::string& name) -> std::string {
    try {
      static_cast<void>(placeOfEntry(entries, name));
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return {};
  };
  EXPECT_EQ(reasonOf("a"), "there are 3 entries 'a'; 'a #1' is the first of them");
  for (const char* const none : {"c", "", "a #0", "a #4", "a #", "a #2x", "a #-1", "a #99999999999999999999"})
    EXPECT_EQ(reasonOf(none),
              "there is no entry '" + std::string(none) + "'; there are: a, b, a, b #2, #1, a");
}

}  // namespace
}  // namespace vlclientui::test
