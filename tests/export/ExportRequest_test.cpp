#include <gmock/gmock.h>

#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;

class ExportRequests : public ExportFixture {
 protected:
  /// The request that the control writes once the person has prepared it.
  std::string requestAfter(const std::function<void(ExportControl&)>& prepare) {
    std::string request;
    show([&](ExportDialogForm&, ExportControl& control) {
      prepare(control);
      control.OnClose();
      request = control.finalXml;
    });
    return request;
  }
};

TEST_F(ExportRequests, HaveNoWireValuesForAFormatThatIsNone) {
  const std::string request = requestAfter([](ExportControl& control) {
    control.FormatCombo.addEntry("BMP");  // hosts can do so
    selectFormat(control, "BMP");
  });
  EXPECT_THAT(request, HasSubstr("<CreateWorldFile>False</CreateWorldFile><Format/><CompressionMethod/>"));
  EXPECT_THAT(request, HasSubstr("<CompressionQuality>100</CompressionQuality>"));
}

TEST_F(ExportRequests, LeaveTheWorldFileToTheTemplateWhereTheFormatIsNoTiff) {
  plexa->record->templateXml =
      "<Vorlane><Client><GetImage><CreateWorldFile>Perhaps</CreateWorldFile></GetImage></Client></Vorlane>";
  for (const char* const entry : {"JPEG", "JP2", "PNG"}) {
    EXPECT_EQ(requestAfter([entry](ExportControl& control) { selectFormat(control, entry); }),
              "<GetImage><CreateWorldFile>Perhaps</CreateWorldFile></GetImage>")
        << entry;
  }
}

TEST_F(ExportRequests, OverATemplateThatDoesNotParseTouchNeitherNameNorFolder) {
  plexa->record->templateXml = "<Vorlane>";
  show([this](ExportDialogForm&, ExportControl& control) {
    control.uiTxtFileName.setText("C:\\new\\a.png");
    control.OnClose();
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\new\\a.png");
    EXPECT_FALSE(system->folderExists("C:\\new"));
  });
}

TEST_F(ExportRequests, TurnTheQualityToAPointAndLeaveColumnsAndRowsAsTheyAre) {
  system->locale = germanFormat();
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, "99,5");
    edit(control, control.uiTxtCols, "500,5");
    edit(control, control.uiTxtRows, "250,5");
    control.OnClose();
    EXPECT_THAT(control.finalXml, HasSubstr("<CompressionQuality>99.5</CompressionQuality>"));
    EXPECT_THAT(control.finalXml, HasSubstr("<Cols>500,5</Cols><Rows>250,5</Rows>"));
  });
}

}  // namespace
}  // namespace vlclientui::test
