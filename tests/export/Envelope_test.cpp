#include "export/Envelope.h"

#include "library/ClassFactory.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

class Envelopes : public ExportFixture {
 protected:
  Envelope envelope;
};

TEST_F(Envelopes, StartEmptyAndAtZero) {
  EXPECT_EQ(envelope.Description(), "");
  EXPECT_EQ(envelope.XMin(), "0");
  EXPECT_EQ(envelope.XMax(), "0");
  EXPECT_EQ(envelope.YMin(), "0");
  EXPECT_EQ(envelope.YMax(), "0");
}

TEST_F(Envelopes, KeepTheirDescriptionUnchanged) {
  envelope.Description("  A <b> 1,5 ");
  EXPECT_EQ(envelope.Description(), "  A <b> 1,5 ");
}

TEST_F(Envelopes, KeepEachCoordinateForItself) {
  envelope.XMin("1");
  envelope.XMax("2");
  envelope.YMin("3");
  envelope.YMax("4");
  EXPECT_EQ(envelope.XMin() + envelope.XMax() + envelope.YMin() + envelope.YMax(), "1234");
}

TEST_F(Envelopes, GiveACoordinateInItsShortestFormOfFifteenDigits) {
  envelope.XMin("0010.500");
  EXPECT_EQ(envelope.XMin(), "10.5");
  envelope.XMin("0.1234567890123456789");
  EXPECT_EQ(envelope.XMin(), "0.123456789012346");
  envelope.XMin("-1e20");
  EXPECT_EQ(envelope.XMin(), "-1E+20");
}

TEST_F(Envelopes, TakeATextThatIsNoNumberAsZero) {
  for (const char* const text : {"abc", "", " ", "1.2.3", "12 m"}) {
    envelope.YMax("7");
    envelope.YMax(text);
    EXPECT_EQ(envelope.YMax(), "0") << text;
  }
}

TEST_F(Envelopes, ReadAndWriteUnderTheUsersLocale) {
  system->locale = germanFormat();
  envelope.XMin("10,5");
  EXPECT_EQ(envelope.XMin(), "10,5");
  envelope.XMin("10.5");  // a group separator there
  EXPECT_EQ(envelope.XMin(), "105");
  system->locale = frenchFormat();
  EXPECT_EQ(envelope.XMin(), "105");
  envelope.XMin("10.5");
  EXPECT_EQ(envelope.XMin(), "0");
}

TEST_F(Envelopes, AnswerToTheirDefaultInterface) {
  EXPECT_EQ(envelope.queryInterface("_Envelope"), &envelope);
  EXPECT_EQ(envelope.queryInterface("_ExportDialog"), nullptr);
  EXPECT_EQ(envelope.typeName(), "Envelope");
}

TEST_F(Envelopes, CannotBeMadeFromOutside) { EXPECT_EQ(findClassFactory("Envelope"), nullptr); }

}  // namespace
}  // namespace vlclientui::test
