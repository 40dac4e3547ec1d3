#include "viewer/map/PickedImage.h"

#include <QCoreApplication>
#include <QMetaObject>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::viewer {
namespace {

constexpr int pause = 60;  // milliseconds that map and properties stand still before they are drawn

ShownImage drawnImage(PickedService& service, const QString& reference, const host::GeographicEnvelope& view,
                      QSize pixels) {
  ShownImage image{reference, false, {}, service.marks()};
  if (const auto part = service.show(view, pixels.width(), pixels.height())) {
    image.isShown = true;
    image.corners = part->corners;
  }
  return image;
}

// Its raster may be another one than when they were applied.
QString problemToFollow(PickedService& service, const std::string& properties) {
  try {
    service.follow(properties);
    return {};
  } catch (const RuntimeFailure& failure) {
    return QString::fromStdString(failure.description());
  }
}

/// The result of a piece of work.
template <class Result>
struct Outcome {
  Result result = {};
  QString problem;
};

template <class Result, class Work>
Outcome<Result> outcomeOf(Work work) {
  try {
    return {work(), {}};
  } catch (const RuntimeFailure& failure) {
    return {{}, QString::fromStdString(failure.description())};
  } catch (const std::exception& failure) {
    return {{}, QString::fromUtf8(failure.what())};
  }
}

}  // namespace

PickedImage::PickedImage(Open open, QObject* parent) : QObject(parent), open_(std::move(open)) {
  pool_.setMaxThreadCount(1);
  soon_.setSingleShot(true);
  soon_.setInterval(pause);
  connect(&soon_, &QTimer::timeout, this, &PickedImage::draw);
}

PickedImage::~PickedImage() {
  pool_.clear();
  work_.cancel();
  pool_.waitForDone();
}

// What begins from now on is under a switch of its own.
void PickedImage::giveUp() {
  work_.cancel();
  work_ = {};
}

void PickedImage::pick(const QString& reference, const QString& title, const std::string& properties) {
  ++pick_;
  reference_ = reference;
  opening_ = working_ = again_ = false;
  soon_.stop();
  pool_.clear();  // nobody waits for these any more
  giveUp();
  // Pages that show it must go first.
  emit closed();
  service_.reset();
  if (!reference_.isEmpty()) open(title, properties);
}

void PickedImage::open(const QString& title, const std::string& properties) {
  opening_ = true;
  const auto takeService = [this, pick = pick_](const Outcome<std::shared_ptr<PickedService>>& outcome) {
    if (pick != pick_) return;
    opening_ = false;
    service_ = outcome.result;
    if (!service_) return emit failed(outcome.problem);
    if (!outcome.problem.isEmpty()) emit failed(outcome.problem);
    draw();
    emit opened();
  };
  pool_.start([this, takeService, title, properties, reference = reference_, work = work_] {
    const client::CancelScope scope(work);
    auto outcome = outcomeOf<std::shared_ptr<PickedService>>([&] { return open_(reference, title); });
    if (outcome.result && !properties.empty()) outcome.problem = problemToFollow(*outcome.result, properties);
    QMetaObject::invokeMethod(this, [takeService, outcome] { takeService(outcome); });
  });
}

void PickedImage::setView(const host::GeographicEnvelope& view, QSize pixels) {
  view_ = view;
  pixels_ = pixels;
  if (service_) drawAgainSoon();
}

// What is being drawn is wanted no more; what it gives is dropped, its failure too.
void PickedImage::drawAgainSoon() {
  again_ = working_;
  if (working_) giveUp();
  soon_.start();
}

void PickedImage::follow(const std::string& properties) {
  if (!service_) throw RuntimeFailure(tr("No service is open.").toStdString());
  service_->follow(properties);
  drawAgainSoon();
}

void PickedImage::draw() {
  if (!service_ || pixels_.isEmpty()) return;
  soon_.stop();
  again_ = working_;
  if (working_) return;
  working_ = true;
  const auto takeImage = [this, pick = pick_](const Outcome<ShownImage>& outcome) {
    if (pick != pick_) return;
    working_ = false;
    if (again_) return draw();
    if (!outcome.problem.isEmpty()) return emit failed(outcome.problem);
    emit drawn(outcome.result);
  };
  pool_.start([this, takeImage, service = service_, reference = reference_, view = view_, pixels = pixels_,
               work = work_] {
    const client::CancelScope scope(work);
    const auto outcome = outcomeOf<ShownImage>([&] { return drawnImage(*service, reference, view, pixels); });
    QMetaObject::invokeMethod(this, [takeImage, outcome] { takeImage(outcome); });
  });
}

}  // namespace vlclientui::viewer
