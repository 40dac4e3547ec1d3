#include "viewer/project/SessionKeeper.h"

#include <QMetaObject>
#include <utility>

namespace vlclientui::viewer {
namespace {

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

void SessionKeeper::finish() {
  if (soon_.isActive()) keep();
  pool_.waitForDone();
}

// Of several that wait for a slow disk the last one counts.
void SessionKeeper::keep() {
  soon_.stop();
  pool_.clear();
  pool_.start([this, project = snapshot_()] {
    const QString problem = QString::fromStdString(file_.keep(project));
    QMetaObject::invokeMethod(this, [this, problem] { takeProblem(problem); });
  });
}

void SessionKeeper::takeProblem(const QString& problem) {
  if (std::exchange(problem_, problem) != problem && !problem.isEmpty()) emit failed(problem);
}

}  // namespace vlclientui::viewer
