#pragma once

#include <functional>
#include <string>

#include "contracts/Toolkit.h"
#include "frame/General.h"
#include "metadata/MetadataPages.h"
#include "metadata/RasterPages.h"

namespace vlclientui {

/// The logic of the metadata viewer, for either of its windows: the tree, the pages of its nodes, the keys
/// and the save button. It connects itself to all controls but Command7, and lives as long as they do.
///
/// The window calls buildTree and sizeTreeEngines at load, and releaseEngines before its controls go.
class MetadataViewer {
 public:
  MetadataViewer(Form& form, MetadataFields& fields, MetadataControls& controls,
                 const MetadataViewerDifferences& differences);
  MetadataViewer(const MetadataViewer&) = delete;
  MetadataViewer& operator=(const MetadataViewer&) = delete;

  /// Makes the nodes, marks the first and hides all pages; in a window that builds the tree at each visit,
  /// also shows the first node. @throws RuntimeFailure at the first failure; what was made stays.
  void buildTree();
  /// Sets the size of the three tree engines before anything shows. @throws RuntimeFailure
  void sizeTreeEngines();

  /// Asks the service for the three documents. Ends quietly.
  void FetchDocuments() { fetchDocuments(window_.fields); }
  /// Handles a click on the selected node: fetches, drops the old page, shows the node's. The status gets the
  /// text of this routine's own failure, and is cleared otherwise.
  void showSelectedNode();
  /// The window became active: fetches and shows the selected node, in the window that does so.
  void windowActivated();

  /// Releases the engine of the page with definitions. @throws RuntimeFailure
  void DropPageEngine();
  /// @throws RuntimeFailure
  void HidePages();

  // For the window with two sides. @throws RuntimeFailure
  void hideServerProcess() { pages_.serverProcessEngine().hide(); }
  void releaseProcessEngines();

  /// Takes every engine out of its window and releases it, whatever fails.
  void releaseEngines();

  [[nodiscard]] RasterPages& rasters() { return rasters_; }
  [[nodiscard]] ProvidedDefinitions definitions() const { return {window_.fields, window_.differences}; }

 private:
  void connectEvents();
  void connectHelp(Control& control, HelpHome home);
  void addNodes();
  void showNodeAndTell();
  void runClickRule();
  void showUnderHourglass(const std::function<void()>& page);
  [[nodiscard]] std::function<void()> pageOf(const std::string& key);
  void saveMetadata();
  void listKeyPressed(const KeyEvent& key);

  MetadataWindow window_;
  MetadataPages pages_;
  RasterPages rasters_;
};

}  // namespace vlclientui
