#pragma once

#include <functional>
#include <string>

#include "contracts/Toolkit.h"
#include "frame/General.h"
#include "metadata/MetadataPages.h"
#include "metadata/RasterPages.h"

namespace vlclientui {

/// The logic of the metadata viewer, for either of its windows: the tree and what stands behind its nodes,
/// the keys and the save button. It connects itself to the controls, Command7 apart, and lives and dies with
/// them.
///
/// The window calls buildTree and sizeTreeEngines at load, and releaseEngines before its controls go.
class MetadataViewer {
 public:
  MetadataViewer(Form& form, MetadataFields& fields, MetadataControls& controls,
                 const MetadataViewerDifferences& differences);
  MetadataViewer(const MetadataViewer&) = delete;
  MetadataViewer& operator=(const MetadataViewer&) = delete;

  /// Makes the nodes, marks the first and hides all pages; where the tree is made anew at each visit, shows
  /// the first node as well. @throws RuntimeFailure at the first failure; what was made stays.
  void buildTree();
  /// Gives the three tree engines the size that they have before anything shows. @throws RuntimeFailure
  void sizeTreeEngines();

  /// Asks the service for the three documents. Ends quietly.
  void FetchDocuments() { fetchDocuments(window_.fields); }
  /// The click on the selected node: fetches, drops the old page, shows the node's. The status takes the text
  /// of a failure of this rule itself, and none after a clean pass.
  void showSelectedNode();
  /// The window became active: fetches and shows the selected node, where the window follows that.
  void windowActivated();

  /// The page with definitions gives up its engine. @throws RuntimeFailure
  void DropPageEngine();
  /// @throws RuntimeFailure
  void HidePages();

  // For the window that changes between two sides. @throws RuntimeFailure
  void hideServerProcess() { pages_.serverProcessEngine().hide(); }
  void releaseProcessEngines();

  /// Takes every engine out of its window and lets it go, whatever fails.
  void releaseEngines();

  [[nodiscard]] RasterPages& rasters() { return rasters_; }
  [[nodiscard]] ProvidedDefinitions definitions() const { return {window_.fields, window_.differences}; }

 private:
  void connectEvents();
  void connectHelp(Control& control, HelpHome home);
  void addNodes();
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
