#pragma once

#include <memory>
#include <string>

#include "contracts/Object.h"
#include "contracts/controls/Form.h"

namespace vlclientui {

/// The modal window that steers the viewpoint, with an OK button. Its result stands in the thread's
/// gViewPointX and gViewPointY.
class ViewPointDialogForm : public Form {
 public:
  explicit ViewPointDialogForm(Toolkit& toolkit);

  ObjectPtr myImageServiceObject;  ///< the service; without one the window lives on the document given
  std::string myImageMetaDataXml;

  /// Reads extent and step anew; what was published is forgotten.
  void RefReshViewpoints();

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override {}
};

}  // namespace vlclientui
