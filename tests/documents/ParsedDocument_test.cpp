#include "documents/ParsedDocument.h"

#include "documents/HelpBlock.h"
#include "platform/LibXmlService.h"
#include "support/HeardSilence.h"

namespace vlclientui::test {
namespace {

const platform::LibXmlService xml{platform::PathTranslation::ofUser()};

struct Reader {
  static bool read(std::string_view text) { return parsedDocument(xml, text)->documentElement() != nullptr; }
};

TEST(ParsedDocument, HoldsWhatTheTextHolds) {
  HeardSilence heard;
  EXPECT_TRUE(Reader::read("<a/>"));
  EXPECT_THAT(heard.take(), testing::IsEmpty());
}

TEST(ParsedDocument, IsEmptyAndToldForATextThatDoesNotParse) {
  expectHeard({{"Reader::read: a text of 9 bytes is no XML document",
                [] { EXPECT_FALSE(Reader::read("<a>secret")); }},
               {"withHelpBlock: a text of 1 bytes is no XML document",
                [] { EXPECT_EQ(withHelpBlock(xml, "<"), "<"); }}});
}

TEST(ParsedDocument, IsEmptyAndNotToldForNoText) {
  HeardSilence heard;
  EXPECT_FALSE(Reader::read(""));
  EXPECT_THAT(heard.take(), testing::IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
