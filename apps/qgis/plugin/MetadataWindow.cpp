#include "qgis/plugin/MetadataWindow.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QVBoxLayout>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "host/DesktopWindows.h"
#include "viewer/docks/PropertyDocks.h"
#include "viewer/docks/WaitingInDocks.h"

namespace vlclientui::qgis {
namespace {

constexpr auto metadata = PropertyPageId::PropertyPageMetadata;
constexpr QSize usualSize(620, 640);

class LockListener : public IServicePropertiesCallback {
 public:
  explicit LockListener(std::function<void(const std::string&)> locked) : locked_(std::move(locked)) {}
  void OnServicePropertiesChanged(const std::string& servicePropertiesXml) override {
    locked_(servicePropertiesXml);
  }

 private:
  std::function<void(const std::string&)> locked_;
};

/// What the pages of the docks wait with is none of this window's.
struct OfDocks {
  OfDocks() = default;
  OfDocks(const OfDocks&) = delete;
  OfDocks& operator=(const OfDocks&) = delete;
  ~OfDocks() { viewer::giveBack(kept); }

  viewer::WaitingInDocks kept = viewer::takeHandedOver();
};

/// The page in a place of the window.
class Page {
 public:
  Page(const host::ComposedHost& host, std::shared_ptr<IOVLServicePropertiesDialog> dialog, QWidget& place)
      : dialog_(std::move(dialog)) {
    if (dialog_->ShowPropertyPage(metadata, host::windowHandleOf(host, place)) == boolean16False)
      throw RuntimeFailure(dialog_->Status());
    const auto children = place.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    if (!children.isEmpty()) place.layout()->addWidget(children.last());
  }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  ~Page() { dialog_->Close(metadata); }

 private:
  std::shared_ptr<IOVLServicePropertiesDialog> dialog_;
};

}  // namespace

void showMetadata(const host::ComposedHost& host, const std::shared_ptr<viewer::PickedService>& service,
                  const QString& title, const std::function<void(const std::string& properties)>& locked,
                  QWidget* parent) {
  const OfDocks waitsMeanwhile;
  const auto dialog = viewer::openPropertiesDialog(service, std::make_shared<LockListener>(locked));
  dialog->serviceInfoXml(service->ServiceInfo());
  dialog->ImageMetaDataXml(service->GetImageMetadata(""));
  QDialog window(parent);
  window.setObjectName(QStringLiteral("VLClientUIMetadataWindow"));
  window.setWindowTitle(QCoreApplication::translate("MetadataWindow", "Metadata \u2013 %1").arg(title));
  auto* const layout = new QVBoxLayout(&window);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* const place = new QWidget;
  (new QVBoxLayout(place))->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(place, 1);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &window, &QDialog::reject);
  // In line with the page, which has margins of its own.
  auto* const row = new QWidget;
  (new QVBoxLayout(row))->addWidget(buttons);
  layout->addWidget(row);
  window.resize(usualSize);
  host::openHelpByKey(window, "Viewing_image_service_metadata");
  const Page page(host, dialog, *place);
  window.exec();
}

}  // namespace vlclientui::qgis
