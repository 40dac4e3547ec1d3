#include "client/raster/ExportProgress.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {

void failCancelled() { throw RuntimeFailure("The export was cancelled."); }

void report(const ExportProgress& progress, double share) {
  if (progress && !progress(share)) failCancelled();
}

}  // namespace vlclientui::client
