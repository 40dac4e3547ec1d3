#pragma once

#include <cstdint>

namespace vlclientui {

/// Place of a tree engine, pixels.
struct TreePlace {
  std::int32_t left;
  std::int32_t top;
  std::int32_t width;
  std::int32_t height;
};

/// Whose left edge the page of the server process has, and how that is computed.
enum class ProcessHost {
  Frame1InTwips,           ///< deliberate: uses the number of twips as pixels
  FirstPageFrameInPixels,  ///< converted to pixels
};

enum class PagePosition { Fixed, FromLayout };

/// The metadata viewer exists in two windows. This is all that differs between them, one row each.
struct MetadataViewerDifferences {
  bool followsActivation;      ///< activation and focus fetch the documents and show the selected node
  bool treeIsMadeAnew;         ///< each building empties the tree and shows the first node at once
  bool commitsBeforeDrop;      ///< a page's engine commits its edits before it is released
  bool hasSourceImagesList;    ///< always hidden
  bool hasSend;                ///< always hidden and disabled
  bool hasFrame2;              ///< a frame around the attribute list, shown and hidden with it
  bool hidesProcessOnceMore;   ///< a click hides the server process engine again after hiding the pages
  bool knowsPageKeys;          ///< handles keys of single service pages, which no node has
  bool rewritesStatus;         ///< the image page shows the status as readable text
  bool usesDefinitionsOfHost;  ///< without a service, definitions that a host has set are used
  bool buildsPageAfterList;    ///< the raster page is built again once the raster list is full
  ProcessHost processHost;     ///< left edge of the server process
  std::int32_t processTop;     ///< top edge of the server process, pixels
  TreePlace rasterTree;        ///< the trees of a raster
  std::int32_t processHeight;  ///< height of the server process engine at load, pixels
  PagePosition pagePosition;   ///< of pages with definitions in their frames
  const char* lockButtonHint;  ///< tool tip of Command7
};

// clang-format off
inline constexpr MetadataViewerDifferences sourceMetadataDifferences{
    .followsActivation     = true,
    .treeIsMadeAnew        = false,
    .commitsBeforeDrop     = false,
    .hasSourceImagesList   = true,
    .hasSend               = true,
    .hasFrame2             = false,
    .hidesProcessOnceMore  = false,
    .knowsPageKeys         = false,
    .rewritesStatus        = true,
    .usesDefinitionsOfHost = true,
    .buildsPageAfterList   = true,
    .processHost           = ProcessHost::Frame1InTwips,
    .processTop            = 5,
    .rasterTree            = {.left = 150, .top = 50, .width = 405, .height = 280},
    .processHeight         = 330,
    .pagePosition          = PagePosition::Fixed,
    .lockButtonHint        = "Lock to selected raster. Note: Change of mosaic method in Service Properties "
                             "will only be reflected on OK/Apply."};

inline constexpr MetadataViewerDifferences oneWindowDifferences{
    .followsActivation     = false,
    .treeIsMadeAnew        = true,
    .commitsBeforeDrop     = true,
    .hasSourceImagesList   = false,
    .hasSend               = false,
    .hasFrame2             = true,
    .hidesProcessOnceMore  = true,
    .knowsPageKeys         = true,
    .rewritesStatus        = false,
    .usesDefinitionsOfHost = false,
    .buildsPageAfterList   = false,
    .processHost           = ProcessHost::FirstPageFrameInPixels,
    .processTop            = 27,
    .rasterTree            = {.left = 160, .top = 75, .width = 405, .height = 300},
    .processHeight         = 350,
    .pagePosition          = PagePosition::FromLayout,
    .lockButtonHint        = "Lock to current image."};
// clang-format on

}  // namespace vlclientui
