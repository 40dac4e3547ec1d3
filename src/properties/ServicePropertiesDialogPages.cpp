// The windows of the dialog object: puts pages into a window of the host, takes them out again, and shows the
// modal windows.

#include <algorithm>
#include <string>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "contracts/Toolkit.h"
#include "properties/GuardedOperation.h"
#include "properties/ServicePropertiesDialog.h"

namespace vlclientui {

namespace {

/// What a page is given before it is placed: a sum of these, in this order.
namespace pageData {
constexpr int serviceInfo = 1;
constexpr int imageMetadata = 2;
constexpr int metadata = 4;
constexpr int service = 8;
constexpr int srsReadOnly = 16;
constexpr int documents = serviceInfo | imageMetadata | metadata;
}  // namespace pageData

/// When a page's window gets the child style.
enum class ChildBit { Never, BeforeParent, AfterParent };

// Place of a page, in twips from the upper left corner of its container.
constexpr double pageLeft = 29.8;
constexpr double pageTop = 134.1;

template <class Page>
Page& madeIfEmpty(std::shared_ptr<Page>& page) {
  if (!page) page = std::make_shared<Page>(*currentPlatform().toolkit);
  return *page;
}

}  // namespace

/// The three pages are treated differently on purpose; hosts rely on each difference. One row per page.
struct ServicePropertiesDialog::PageTreatment {
  PropertyPageId page;
  int shown;   ///< data given by ShowPropertyPage
  int handed;  ///< data given by GetPropertyPageHandle
  std::int32_t ServicePropertiesDialog::*
      keptStyle;      ///< where to keep the style that was read; null: not kept
  ChildBit childBit;  ///< when the kept style gets the child bit
  WindowHandle ServicePropertiesDialog::*keptParent;  ///< where to keep the old parent; null: not kept
};

const ServicePropertiesDialog::PageTreatment* ServicePropertiesDialog::treatmentOf(PropertyPageId pageId) {
  using Dialog = ServicePropertiesDialog;
  // clang-format off
  static constexpr PageTreatment treatments[] = {
      {PropertyPageId::PropertyPageMetadata,
       pageData::documents | pageData::service, pageData::documents | pageData::service,
       &Dialog::myMetadataPageStyle, ChildBit::AfterParent, &Dialog::myMetadataPageParent},
      {PropertyPageId::PropertyPageProperties,
       pageData::service | pageData::srsReadOnly, pageData::service | pageData::srsReadOnly,
       nullptr, ChildBit::Never, nullptr},
      {PropertyPageId::PropertyPageViewPoint,
       pageData::service, pageData::documents | pageData::service,
       &Dialog::myViewPointPageStyle, ChildBit::BeforeParent, &Dialog::myViewPointPageParent},
  };
  // clang-format on
  const auto* const found = std::ranges::find(treatments, pageId, &PageTreatment::page);
  return found == std::end(treatments) ? nullptr : found;
}

Boolean16 ServicePropertiesDialog::ShowPropertyPage(PropertyPageId pageId, WindowHandle parentHandle) {
  return reportsToStatus(*this, boolean16False, [&] {
    if (!mayShow()) return boolean16False;
    refreshDocuments();
    if (const PageTreatment* const treatment = treatmentOf(pageId)) {
      const auto page = preparedPage(pageId, treatment->shown);
      // What the page asked while it loaded may have closed it.
      if (!holds(*page) || !page->loaded()) return boolean16False;
      return toBoolean16(page->visited([&] { embed(*page, *treatment, parentHandle); }));
    }
    return boolean16True;
  });
}

WindowHandle ServicePropertiesDialog::GetPropertyPageHandle(PropertyPageId pageId) {
  return reportsToStatus(*this, WindowHandle{0}, [&] {
    refreshDocuments();
    const PageTreatment* const treatment = treatmentOf(pageId);
    if (!treatment) return WindowHandle{0};
    const auto page = preparedPage(pageId, treatment->handed);
    return page->toolkit().windowOf(*page);
  });
}

std::shared_ptr<Form> ServicePropertiesDialog::preparedPage(PropertyPageId pageId, int data) {
  forgetPageWithoutWindow(pageId);
  switch (pageId) {
    case PropertyPageId::PropertyPageMetadata:
      return give(metadataPage(), data);
    case PropertyPageId::PropertyPageProperties:
      return give(propertiesPage(), data);
    case PropertyPageId::PropertyPageViewPoint:
      return give(viewPointPage(), data);
  }
  failMissingObject("the page");
}

template <class Page>
std::shared_ptr<Form> ServicePropertiesDialog::give(Page& page, int data) {
  auto keptAlive = page.shared_from_this();
  if constexpr (requires { page.myServiceInfoXml; }) {
    if (data & pageData::serviceInfo) page.myServiceInfoXml = myServiceInfoXml;
    if (data & pageData::imageMetadata) page.myImageMetaDataXml = myImageMetaDataXml;
    if (data & pageData::metadata) page.myMetaDataXml = myMetaDataXml;
  }
  if (data & pageData::service) page.myImageServiceObject = myImageServiceObject;
  if constexpr (requires { page.mySrsReadOnly; }) {
    if (data & pageData::srsReadOnly) page.mySrsReadOnly = mySrsReadOnly;
  }
  page.moveTo(pageLeft, pageTop);
  return keptAlive;
}

/// A host that destroyed its own window first destroyed the page's with it: the page is made anew.
void ServicePropertiesDialog::forgetPageWithoutWindow(PropertyPageId pageId) {
  const auto lacksWindow = [](const auto& page) {
    return page && page->loaded() && page->toolkit().windowOf(*page) == 0;
  };
  switch (pageId) {
    case PropertyPageId::PropertyPageMetadata:
      if (lacksWindow(SourceMetadataForm)) releaseMetadataPage();
      break;
    case PropertyPageId::PropertyPageProperties:
      if (lacksWindow(myPropertiesPage)) myPropertiesPage.reset();
      break;
    case PropertyPageId::PropertyPageViewPoint:
      if (lacksWindow(myViewPointPage)) myViewPointPage.reset();
      break;
  }
}

void ServicePropertiesDialog::embed(Form& page, const PageTreatment& treatment, WindowHandle parentHandle) {
  Toolkit& toolkit = page.toolkit();
  const WindowHandle window = callOut(toolkit)->windowOf(page);
  // The place is not used: a host lays the page out in its own window.
  if (!callOut(toolkit)->windowRect(parentHandle)) {
    endSilently("there is no window " + std::to_string(parentHandle) + " for the page to stand in");
  }
  const std::int32_t style = callOut(toolkit)->styleOf(window);
  if (treatment.keptStyle) this->*treatment.keptStyle = style;
  const auto addChildBit = [&] { callOut(toolkit)->setStyle(window, style | windowStyle::child); };
  if (treatment.childBit == ChildBit::BeforeParent) addChildBit();
  const WindowHandle oldParent = callOut(toolkit)->setParent(window, parentHandle);
  if (treatment.keptParent) this->*treatment.keptParent = oldParent;
  if (treatment.childBit == ChildBit::AfterParent) addChildBit();
  callOut(toolkit)->showWindow(window, showModeShow);
}

bool ServicePropertiesDialog::holds(const Form& page) const {
  return &page == SourceMetadataForm.get() || &page == myPropertiesPage.get() ||
         &page == myViewPointPage.get();
}

Boolean16 ServicePropertiesDialog::Close(PropertyPageId pageId) {
  return endsQuietlyWith(*this, boolean16False, [&] {
    // This page's window cannot be put back: nothing was kept for it.
    if (pageId == PropertyPageId::PropertyPageProperties) myPropertiesPage.reset();
    if (pageId == PropertyPageId::PropertyPageMetadata) closeMetadataPage();
    releaseCallingForm();
    if (pageId == PropertyPageId::PropertyPageViewPoint) closeViewPointPage();
    return boolean16True;
  });
}

void ServicePropertiesDialog::closeMetadataPage() {
  const auto page = SourceMetadataForm;
  if (!page) return;
  if (const auto engine = page->myPlexa) engine->ParentWindow(0);
  putBack(*page, myMetadataPageParent, myMetadataPageStyle);
  if (SourceMetadataForm == page) releaseMetadataPage();
}

void ServicePropertiesDialog::closeViewPointPage() {
  const auto page = myViewPointPage;
  if (!page) return;
  putBack(*page, myViewPointPageParent, myViewPointPageStyle);
  if (myViewPointPage == page) myViewPointPage.reset();
}

void ServicePropertiesDialog::putBack(Form& page, WindowHandle parent, std::int32_t style) {
  Toolkit& toolkit = page.toolkit();
  const WindowHandle window = toolkit.windowOf(page);
  toolkit.setParent(window, parent);
  toolkit.setStyle(window, style);
}

void ServicePropertiesDialog::releaseMetadataPage() {
  if (!SourceMetadataForm) return;
  SourceMetadataForm->FireOnChange.disconnectAll();
  SourceMetadataForm.reset();
}

void ServicePropertiesDialog::releaseCallingForm() {
  if (!CallingForm) return;
  CallingForm->OnOKClick.disconnectAll();
  CallingForm.reset();
}

std::int32_t ServicePropertiesDialog::ShowPropertiesModalDialog() {
  return reportsToStatus(*this, std::int32_t{-1}, [this] {
    if (!mayShow()) return std::int32_t{-1};
    // Holds the form, so that a Close while it is open releases it here at the earliest.
    const auto form = CallingForm;
    if (!form) failMissingObject("the window of the properties; call Init again after Close");
    if (form->onShow()) throw RuntimeFailure(Form::alreadyOnShow);
    form->myServiceInfoXml = myServiceInfoXml;
    form->myMetaDataXml = myMetaDataXml;
    form->myImageMetaDataXml = myImageMetaDataXml;
    form->myDialogObject = this;
    form->mySrsReadOnly = mySrsReadOnly;
    form->myImageServiceObject = myImageServiceObject;
    return form->ShowMe();
  });
}

Boolean16 ServicePropertiesDialog::ShowViewPointModalDialog() {
  return endsQuietlyWith(*this, boolean16False, [this] {
    ViewPointDialogForm& dialog = viewPointDialog();
    const auto keptAlive = myViewPointDialog;
    if (dialog.onShow()) {
      threadState().gStatus = Form::alreadyOnShow;
      return boolean16False;
    }
    dialog.myImageServiceObject = myImageServiceObject;
    dialog.myImageMetaDataXml = myImageMetaDataXml;
    dialog.showModal();
    return boolean16True;
  });
}

SourceMetadata& ServicePropertiesDialog::metadataPage() {
  if (!SourceMetadataForm) {
    madeIfEmpty(SourceMetadataForm).FireOnChange.connect([this](const std::string& xml) {
      passOnChange(xml);
    });
  }
  return *SourceMetadataForm;
}

ServiceProperties& ServicePropertiesDialog::propertiesPage() { return madeIfEmpty(myPropertiesPage); }

ViewPoint& ServicePropertiesDialog::viewPointPage() { return madeIfEmpty(myViewPointPage); }

ViewPointDialogForm& ServicePropertiesDialog::viewPointDialog() { return madeIfEmpty(myViewPointDialog); }

}  // namespace vlclientui
