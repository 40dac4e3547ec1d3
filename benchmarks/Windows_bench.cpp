#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServerClient.h"
#include "export/ExportDialogInterfaces.h"
#include "headless/HeadlessToolkit.h"
#include "host/Compose.h"
#include "host/DesktopWindows.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesInterfaces.h"
#include "selection/ImageServicesDialogInterfaces.h"

// How long a person waits for each window on the samples: from the host's call until the window was painted
// first; or, for the logic alone, how long the call takes where a window is an entry in a table.
// Usage: Windows_bench [--logic]
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

/// Opens windows in some way, and tells how long that takes.
class Ways {
 public:
  Ways() = default;
  virtual ~Ways() = default;
  Ways(const Ways&) = delete;
  Ways& operator=(const Ways&) = delete;

  /// Milliseconds of a call that opens a window of its own.
  virtual double ofWindow(const std::function<void()>& call) = 0;
  /// Milliseconds of a call that fills a window of the host. @param close ends it, beside the clock.
  virtual double ofPage(const std::function<void(WindowHandle)>& call,
                        const std::function<void()>& close) = 0;
};

class PaintedWays final : public Ways {
 public:
  explicit PaintedWays(const host::ComposedHost& host) : host_(host) {}

  double ofWindow(const std::function<void()>& call) override { return paint_.of(call, nullptr); }
  double ofPage(const std::function<void(WindowHandle)>& call, const std::function<void()>& close) override {
    QWidget window;
    window.resize(640, 720);
    window.show();
    QCoreApplication::processEvents();
    const double time = paint_.of([&] { call(host::windowHandleOf(host_, window)); }, &window);
    close();
    return time;
  }

 private:
  const host::ComposedHost& host_;
  FirstPaint paint_;
};

class LogicWays final : public Ways {
 public:
  explicit LogicWays(headless::HeadlessToolkit& toolkit) : toolkit_(toolkit) {}

  double ofWindow(const std::function<void()>& call) override {
    QElapsedTimer clock;
    clock.start();
    call();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
  }
  double ofPage(const std::function<void(WindowHandle)>& call, const std::function<void()>& close) override {
    const WindowHandle window = toolkit_.addHostWindow("Host");
    const double time = ofWindow([&] { call(window); });
    close();
    return time;
  }

 private:
  headless::HeadlessToolkit& toolkit_;
};

class Session {
 public:
  explicit Session(const host::ComposedHost& composed)
      : host_(host::start(composed)),
        ways_(waysOf(host_)),
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
    return ways_->ofWindow([&] { dialog->ShowDialog(); });
  }

  double page(PropertyPageId id) {
    const auto dialog = queryInterface<IServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
    dialog->Init("", nullptr, service_);
    return ways_->ofPage([&](WindowHandle window) { dialog->ShowPropertyPage(id, window); },
                         [&] { dialog->Close(id); });
  }

  double exportWindow() {
    const auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
    dialog->IExportImageDialog_Init("", nullptr, service_);
    return ways_->ofWindow([&] { dialog->iExportImageDialog_ShowModalDialog(); });
  }

  static std::unique_ptr<Ways> waysOf(const host::ComposedHost& host) {
    const auto headless = std::dynamic_pointer_cast<headless::HeadlessToolkit>(host.platform->toolkit);
    if (headless) return std::make_unique<LogicWays>(*headless);
    return std::make_unique<PaintedWays>(host);
  }

  host::ComposedHost host_;
  std::unique_ptr<Ways> ways_;
  std::shared_ptr<client::CatalogueImageService> service_;
};

}  // namespace
}  // namespace vlclientui::benchmarks

int main(int count, char** words) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const bool isLogicAlone = count > 1 && std::string(words[1]) == "--logic";
  const QApplication application(count, words);
  using namespace vlclientui;
  benchmarks::Session(isLogicAlone ? host::composeHeadlessPlatform({}) : host::composeDesktopPlatform({}))
      .measureAll();
  return 0;
}
