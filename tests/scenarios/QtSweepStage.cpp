#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QWidget>

#include "engine/Engine.h"
#include "scenarios/SweepStage.h"
#include "widgets/FormWindow.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

namespace {

class QtSweepStage final : public SweepStage {
 public:
  QtSweepStage() {
    QObject::connect(&watch_, &QTimer::timeout, [] { closeStrangeWindow(); });
    watch_.start(1);
  }

  void equip(Platform& platform) override {
    toolkit_ = std::make_shared<widgets::QtToolkit>(platform.system);
    platform.toolkit = toolkit_;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit_));
  }
  WindowHandle hostWindow() override {
    if (!host_) {
      host_ = std::make_unique<QWidget>();
      host_->resize(1200, 700);
    }
    return toolkit_->windows().handleOf(host_.get());
  }
  void destroyHostWindow() override { host_.reset(); }
  void runModal(Form& form, const std::function<void()>& script) override {
    // Its timer goes with it when no loop has run.
    QObject shown;
    QTimer::singleShot(0, &shown, [&script] { script(); });
    toolkit_->runModal(form);
  }
  void settle() override {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  /// Documents, system and client are the same; the sweep in memory strikes at them.
  [[nodiscard]] bool strikesAtWindowsAlone() const override { return true; }

 private:
  /// The engine's own window waits for a person.
  static void closeStrangeWindow() {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog && !dynamic_cast<widgets::FormWindow*>(dialog)) dialog->reject();
  }

  std::shared_ptr<widgets::QtToolkit> toolkit_;
  std::unique_ptr<QWidget> host_;
  QTimer watch_;
};

}  // namespace

std::unique_ptr<SweepStage> makeSweepStage() { return std::make_unique<QtSweepStage>(); }

}  // namespace vlclientui::test
