#pragma once

#include <string>

#include "contracts/Event.h"
#include "viewpoint/ViewPointSteering.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The page that a host embeds to steer the viewpoint of a mosaic. Publishes numbers with ".", also when it
/// loses the focus and when it is unloaded.
class ViewPoint : public ViewPointSteering {
 public:
  explicit ViewPoint(Toolkit& toolkit);

  std::string myServiceInfoXml;  ///< hosts may set it; not used here
  std::string myMetaDataXml;     ///< as above

  /// Raised at the start of each publication.
  Event<> ViewPointChanged;
};

}  // namespace vlclientui
#pragma GCC visibility pop
