#pragma once

#include <memory>
#include <string>

#include "contracts/controls/Form.h"
#include "metadata/MetadataControls.h"
#include "metadata/MetadataDocuments.h"
#include "metadata/MetadataViewer.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The page that shows a host what is known of a service: the service itself, its last image with what was
/// done to make it, and the rasters that it came from. The dialog object sets the MetadataFields before the
/// page loads and whenever they change.
class SourceMetadata : public MetadataFields, public Form {
 public:
  struct Controls : MetadataControls {
    explicit Controls(SourceMetadata& form);

    MetadataViewer viewer;
  };

  explicit SourceMetadata(Toolkit& toolkit);
  ~SourceMetadata() override;

  /// Fetches the documents and shows the selected node again. Does nothing unless a page with definitions is
  /// on show.
  void RefreshTheForm();

  /// Loads the form when needed.
  [[nodiscard]] Controls& controls();

  /// The person locked the mosaic to a raster; carries the service properties document.
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
#pragma GCC visibility pop
