#include "export/ExportDialogForm.h"

#include <gmock/gmock.h>

#include "contracts/XmlDocument.h"
#include "documents/GuardedRead.h"
#include "frame/ThreadState.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class ExportDialogForms : public ExportFixture {
 protected:
  /// Text of an element of the result.
  [[nodiscard]] std::string resultOf(const std::string& element) const {
    const auto document = currentPlatform().xml->createDocument();
    EXPECT_TRUE(document->loadXml(dialog->iExportImageDialog_GetUpdatedProperties()));
    return readText(*document, "/GetImage/" + element).value_or("(absent)");
  }
  [[nodiscard]] std::string result() const { return dialog->iExportImageDialog_GetUpdatedProperties(); }
  /// Shows, lets the person prepare, and presses OK.
  void accept(const Script& prepare = [](auto&, auto&) {}) {
    show([&](ExportDialogForm& window, ExportControl& control) {
      prepare(window, control);
      window.controls().Command1.userClicks();
      closed = !window.loaded();
    });
  }

  bool closed = false;
};

TEST_F(ExportDialogForms, HaveTheirCaptionAndButtons) {
  show([](ExportDialogForm& window, auto&) {
    EXPECT_EQ(window.caption(), "Export Image Properties");
    EXPECT_EQ(window.controls().Command1.caption(), "&OK");
    EXPECT_EQ(window.controls().Command2.caption(), "&Cancel");
    EXPECT_EQ(window.cancelButton(), &window.controls().Command2);
    EXPECT_EQ(window.findControl("ExportControl1"), &window.controls().ExportControl1);
  });
}

// The request.

TEST_F(ExportDialogForms, WriteTheRequestFromTheFields) {
  accept([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtFileName, "C:\\out\\image.tif");
    control.ExportMD.userClicks();
  });
  EXPECT_TRUE(closed);
  EXPECT_EQ(result(),
            "<GetImage><OutputType>File</OutputType><Top>2000.000</Top><Left>1000.000</Left>"
            "<Right>2000.000</Right><Bottom>1000.000</Bottom><Width>1000.000</Width><Height>1000.000</Height>"
            "<Cols>1000</Cols><Rows>1000</Rows><ApproxMB>3</ApproxMB><CreateWorldFile>True</CreateWorldFile>"
            "<Format>Tiff</Format><CompressionMethod/><TileSize>None</TileSize>"
            "<CompressionQuality>0</CompressionQuality><FileName>C:\\out\\image.Tif</FileName>"
            "<NBands>3</NBands><BitDepth>8</BitDepth><ExportMetadataXml>True</ExportMetadataXml></GetImage>");
}

TEST_F(ExportDialogForms, HandTheRequestWrappedToTheService) {
  accept();
  EXPECT_EQ(service->exportRequest, "<Vorlane><Client>" + result() + "</Client></Vorlane>");
  EXPECT_THAT(service->calls,
              ElementsAre("GetImageMetadata ''", "ServiceInfo", "ExportProperties", "ExportImage"));
}

TEST_F(ExportDialogForms, WriteTheWireValuesOfEachFormat) {
  struct Row {
    const char* entry;
    const char* format;
    const char* compression;
    const char* worldFile;
  };
  const Row rows[] = {{"TIFF-No Compression", "Tiff", "", "True"},
                      {"TIFF-JPEG", "Tiff", "JPEG", "True"},
                      {"TIFF-LZ77", "Tiff", "LZ77", "True"},
                      {"JPEG", "JPEG", "", "False"},
                      {"JP2", "JPEG2000", "", "False"},
                      {"PNG", "PNG", "", "False"}};
  for (const Row& row : rows) {
    accept([&](ExportDialogForm&, ExportControl& control) { selectFormat(control, row.entry); });
    EXPECT_EQ(resultOf("Format"), row.format) << row.entry;
    EXPECT_EQ(resultOf("CompressionMethod"), row.compression) << row.entry;
    EXPECT_EQ(resultOf("CreateWorldFile"), row.worldFile) << row.entry;
    EXPECT_EQ(resultOf("ExportMetadataXml"), "False") << row.entry;
  }
}

TEST_F(ExportDialogForms, TakeBandsFromTheServiceAndNotFromTheMetadata) {
  service->info = serviceInfo({.bands = "7", .bitDepth = "16"});
  accept();
  EXPECT_EQ(resultOf("NBands"), "7");
  EXPECT_EQ(resultOf("BitDepth"), "16");
}

