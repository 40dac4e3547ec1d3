#pragma once

#include <memory>
#include <string>

#include "contracts/Platform.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// What the objects of one thread share instead of holding it themselves. A status belongs to a class, not to
/// an object: every object of the class on this thread writes the same one, and it survives them all.
struct ThreadState {
  std::string UserDataFolder;             ///< the documents folder, then "\Ostrel\Vor Lane"
  std::string ClientXADefPath;            ///< full path of VLClient.XADef
  std::string ClientXfdefPath;            ///< full path of VLClient.Xfdef
  std::string imageServicesDialogStatus;  ///< last failure text of ImageServicesDialog
  std::string exportDialogStatus;         ///< last failure text of ExportDialog

  // Of the service properties, metadata and viewpoint windows. Shared on purpose: of two open dialogs, each
  // sees what the other wrote.
  std::string gServicePropertiesXml;  ///< service properties document as last known
  std::string gImageMetadataXml;      ///< image metadata document of level Basic
  std::string gStatus;                ///< last failure text of ServicePropertiesDialog
  std::string gViewPointX;            ///< the viewpoint to save, map units as text
  std::string gViewPointY;
  std::string gLockImageID;  ///< raster to lock the mosaic to; cleared when the properties are saved
  // Definitions that a host has set.
  std::string gClientXADef;
  std::string gClientXFDef;
  std::string gServiceMetadataXADef;
  std::string gServiceMetadataXFDef;
  std::string gImageMetadataXADef;
  std::string gImageMetadataXFDef;

  std::shared_ptr<const Platform> platform;
};

/// The state of the calling thread.
[[nodiscard]] ThreadState& threadState();

/// Gives the calling thread its adapters, once, before any object is made on it; null takes them away again.
void setPlatform(std::shared_ptr<const Platform> platform);
/// True when the calling thread has a platform with every adapter set.
[[nodiscard]] bool hasPlatform();
/// @throws RuntimeFailure (MissingObject) while the thread has no platform.
[[nodiscard]] const Platform& currentPlatform();

}  // namespace vlclientui
#pragma GCC visibility pop
