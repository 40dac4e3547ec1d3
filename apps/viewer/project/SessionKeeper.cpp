#include "viewer/project/SessionKeeper.h"

#include <QMetaObject>

namespace vlclientui::viewer {
namespace {

constexpr int mostWait = 5000;  // milliseconds that a window stays for a slow disk; its writing goes on

// After the first change; later ones do not put it off. A slow disk takes its time as well.
constexpr int delay = 3000;  // milliseconds

}  // namespace

SessionKeeper::SessionKeeper(SessionFile file, Snapshot snapshot, QObject* parent)
    : QObject(parent), file_(std::move(file)), snapshot_(std::move(snapshot)) {
  pool_.setMaxThreadCount(1);
  soon_.setSingleShot(true);
  soon_.setInterval(delay);
  connect(&soon_, &QTimer::timeout, this, &SessionKeeper::keep);
}

SessionKeeper::~SessionKeeper() { pool_.waitForDone(); }

void SessionKeeper::noteChange() {
  if (!soon_.isActive()) soon_.start();
}

// A disk that was full may have room again.
void SessionKeeper::finish() {
  if (soon_.isActive() || !problem().isEmpty()) keep();
  pool_.waitForDone(mostWait);
}

QString SessionKeeper::problem() const {
  const std::scoped_lock lock(mutex_);
  return problem_;
}

// Of several that wait for a slow disk the last one counts.
void SessionKeeper::keep() {
  soon_.stop();
  pool_.clear();
  pool_.start([this, project = snapshot_()] { takeProblem(QString::fromStdString(file_.keep(project))); });
}

void SessionKeeper::takeProblem(const QString& problem) {
  QString former = problem;
  {
    const std::scoped_lock lock(mutex_);
    former.swap(problem_);
  }
  if (former == problem || problem.isEmpty()) return;
  QMetaObject::invokeMethod(
      this, [this, problem] { emit failed(problem); }, Qt::QueuedConnection);
}

}  // namespace vlclientui::viewer