TEST_F(ExportDialogForms, LeaveOutWhatTheTemplateLacks) {
  plexa->record->templateXml = "<Vorlane><Client><GetImage><Left/><FileName/></GetImage></Client></Vorlane>";
  accept();
  EXPECT_EQ(result(),
            "<GetImage><Left>1000.000</Left>"
            "<FileName>C:\\AppData\\Ostrel\\Vor Lane\\Untitled.Tif</FileName></GetImage>");
}

TEST_F(ExportDialogForms, TakeTheTemplateFromANewEngineOverTheDefinitionPath) {
  accept();
  EXPECT_THAT(plexa->callsFrom(0), testing::Contains("1.AttributeDefinition C:\\Program\\VLClient.XADef "));
  EXPECT_THAT(plexa->callsFrom(0), testing::Contains("1.ParentWindow 0"));
}

TEST_F(ExportDialogForms, MakeTheFolderOfTheFile) {
  accept([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtFileName, "C:\\new\\deep\\image.tif");
  });
  EXPECT_TRUE(system->folderExists("C:\\new\\deep"));
}

TEST_F(ExportDialogForms, PutABareNameIntoTheRootOfDriveC) {
  accept([](ExportDialogForm&, ExportControl& control) { edit(control, control.uiTxtFileName, "image"); });
  EXPECT_EQ(resultOf("FileName"), "C:\\image.Tif");
}

TEST_F(ExportDialogForms, NameAFileByItsExtensionAloneWithoutAName) {
  accept([](ExportDialogForm&, ExportControl& control) { edit(control, control.uiTxtFileName, ""); });
  EXPECT_EQ(resultOf("FileName"), "C:\\.Tif");
}

TEST_F(ExportDialogForms, WriteNumbersWithAPointUnderACommaAndLeaveTheBoxesSo) {
  for (const LocaleFormat& locale : {germanFormat(), frenchFormat()}) {
    system->locale = locale;
    service->exportAnswer = false;
    service->metadata = imageMetadata({.xMin = "1000.5"});
    show([this](ExportDialogForm& window, ExportControl& control) {
      selectFormat(control, "TIFF-LZ77");
      EXPECT_EQ(control.uiTxtLeft.text(), "1000,500");
      EXPECT_EQ(control.uiTxtMB.text(), "0,6");
      window.controls().Command1.userClicks();
      EXPECT_EQ(control.uiTxtLeft.text(), "1000.500");
      EXPECT_EQ(control.uiTxtMB.text(), "0.6");
    });
    EXPECT_EQ(resultOf("Left"), "1000.500");
    EXPECT_EQ(resultOf("ApproxMB"), "0.6");
  }
}

TEST_F(ExportDialogForms, ReadTheLeftPointsUnderTheLocaleWhenABoxIsLeftAfterwards) {
  service->exportAnswer = false;
  service->metadata = imageMetadata({.xMin = "1000.5"});
  system->locale = germanFormat();
  show([](ExportDialogForm& window, ExportControl& control) {
    window.controls().Command1.userClicks();
    visit(control, control.uiTxtLeft);
    // A point groups thousands there: the left box is converted in time, the right one is not.
    EXPECT_EQ(control.uiTxtLeft.text(), "1000,500");
    EXPECT_EQ(control.uiTxtRight.text(), "2000000,000");
    EXPECT_EQ(control.uiTxtWidth.text(), "1998999,500");
  });
  system->locale = frenchFormat();
  show([this](ExportDialogForm& window, ExportControl& control) {
    window.controls().Command1.userClicks();
    visit(control, control.uiTxtLeft);
    // A point is no part of a number there.
    EXPECT_EQ(toolkit->messages().back().text, "Cannot enter characters");
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.500");
    EXPECT_EQ(control.uiTxtWidth.text(), "999.500");
  });
}

TEST_F(ExportDialogForms, OnCloseIsFalseInAnyCase) {
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.OnClose(), boolean16False);
    EXPECT_THAT(control.finalXml, StartsWith("<GetImage>"));
  });
}

// Silent stops.

TEST_F(ExportDialogForms, ExportNothingWithoutBandsInTheServiceInfo) {
  for (const auto& info : {serviceInfo({.bands = ""}), serviceInfo({.bitDepth = ""}), std::string("<x")}) {
    service->info = info;
    accept();
    EXPECT_FALSE(closed);
    EXPECT_EQ(result(), "");
  }
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
}

