#pragma once

#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/controls/Form.h"

namespace vlclientui {

/// The page that a host embeds to steer the viewpoint of a mosaic. What it publishes stands in the thread's
/// gViewPointX and gViewPointY until the properties are saved.
class ViewPoint : public Form {
 public:
  explicit ViewPoint(Toolkit& toolkit);

  ObjectPtr myImageServiceObject;  ///< the service; without one the page lives on the documents given
  std::string myImageMetaDataXml;
  std::string myServiceInfoXml;  ///< kept for hosts that set it; nothing here reads it
  std::string myMetaDataXml;     ///< as above

  /// Reads extent and step anew; what was published is forgotten.
  void RefReshViewpoints();

  /// Raised at the start of each publication.
  Event<> ViewPointChanged;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override {}
};

}  // namespace vlclientui
