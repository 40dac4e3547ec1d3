#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServerClient.h"
#include "export/ExportDialogInterfaces.h"
#include "host/Compose.h"
#include "host/DesktopWindows.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesInterfaces.h"
#include "selection/ImageServicesDialogInterfaces.h"

// How long a person waits for each window on the samples: from the host's call until the window was painted
// first.
namespace vlclientui::benchmarks {
namespace {

constexpr int runs = 5;

/// Sees the first paint of anything in a window that the call opened, then closes the window by itself.
class FirstPaint : public QObject {
 public:
  FirstPaint() { qApp->installEventFilter(this); }

  /// Milliseconds until the first paint. @param known a window that stood there before the call, or null.
  double of(const std::function<void()>& call, QWidget* known) {
    known_ = known;
    painted_ = -1;
    clock_.start();
    call();
    while (painted_ < 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return static_cast<double>(painted_) / 1e6;
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    auto* const widget = qobject_cast<QWidget*>(object);
    if (event->type() != QEvent::Paint || widget == nullptr || widget == known_ || painted_ >= 0)
      return false;
    // After this paint; a modal window would stand there for good otherwise.
    QTimer::singleShot(0, this, [this] { end(); });
    return false;
  }

 private:
  void end() {
    if (painted_ < 0) painted_ = clock_.nsecsElapsed();
    if (QWidget* const modal = QApplication::activeModalWidget()) modal->close();
  }

  QElapsedTimer clock_;
  qint64 painted_ = -1;
  QWidget* known_ = nullptr;
};

double middleOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

class Session {
 public:
  Session()
      : host_(host::start(host::composeDesktopPlatform({}))),
        service_(std::make_shared<client::CatalogueImageService>(
            host_.catalogue, *host_.platform->xml, "ImageService://127.0.0.1/Imagery/Overlap_Study",
            client::ImageServiceSettings{host_.installation.definitions})) {}

  void measureAll() {
    tell("Services", [this] { return services(); });
    tell("Properties", [this] { return page(PropertyPageId::PropertyPageProperties); });
    tell("Metadata", [this] { return page(PropertyPageId::PropertyPageMetadata); });
    tell("Viewpoint", [this] { return page(PropertyPageId::PropertyPageViewPoint); });
    tell("Export", [this] { return exportWindow(); });
  }

 private:
  static void tell(const char* name, const std::function<double()>& open) {
    std::vector<double> times;
    const double first = open();
    for (int i = 0; i < runs; ++i) times.push_back(open());
    std::printf("%s %.1f ms, the first time %.1f ms\n", name, middleOf(times), first);
    std::fflush(stdout);
  }

  double services() {
    const auto dialog = queryInterface<IOVLImageServicesDialog>(createObject("ImageServicesDialog"));
    dialog->Init("", std::make_shared<client::OVLCatalogueServerClient>(host_.catalogue));
    return paint_.of([&] { dialog->ShowDialog(); }, nullptr);
  }

  double page(PropertyPageId id) {
    const auto dialog = queryInterface<IServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
    QWidget window;
    window.resize(640, 720);
    window.show();
    QCoreApplication::processEvents();
    dialog->Init("", nullptr, service_);
    const auto show = [&] { dialog->ShowPropertyPage(id, host::windowHandleOf(host_, window)); };
    const double time = paint_.of(show, &window);
    dialog->Close(id);
    return time;
  }

  double exportWindow() {
    const auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
    dialog->IExportImageDialog_Init("", nullptr, service_);
    return paint_.of([&] { dialog->iExportImageDialog_ShowModalDialog(); }, nullptr);
  }

  host::ComposedHost host_;
  std::shared_ptr<client::CatalogueImageService> service_;
  FirstPaint paint_;
};

}  // namespace
}  // namespace vlclientui::benchmarks

int main(int count, char** words) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, words);
  vlclientui::benchmarks::Session().measureAll();
  return 0;
}