TEST_F(ExportDialogForms, ExportNothingOverATemplateThatDoesNotParseOrLacksTheElement) {
  for (const char* const text :
       {"", "<Vorlane>", "<Vorlane><Client/></Vorlane>", "<Vorlane><Client><GetImage/></Client></Vorlane>"}) {
    plexa->record->templateXml = text;
    accept();
    EXPECT_FALSE(closed) << text;
    EXPECT_EQ(service->exportRequest, "") << text;
  }
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(ExportDialogForms, KeepTheEarlierRequestWhenALaterOneStops) {
  service->exportAnswer = false;
  show([this](ExportDialogForm& window, ExportControl& control) {
    window.controls().Command1.userClicks();
    const std::string first = window.UpdatedXml;
    control.FullViewXml = "";
    edit(control, control.uiTxtCols, "10");
    window.controls().Command1.userClicks();
    EXPECT_EQ(window.UpdatedXml, first);
    EXPECT_THAT(toolkit->messages(), SizeIs(2));  // that request failed a second time
  });
}

TEST_F(ExportDialogForms, EndSilentlyWhenTheServiceFails) {
  for (const char* const member : {"ExportProperties", "ExportImage"}) {
    service->failAt = member;
    accept();
    EXPECT_FALSE(closed) << member;
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  }
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(ExportDialogForms, EndSilentlyWhenTheSystemCannotTellAboutTheFile) {
  accept([this](auto&, auto&) { system->everythingFails = true; });
  EXPECT_FALSE(closed);
  EXPECT_EQ(service->exportRequest, "");
  system->everythingFails = false;
}

// Complaints.

TEST_F(ExportDialogForms, ShowTheFirstComplaintOnlyAndTheNextAfterItIsMended) {
  show([this](ExportDialogForm& window, ExportControl& control) {
    std::string* const complaints[] = {
        &control.myColsLabel,   &control.myRowsLabel,   &control.myHeightLabel,    &control.myWidthLabel,
        &control.myPixelXLabel, &control.myPixelYLabel, &control.myCompFactorLabel};
    for (std::string* const complaint : complaints) *complaint = "complaint";
    control.mylabel = "not among them";
    int number = 0;
    for (std::string* const complaint : complaints) {
      *complaint = "complaint " + std::to_string(++number);
      window.controls().Command1.userClicks();
      EXPECT_EQ(toolkit->messages().back(),
                (MessageBox{*complaint, "Warning", MessageIcon::Exclamation, MessageButtons::Ok}));
      EXPECT_TRUE(window.loaded());
      EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
      complaint->clear();
    }
    EXPECT_THAT(toolkit->messages(), SizeIs(7));
    window.controls().Command1.userClicks();
    EXPECT_FALSE(window.loaded());
  });
}

TEST_F(ExportDialogForms, LeaveTheEditedFieldBeforeTheyLook) {
  accept([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtWidth.userFocuses();
    control.uiTxtWidth.userTypes("0");
  });
  EXPECT_FALSE(closed);
  ASSERT_THAT(toolkit->messages(), SizeIs(1));
  EXPECT_EQ(toolkit->messages()[0].text, "Width cannot be less than or equal to zero.");
}

// Overwriting.

TEST_F(ExportDialogForms, AskBeforeTheyOverwrite) {
  system->writeFile("C:\\out\\a.Tif", "old");
  const Script name = [](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtFileName, "C:\\out\\a.tif");
  };
  toolkit->answerMessage(MessageAnswer::Cancel);
  accept(name);
  EXPECT_FALSE(closed);
  EXPECT_THAT(toolkit->messages(),
              ElementsAre(MessageBox{"The file 'C:\\out\\a.Tif' already exists. Overwrite file?",
                                     "Overwrite file", MessageIcon::Information, MessageButtons::OkCancel}));
  EXPECT_EQ(service->exportRequest, "");
  EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  toolkit->answerMessage(MessageAnswer::Ok);
  accept(name);
  EXPECT_TRUE(closed);
  EXPECT_NE(service->exportRequest, "");
}

TEST_F(ExportDialogForms, KeepTheResultOfARefusedOkWhenTheFrameClosesThem) {
  system->writeFile("C:\\a.Tif", "old");
  toolkit->answerMessage(MessageAnswer::Cancel);
  accept(
      [](ExportDialogForm&, ExportControl& control) { edit(control, control.uiTxtFileName, "C:\\a.tif"); });
  EXPECT_FALSE(closed);
  EXPECT_THAT(result(), StartsWith("<GetImage>"));
}

// The outcome.

TEST_F(ExportDialogForms, TellWhyTheServiceCouldNotExport) {
  service->exportAnswer = false;
  service->statusAnswer = "<Status><Item><Message>Disk full.</Message></Item></Status>";
  accept();
  EXPECT_FALSE(closed);
  EXPECT_THAT(toolkit->messages(), ElementsAre(MessageBox{"Could not export image.Disk full.", "Error",
                                                          MessageIcon::Critical, MessageButtons::Ok}));
  EXPECT_THAT(result(), EndsWith("</GetImage>"));
  for (const char* const status : {"", "<Status/>", "<x"}) {
    service->statusAnswer = status;
    accept();
    EXPECT_EQ(toolkit->messages().back().text, "Could not export image.") << status;
  }
}

TEST_F(ExportDialogForms, ShowTheWaitPointerWhileTheServiceExports) {
  service->duringExport = [this] {
    EXPECT_THAT(toolkit->pointers(), ElementsAre(Pointer::Hourglass, Pointer::Hourglass));
  };
  accept();
  ASSERT_TRUE(closed);
  EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
}

TEST_F(ExportDialogForms, ShowTheWaitPointerBehindAComplaintAndTheOverwriteQuestion) {
  std::vector<Pointer> seen;
  toolkit->onMessage([&](const MessageBox&) {
    ASSERT_FALSE(toolkit->pointers().empty());
    seen.push_back(toolkit->pointers().back());
  });
  accept([](ExportDialogForm&, ExportControl& control) { control.myColsLabel = "complaint"; });
  EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  system->writeFile("C:\\a.Tif", "old");
  toolkit->answerMessage(MessageAnswer::Cancel);
  accept(
      [](ExportDialogForm&, ExportControl& control) { edit(control, control.uiTxtFileName, "C:\\a.tif"); });
  EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  EXPECT_THAT(seen, ElementsAre(Pointer::Hourglass, Pointer::Hourglass));
}

TEST_F(ExportDialogForms, TakeEnterForOkAndBeginAtTheExtents) {
  show([](ExportDialogForm& window, ExportControl& control) {
    EXPECT_EQ(window.defaultButton(), &window.controls().Command1);
    EXPECT_EQ(window.cancelButton(), &window.controls().Command2);
    EXPECT_TRUE(control.MainCombo.hasFocus());
  });
}

TEST_F(ExportDialogForms, TakeNoInputWhileTheServiceExportsAndAgainAfterAFailure) {
  show([this](ExportDialogForm& window, ExportControl& control) {
    service->failAt = "ExportImage";
    window.controls().Command1.userClicks();
    EXPECT_TRUE(window.acceptsInput());
    service->failAt.clear();
    service->exportAnswer = false;
    service->duringExport = [&] {
      EXPECT_FALSE(window.acceptsInput());
      window.controls().Command2.userClicks();
      control.uiTxtCols.userTypes("7");
    };
    window.controls().Command1.userClicks();
    EXPECT_TRUE(window.acceptsInput());
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
  });
}

TEST_F(ExportDialogForms, GiveNothingAfterACancel) {
  accept();
  EXPECT_NE(result(), "");
  show([](ExportDialogForm& window, auto&) { window.controls().Command2.userClicks(); });
  EXPECT_EQ(result(), "");
  accept();
  show([](ExportDialogForm& window, auto&) { window.userCloses(); });
  EXPECT_EQ(result(), "");
  accept();
  show([](ExportDialogForm& window, auto&) { window.userPressesEscape(); });
  EXPECT_EQ(result(), "");
}

TEST_F(ExportDialogForms, KeepAFormerResultWhenTheyCloseAfterAComplaintRefusedOk) {
  accept();
  const std::string former = result();
  ASSERT_THAT(former, StartsWith("<GetImage>"));
  for (const bool byFrame : {true, false}) {
    show([byFrame](ExportDialogForm& window, ExportControl& control) {
      control.myColsLabel = "complaint";
      window.controls().Command1.userClicks();
      if (byFrame) return window.userCloses();
      window.controls().Command2.userClicks();
    });
    EXPECT_EQ(result(), former) << byFrame;
  }
}

TEST_F(ExportDialogForms, DropAFormerResultWhenARequestCannotBeWritten) {
  accept();
  EXPECT_NE(result(), "");
  service->info = serviceInfo({.bands = ""});
  accept();
  EXPECT_EQ(result(), "");
}

TEST_F(ExportDialogForms, WithoutAServiceExportNothing) {
  dialog = std::make_shared<ExportDialog>();
  show([](ExportDialogForm& window, ExportControl& control) {
    control.FullViewXml = serviceInfo({});
    for (std::string* const complaint :
         {&control.myHeightLabel, &control.myWidthLabel, &control.myPixelXLabel, &control.myPixelYLabel}) {
      complaint->clear();
    }
    window.controls().Command1.userClicks();
    EXPECT_THAT(window.UpdatedXml, StartsWith("<GetImage>"));
    EXPECT_TRUE(window.loaded());
  });
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
