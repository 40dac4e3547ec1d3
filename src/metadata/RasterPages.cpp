#include "metadata/RasterPages.h"

#include <utility>

#include "contracts/LocaleFormat.h"
#include "contracts/Toolkit.h"
#include "documents/GuardedRead.h"
#include "documents/HelpBlock.h"
#include "documents/NumberText.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"
#include "metadata/MetadataPaths.h"

namespace vlclientui {

namespace {

constexpr std::size_t metadataTab = 1;
constexpr std::size_t processTab = 3;
constexpr std::size_t tabsAtFirst = 4;

/// Truth values in documents may be numbers, with "." under every locale.
const LocaleFormat documentNumbers{".", "", ""};

std::string textOr(const std::string& xml, const char* instead) { return xml.empty() ? instead : xml; }

}  // namespace

const RasterRecords& RasterPages::records() {
  const std::string& document = window_.fields.myImageMetaDataXml;
  if (!records_.isOf(document)) records_ = RasterRecords(document);
  return records_;
}

const std::string& RasterPages::selectedRasterId() const {
  return myRasterIds_.at(keyOfCaption(window_.controls.RasterList.text()));
}

void RasterPages::ShowRasterList() {
  visitWindow(&window_.form, [this] {
    MetadataControls& controls = window_.controls;
    fillList();
    controls.TabStrip1.setVisible(true);
    controls.RasterList.setVisible(true);
    controls.Label1.setVisible(true);
    if (controls.RasterList.count() > 0) {
      controls.RasterList.setText(controls.RasterList.entry(0));
      decideLockButton();
    }
    if (!window_.differences.buildsPageAfterList) return;
    const std::string caption = controls.TabStrip1.selectedCaption();
    controls.TabStrip1.setCaption(*controls.TabStrip1.selected(), caption);
    ShowRasterPage();
  });
}

void RasterPages::clearList() {
  window_.controls.RasterList.clear();
  myRasterIds_.clear();
}

void RasterPages::fillList() {
  myRasterIds_.clear();
  removeMetadataTab();
  window_.controls.RasterList.addEntries(takeRasters());
  removeProcessTab();
}

void RasterPages::removeMetadataTab() {
  TabStrip& tabs = window_.controls.TabStrip1;
  if (records().anyMetadata() || tabs.count() <= metadataTab) return;
  if (tabs.captions()[metadataTab] == "Metadata") tabs.removeTab(metadataTab);
}

/// Deliberate: the test compares counts. Once the metadata tab is gone the process tab stays, even without
/// process data.
void RasterPages::removeProcessTab() {
  const auto& available = records().processAvailable();
  if (available && textToBoolean(*available, documentNumbers)) return;
  TabStrip& tabs = window_.controls.TabStrip1;
  if (tabs.count() == tabsAtFirst) tabs.removeTab(processTab);
}

std::vector<std::string> RasterPages::takeRasters() {
  std::vector<std::string> captions;
  std::string name;
  bool visible = false;
  std::size_t nameless = 0;
  for (const RasterRecord& record : records().records()) {
    if (!record.id) {
      ++nameless;
      continue;
    }
    // What a record lacks it takes from the one before it.
    if (record.name) name = *record.name;
    if (record.visible) visible = textToBoolean(*record.visible, documentNumbers);
    const std::string key = rasterKey(name, *record.id);
    captions.push_back(rasterCaption(key, visible));
    myRasterIds_.add(key, *record.id);
  }
  if (nameless > 0) endSilently(std::to_string(nameless) + " rasters without a RasterId are left out");
  return captions;
}

void RasterPages::decideLockButton() {
  const auto definition = ProvidedDefinitions(window_.fields, window_.differences).clientAttributes();
  if (definition) window_.controls.Command7.setVisible(allowsLockRaster(*definition));
}

void RasterPages::ShowRasterPage() {
  visitWindow(&window_.form, [this] {
    hidePage();
    for (const RasterRecord& record : records().records()) {
      if (record.id && selectedRasterId() == *record.id) showRecord(record);
    }
  });
}

void RasterPages::hidePage() {
  MetadataControls& controls = window_.controls;
  controls.InfoFrame.setVisible(false);
  controls.ProcessMetadata.setVisible(false);
  controls.MetadataText.setVisible(false);
  controls.hideListFrame();
  controls.ListView1.setVisible(false);
  myRasterMetadataEngine_.hide();
  myRasterProcessEngine_.hide();
}

void RasterPages::showRecord(const RasterRecord& record) {
  MetadataControls& controls = window_.controls;
  const std::string tab = controls.TabStrip1.selectedCaption();
  const auto raster = parsedDocument(record.xml);
  if (tab == "Information") {
    controls.InfoFrame.setVisible(true);
    if (const auto info = readXml(*raster, metadataPath::rasterInfo)) ShowRasterInfoPage(*info);
  } else if (tab == "Attributes") {
    showAttributes(*raster);
  } else if (tab == "Process") {
    const std::string xml = readXml(*raster, metadataPath::rasterProcess).value_or("");
    controls.ProcessMetadata.setText(textOr(xml, "No Process Metadata transmitted."));
    showTree(myRasterProcessEngine_, textOr(xml, "<ProcessMetadata/>"));
  } else if (tab == "Metadata") {
    const std::string xml = readXml(*raster, metadataPath::rasterMetadata).value_or("");
    controls.MetadataText.setText(textOr(xml, "No Raster Metadata transmitted."));
    showTree(myRasterMetadataEngine_, textOr(xml, "<Metadata/>"));
  }
}

void RasterPages::showAttributes(const XmlDocument& raster) {
  MetadataControls& controls = window_.controls;
  controls.showListFrame(true);
  controls.ListView1.setVisible(true);
  controls.ListView1.clear();
  const XmlNodePtr attributes = raster.selectSingleNode(metadataPath::rasterAttributes);
  if (!attributes) return;
  for (const XmlNodePtr& attribute : attributes->childNodes()) {
    controls.ListView1.addRow({attribute->name(), attribute->text()});
  }
}

void RasterPages::showTree(TreeEngine& engine, const std::string& xml) {
  const WindowHandle parent = callOut(window_.form.toolkit())->windowOf(window_.form);
  engine.showSizedFirst(xml, parent, window_.differences.rasterTree);
}

void RasterPages::ShowRasterInfoPage(const std::string& infoXml) {
  endsQuietly([this, &infoXml] {
    const auto forms = definitionFile(threadState().ClientXfdefPath);
    const auto attributes = definitionFile(threadState().ClientXADefPath);
    showDefinedPage(window_, window_.controls.InfoFrame,
                    {cutWithHelp(*attributes, metadataPath::rasterDefinition),
                     cutPlain(*forms, metadataPath::rasterDefinition), helpDocumentAround(infoXml)});
  });
}

}  // namespace vlclientui
