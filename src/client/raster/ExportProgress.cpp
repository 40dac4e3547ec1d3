#include "client/raster/ExportProgress.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {

void failCanceled() { throw RuntimeFailure("The export was cancelled."); }

void report(const ExportProgress& progress, double share) {
  if (progress && !progress(share)) failCanceled();
}

}  // namespace vlclientui::client
