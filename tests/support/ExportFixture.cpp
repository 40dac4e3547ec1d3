#include "support/ExportFixture.h"

#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"

namespace vlclientui::test {

namespace {

std::string element(const std::string& name, const std::string& text) {
  return text.empty() ? "" : "<" + name + ">" + text + "</" + name + ">";
}

}  // namespace

const char* const exportTemplateXml =
    "<Vorlane><Client><GetImage><OutputType/><Top/><Left/><Right/><Bottom/><Width/><Height/><Cols/><Rows/>"
    "<ApproxMB/><CreateWorldFile>False</CreateWorldFile><Format/><CompressionMethod>old</CompressionMethod>"
    "<TileSize/><CompressionQuality/><FileName/><NBands/><BitDepth/><ExportMetadataXml/></GetImage></Client>"
    "</Vorlane>";

std::string imageMetadata(const ImageText& image) {
  return "<Vorlane><Client><ImageMetadata><Basic>" + element("XMin", image.xMin) +
         element("YMin", image.yMin) + element("XMax", image.xMax) + element("YMax", image.yMax) +
         element("NRows", image.rows) + element("NCols", image.columns) + element("NBands", image.bands) +
         element("PixelType", image.pixelType) + "</Basic></ImageMetadata></Client></Vorlane>";
}

std::string serviceInfo(const ServiceInfoText& service) {
  return "<Vorlane><ImageServiceInfo>" + element("MaxNCols", service.maxColumns) +
         element("MaxNRows", service.maxRows) + "<ClientEnvelope>" + element("XMin", service.xMin) +
         element("YMin", service.yMin) + element("XMax", service.xMax) + element("YMax", service.yMax) +
         "</ClientEnvelope>" + element("PixelSize", service.pixelSize) + element("NBands", service.bands) +
         element("BitDepth", service.bitDepth) + "</ImageServiceInfo></Vorlane>";
}

std::string customEnvelope(const std::string& description, const std::string& xMin, const std::string& yMin,
                           const std::string& xMax, const std::string& yMax) {
  return "<CustomEnvelope>" + element("Description", description) + element("XMin", xMin) +
         element("YMin", yMin) + element("XMax", xMax) + element("YMax", yMax) + "</CustomEnvelope>";
}

std::string exportExtents(const std::string& children) {
  return "<Vorlane><Client><ExportImageDialog>" + children + "</ExportImageDialog></Client></Vorlane>";
}

LocaleFormat germanFormat() { return {",", ".", "\u20AC"}; }
LocaleFormat frenchFormat() { return {",", "\u202F", "\u20AC"}; }

ExportFixture::ExportFixture() {
  plexa->record->templateXml = exportTemplateXml;
  system->writeFile("C:\\Program\\VLClient.XADef", exportTemplateXml);
  system->variables["APPDATA"] = "C:\\AppData";
  service->metadata = imageMetadata({});
  service->info = serviceInfo({});
  auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
  setPlatform(std::make_shared<Platform>(Platform{system, xml, toolkit, plexa, clientLibrary}));
  threadState().exportDialogStatus.clear();
  customEnvelopes().clear();
}

ExportFixture::~ExportFixture() {
  dialog.reset();
  customEnvelopes().clear();
  setPlatform(nullptr);
}

std::shared_ptr<ExportDialog> ExportFixture::readyDialog() {
  auto made = std::make_shared<ExportDialog>();
  EXPECT_EQ(made->IExportImageDialog_Init("", nullptr, service), boolean16True);
  return made;
}

void ExportFixture::script(const Script& act, bool& ran) {
  if (!dialog) dialog = readyDialog();
  toolkit->scriptModal([&](Form& form) {
    auto& window = dynamic_cast<ExportDialogForm&>(form);
    act(window, window.controls().ExportControl1);
    ran = true;
  });
}

void ExportFixture::show(const Script& act, const std::string& extentsXml) {
  bool ran = false;
  script(act, ran);
  EXPECT_EQ(dialog->iExportImageDialog_ShowModalDialogEx(extentsXml), boolean16False);
  EXPECT_TRUE(ran);
}

void ExportFixture::showPlainly(const Script& act) {
  bool ran = false;
  script(act, ran);
  EXPECT_EQ(dialog->iExportImageDialog_ShowModalDialog(), boolean16False);
  EXPECT_TRUE(ran);
}

void ExportFixture::edit(ExportControl& control, TextBox& box, const std::string& text) {
  box.userFocuses();
  box.userTypes(text);
  control.ExportMD.userFocuses();
}

void ExportFixture::visit(ExportControl& control, TextBox& box) {
  box.userFocuses();
  control.ExportMD.userFocuses();
}

void ExportFixture::selectFormat(ExportControl& control, const std::string& entry) {
  for (std::size_t index = 0; index < control.FormatCombo.count(); ++index) {
    if (control.FormatCombo.entry(index) == entry) return control.FormatCombo.userSelects(index);
  }
  FAIL() << "no format " << entry;
}

}  // namespace vlclientui::test
