#include "metadata/MetadataViewer.h"

#include <exception>

#include "contracts/RuntimeFailure.h"
#include "frame/EngineRelease.h"
#include "frame/Guard.h"
#include "frame/HeldService.h"
#include "frame/Saving.h"
#include "frame/ThreadState.h"
#include "metadata/MetadataPaths.h"

namespace vlclientui {

namespace {

constexpr const char* serviceNode = "Service";
constexpr const char* imageNode = "Image";
constexpr const char* processNode = "ServerProcess";
constexpr const char* rasterNode = "Raster";
// No node has one of these keys.
constexpr const char* keyDetailsKey = "KeyDetails";
constexpr const char* metadataKey = "Metadata";

constexpr std::int32_t processWidth = 414;
constexpr std::int32_t keyC = 'C';
constexpr std::size_t valueColumn = 1;
constexpr const char* helpPage = "Viewing_image_service_metadata";
constexpr const char* saveFilter = "Xml (*.xml) | *.xml";

}  // namespace

MetadataViewer::MetadataViewer(Form& form, MetadataFields& fields, MetadataControls& controls,
                               const MetadataViewerDifferences& differences)
    : window_{form, fields, controls, differences}, pages_(window_), rasters_(window_) {
  connectEvents();
}

void MetadataViewer::connectEvents() {
  MetadataControls& controls = window_.controls;
  controls.uiTreeView.nodeClick.connect([this] { showSelectedNode(); });
  controls.TabStrip2.click.connect([this] { pages_.ShowServicePage(); });
  controls.TabStrip1.click.connect([this] { rasters_.ShowRasterPage(); });
  controls.RasterList.click.connect([this] { rasters_.ShowRasterPage(); });
  controls.Save.click.connect([this] { saveMetadata(); });
  connectHelp(controls.MDRichText, HelpHome::Registry);
  connectHelp(controls.MetadataText, HelpHome::InstallFolder);
  connectHelp(controls.ProcessMetadata, HelpHome::InstallFolder);
  connectHelp(controls.ListView1, HelpHome::InstallFolder);
  controls.ListView1.keyDown.connect([this](const KeyEvent& key) { listKeyPressed(key); });
}

void MetadataViewer::connectHelp(Control& control, HelpHome home) {
  control.keyDown.connect([this, home](const KeyEvent& key) {
    LaunchHelp(key.keyCode, key.shift, window_.form.focusedControl() != nullptr, helpPage, home);
  });
}

void MetadataViewer::buildTree() {
  const bool anew = window_.differences.treeIsMadeAnew;
  TreeView& tree = window_.controls.uiTreeView;
  if (anew) tree.clear();
  addNodes();
  tree.markSelected(serviceNode);
  if (anew) callOut(window_.form.toolkit())->setPointer(Pointer::Hourglass);
  DropPageEngine();
  HidePages();
  if (anew) {
    showSelectedNode();
    callOut(window_.form.toolkit())->setPointer(Pointer::Default);
  }
  rasters_.clearList();
}

void MetadataViewer::addNodes() {
  TreeView& tree = window_.controls.uiTreeView;
  tree.addNode("", serviceNode, "Service Info");
  tree.addNode("", imageNode, "Image Returned");
  tree.addNode("", processNode, "Server Process");
  const auto service = imageServiceIfAny(window_.fields.myImageServiceObject);
  // These answers only decide which nodes appear; the pages fetch their own.
  const std::string asked =
      service ? callOut(service)->GetImageMetadata("") : window_.fields.myImageMetaDataXml;
  const auto image = parsedDocument(asked);
  if (image->selectSingleNode(metadataPath::rasters)) tree.addNode("", rasterNode, "Source");
}

void MetadataViewer::sizeTreeEngines() {
  const TreePlace& raster = window_.differences.rasterTree;
  pages_.serverProcessEngine().resize(processWidth, window_.differences.processHeight);
  rasters_.metadataEngine().resize(raster.width, raster.height);
  rasters_.processEngine().resize(raster.width, raster.height);
}

void MetadataViewer::windowActivated() {
  if (!window_.differences.followsActivation) return;
  // Deliberately a second time.
  FetchDocuments();
  showSelectedNode();
}

void MetadataViewer::showSelectedNode() {
  visitWindow(&window_.form, [this] { showNodeAndTell(); });
}

void MetadataViewer::showNodeAndTell() {
  std::string failure;
  try {
    runClickRule();
  } catch (const WindowGone&) {
    throw;
  } catch (const std::exception& caught) {
    failure = caught.what();
  } catch (...) {
    failure = "Unknown failure";
  }
  callOut(window_.form.toolkit())->setPointer(Pointer::Default);
  if (!failure.empty()) endSilently(failure);
  // Deliberately also after a clean pass: hosts read whether the last click went well.
  threadState().gStatus = failure;
}

void MetadataViewer::runClickRule() {
  FetchDocuments();
  DropPageEngine();
  HidePages();
  if (window_.differences.hidesProcessOnceMore) hideServerProcess();
  const std::string key = window_.controls.uiTreeView.selectedKey();
  if (key.empty()) failMissingObject("the selected node");
  if (const auto page = pageOf(key)) showUnderHourglass(page);
}

void MetadataViewer::showUnderHourglass(const std::function<void()>& page) {
  callOut(window_.form.toolkit())->setPointer(Pointer::Hourglass);
  page();
  callOut(window_.form.toolkit())->setPointer(Pointer::Default);
}

std::function<void()> MetadataViewer::pageOf(const std::string& key) {
  if (key == serviceNode) {
    return [this] {
      window_.controls.TabStrip2.setVisible(true);
      window_.controls.FirstPageFrame.setVisible(true);
      pages_.ShowServicePage();
    };
  }
  if (key == imageNode) return [this] { pages_.ShowImagePage(); };
  if (key == rasterNode) {
    return [this] {
      rasters_.clearList();
      rasters_.ShowRasterList();
    };
  }
  if (key == processNode) return [this] { pages_.ShowServerProcessPage(); };
  if (!window_.differences.knowsPageKeys) return {};
  if (key == keyDetailsKey) return [this] { pages_.ShowServiceInfoPage(); };
  if (key == metadataKey) return [this] { pages_.ShowServiceMetadataPage(); };
  return {};
}

void MetadataViewer::DropPageEngine() {
  std::shared_ptr<Plexa>& engine = window_.fields.myPlexa;
  if (engine && window_.differences.commitsBeforeDrop) callOut(engine)->Commit();
  releaseEngine(engine);
}

void MetadataViewer::HidePages() {
  MetadataControls& controls = window_.controls;
  controls.MDRichText.setVisible(false);
  controls.MDRichText.setText("");
  controls.TabStrip1.setVisible(false);
  controls.RasterList.setVisible(false);
  controls.Label1.setVisible(false);
  if (controls.SourceImagesList) controls.SourceImagesList->setVisible(false);
  controls.MetadataText.setVisible(false);
  controls.ProcessMetadata.setVisible(false);
  controls.hideListFrame();
  controls.ListView1.setVisible(false);
  controls.InfoFrame.setVisible(false);
  controls.FirstPageFrame.setVisible(false);
  controls.TabStrip2.setVisible(false);
  controls.Command7.setVisible(false);
  hideServerProcess();
  rasters_.metadataEngine().hide();
  rasters_.processEngine().hide();
}

void MetadataViewer::releaseProcessEngines() {
  pages_.serverProcessEngine().release();
  rasters_.processEngine().release();
}

void MetadataViewer::releaseEngines() {
  endsQuietly([this] { releaseEngine(window_.fields.myPlexa); });
  endsQuietly([this] { pages_.serverProcessEngine().release(); });
  endsQuietly([this] { rasters_.metadataEngine().release(); });
  endsQuietly([this] { rasters_.processEngine().release(); });
}

void MetadataViewer::saveMetadata() {
  FileDialog& dialog = window_.fields.myDialog;
  dialog.filter = saveFilter;
  dialog.asksBeforeOverwriting = true;
  const auto chosen = callOut(window_.form.toolkit())->saveFile(dialog);
  if (!chosen || chosen->empty()) return;
  dialog.fileName = *chosen;
  const auto service = imageServiceIfAny(window_.fields.myImageServiceObject);
  const std::string asked =
      service ? callOut(service)->GetImageMetadata("Full") : window_.fields.myImageMetaDataXml;
  const auto image = parsedDocument(asked);
  saveAndTell(window_.form.toolkit(), *image, dialog.fileName);
  dialog.fileName.clear();
}

/// Deliberate: every key empties the clipboard first, whichever it is.
void MetadataViewer::listKeyPressed(const KeyEvent& key) {
  Toolkit& toolkit = window_.form.toolkit();
  callOut(toolkit)->setClipboardText("");
  const ReportList& list = window_.controls.ListView1;
  if (key.keyCode != keyC || key.shift != keyModifier::control || !list.selected()) return;
  callOut(toolkit)->setClipboardText(list.rows()[*list.selected()].at(valueColumn));
}

}  // namespace vlclientui
