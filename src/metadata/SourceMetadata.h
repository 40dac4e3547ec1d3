#pragma once

#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/Plexa.h"
#include "contracts/controls/Form.h"

namespace vlclientui {

/// The page that a host embeds to show what is known of a service: the service itself, the image last
/// returned, what was done to make it, and the source rasters behind it.
class SourceMetadata : public Form {
 public:
  explicit SourceMetadata(Toolkit& toolkit);

  std::string myServiceInfoXml;
  std::string myMetaDataXml;
  std::string myImageMetaDataXml;
  ObjectPtr myImageServiceObject;  ///< the service; without one the page lives on the three documents

  /// The engine that shows a page with definitions; one at a time, null while none does.
  std::shared_ptr<Plexa> myPlexa;

  /// Fetches the documents and shows the selected node anew. Nothing while no page with definitions shows.
  void RefreshTheForm();

  /// The person locked the mosaic to a raster; told with the service properties document.
  Event<const std::string&> FireOnChange;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override {}
};

}  // namespace vlclientui
