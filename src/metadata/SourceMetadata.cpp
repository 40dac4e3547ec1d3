#include "metadata/SourceMetadata.h"

#include "contracts/RuntimeFailure.h"
#include "contracts/Toolkit.h"
#include "documents/LockDocument.h"
#include "frame/EngineRelease.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"
#include "metadata/MetadataPaths.h"

namespace vlclientui {

namespace {

constexpr const char* lockElement = "LockImageID";

/// Writes the lock where the document has a place for it.
void writeLock(XmlDocument& properties, const std::string& lockId) {
  if (const XmlNodePtr method = properties.selectSingleNode(metadataPath::mosaicMethod)) {
    method->setText(lockRasterMethod);
  }
  XmlNodePtr lock = properties.selectSingleNode(metadataPath::lockImageId);
  if (!lock) {
    const XmlNodePtr parent = properties.selectSingleNode(metadataPath::properties);
    if (!parent) return endSilently("the properties have no place for a lock");
    lock = parent->appendChild(properties.createElement(lockElement));
  }
  lock->setText(lockId);
}

}  // namespace

SourceMetadata::Controls::Controls(SourceMetadata& form)
    : MetadataControls(form, sourceMetadataDifferences),
      viewer(form, form, *this, sourceMetadataDifferences) {
  Command7.click.connect([&form] { form.lockToRaster(); });
}

SourceMetadata::SourceMetadata(Toolkit& toolkit) : Form(toolkit, "SourceMetadata") {}

SourceMetadata::~SourceMetadata() {
  if (controls_) controls_->viewer.releaseEngines();
  endsQuietly([this] { releaseEngine(myPlexa); });
}

SourceMetadata::Controls& SourceMetadata::controls() {
  load();
  return served(controls_);
}

std::shared_ptr<void> SourceMetadata::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  return controls_;
}

void SourceMetadata::onLoad() {
  endsQuietly([this] {
    served(controls_).viewer.buildTree();
    served(controls_).viewer.sizeTreeEngines();
  });
}

void SourceMetadata::onUnload() { controls_->viewer.releaseEngines(); }

void SourceMetadata::onActivate() { served(controls_).viewer.windowActivated(); }

void SourceMetadata::onEnter() {
  callOut(toolkit())->letPendingEventsRun();
  served(controls_).viewer.windowActivated();
}

void SourceMetadata::RefreshTheForm() {
  if (!myPlexa) return;
  visitWindow(this, [this] {
    callOut(toolkit())->letPendingEventsRun();
    served(controls_).viewer.FetchDocuments();
    served(controls_).viewer.showSelectedNode();
    callOut(myPlexa)->Commit();
  });
}

void SourceMetadata::lockToRaster() {
  const std::string rasterId = served(controls_).viewer.rasters().selectedRasterId();
  if (!rasterId.empty()) lockTo(rasterId);
  const std::string properties = threadState().gServicePropertiesXml;
  FireOnChange.raise(properties);
}

void SourceMetadata::lockTo(const std::string& rasterId) {
  ThreadState& state = threadState();
  state.gLockImageID = lockIdOf(rasterId);
  if (state.gServicePropertiesXml.empty()) state.gServicePropertiesXml = lockDocument(state.gLockImageID);
  const auto properties = parsedDocument(state.gServicePropertiesXml);
  // Called only to fail early: a service that fails here ends the lock before the document changes.
  if (myImageServiceObject) static_cast<void>(served(controls_).viewer.definitions().clientAttributes());
  writeLock(*properties, state.gLockImageID);
  state.gServicePropertiesXml = properties->xml();
}

}  // namespace vlclientui
