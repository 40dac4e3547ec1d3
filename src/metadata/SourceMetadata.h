#pragma once

#include <memory>
#include <string>

#include "contracts/controls/Form.h"
#include "metadata/MetadataControls.h"
#include "metadata/MetadataDocuments.h"
#include "metadata/MetadataViewer.h"

namespace vlclientui {

/// The page that a host embeds to show what is known of a service: the service itself, the image last
/// returned, what was done to make it, and the source rasters behind it. Its documents, its service and the
/// engine that shows a page with definitions are the MetadataFields, set by the dialog object before the page
/// loads and whenever they change.
class SourceMetadata : public MetadataFields, public Form {
 public:
  struct Controls : MetadataControls {
    explicit Controls(SourceMetadata& form);

    MetadataViewer viewer;
  };

  explicit SourceMetadata(Toolkit& toolkit);
  ~SourceMetadata() override;

  /// Fetches the documents and shows the selected node anew. Nothing while no page with definitions shows.
  void RefreshTheForm();

  /// The first touch loads the form.
  [[nodiscard]] Controls& controls();

  /// The person locked the mosaic to a raster; told with the service properties document.
  Event<const std::string&> FireOnChange;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override;
  void onUnload() override;
  void onActivate() override;
  void onEnter() override;

 private:
  void lockToRaster();
  void lockTo(const std::string& rasterId);

  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui
