#include "TypedNumber.h"

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::vlhost {
namespace {

const LocaleFormat point{".", ",", "$"};
const LocaleFormat comma{",", ".", "€"};
const LocaleFormat apostrophe{".", "’", "CHF"};
const LocaleFormat space{",", "\u202F", "€"};

TEST(TypedNumber, TakesWhatTheLocaleWrites) {
  for (const char* const text : {"1.5", "-1.5", "1,500", "12,345,678.25", "1E+3", "0", ".5", "(3)"}) {
    EXPECT_NO_THROW(refuseForeignNumber(text, point)) << text;
  }
  for (const char* const text : {"1,5", "1.500", "1500", "12.345.678,25"}) {
    EXPECT_NO_THROW(refuseForeignNumber(text, comma)) << text;
  }
  EXPECT_NO_THROW(refuseForeignNumber("1’500.5", apostrophe));
  EXPECT_NO_THROW(refuseForeignNumber("1\u202F500,5", space));
}

TEST(TypedNumber, RefusesWhatAnotherLocaleWrites) {
  for (const char* const text : {"1,5", "1,50", "1,5000", "1234,567", "1.5,000", "1,,500"}) {
    EXPECT_THROW(refuseForeignNumber(text, point), RuntimeFailure) << text;
  }
  for (const char* const text : {"1.5", "-10.25", "462000.5", "1,5.000"}) {
    EXPECT_THROW(refuseForeignNumber(text, comma), RuntimeFailure) << text;
  }
}

TEST(TypedNumber, LeavesATextThatIsNoNumberToTheWindow) {
  EXPECT_NO_THROW(refuseForeignNumber("wide", point));
  EXPECT_NO_THROW(refuseForeignNumber("1.5.2", point));
}

}  // namespace
}  // namespace vlclientui::vlhost
