#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Plexa.h"
#include "frame/EngineRelease.h"
#include "metadata/MetadataViewerDifferences.h"

namespace vlclientui {

/// Shows free XML as a tree, without definitions. The engine is made on demand, a new one for each show. Its
/// failures are RuntimeFailure.
class TreeEngine {
 public:
  /// Hides the surface.
  void hide();
  /// In pixels.
  void resize(std::int32_t width, std::int32_t height);
  /// Shows the XML in the window, setting the place before the options.
  void show(const std::string& xml, WindowHandle window, const TreePlace& place);
  /// The same, setting the size before the options and the upper left corner after the window.
  void showSizedFirst(const std::string& xml, WindowHandle window, const TreePlace& place);
  /// Takes the engine out of its window and releases it.
  void release() { releaseEngine(engine_); }

 private:
  [[nodiscard]] std::shared_ptr<Plexa> engine();
  void renew();
  void putIn(WindowHandle window);
  void fill(const std::string& xml);

  std::shared_ptr<Plexa> engine_;
};

}  // namespace vlclientui
