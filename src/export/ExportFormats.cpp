#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "documents/TextCase.h"
#include "export/ExportControl.h"
#include "export/Formats.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

// What a format brings along: tile size, quality, extension and the filter of the file dialog.

namespace vlclientui {

namespace {

constexpr const char* dialogTitle = "Export image to:";
// Deliberate: written as one word, unlike the folder of the default file.
constexpr const char* dialogFolderTail = "\\Ostrel\\Vorlane\\";

/// The text behind the last dot; nothing when there is no dot.
std::optional<std::string_view> extensionOf(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  return name.substr(dot + 1);
}

bool isKnownExtension(std::string_view extension) {
  constexpr std::string_view known[] = {"TIF", "JP2", "JPEG", "PNG"};
  return std::ranges::find(known, upperCased(extension)) != std::end(known);
}

}  // namespace

void ExportControl::formatChosen() {
  endsQuietly([this] {
    switchToCustomExtent();
    // A complaint that is pending stays, also when the box now receives a good value.
    uiTxtCompression.setTextColour(TextColour::Normal);
    const ExportFormat* const chosen = findFormat(FormatCombo.text());
    const ExportFormat& format = chosen ? *chosen : noFormat();
    TileSizeCombo.setText(format.tileSize);
    TileSizeCombo.setEnabled(format.tiles);
    uiTxtCompression.setText(format.quality);
    uiTxtCompression.setEnabled(format.takesQuality);
    ApplyFormatExtension(uiTxtFileName.text());
    if (chosen) FormatCombo.setToolTip(format.toolTip);
    UpdateApproxMB();
  });
}

void ExportControl::ApplyFormatExtension(const std::string& name) {
  endsQuietly([&] {
    const ExportFormat* const format = findFormat(FormatCombo.text());
    if (!format || name.empty()) return;
    const auto extension = extensionOf(name);
    const std::string_view tail = extension.value_or(name);
    if (tail.find('\\') != std::string_view::npos) {
      uiTxtFileName.setText(uiTxtFileName.text() + "." + format->extension);
    } else {
      const std::string base = extension ? name.substr(0, name.size() - extension->size()) : name + ".";
      uiTxtFileName.setText(base + format->extension);
    }
  });
}

void ExportControl::EnsureFormatExtension(const std::string& name) {
  endsQuietly([&] {
    const ExportFormat* const format = findFormat(FormatCombo.text());
    if (!format || isKnownExtension(extensionOf(name).value_or(""))) return;
    uiTxtFileName.setText(uiTxtFileName.text() + "." + format->extension);
  });
}

void ExportControl::openFilePressed() {
  endsQuietly([this] {
    OpenDialog.title = dialogTitle;
    const auto folder = currentPlatform().system->environment("APPDATA");
    OpenDialog.startFolder = folder.value_or(std::string()) + dialogFolderTail;
    if (const ExportFormat* const format = findFormat(FormatCombo.text())) OpenDialog.filter = format->filter;
    if (const auto chosen = currentPlatform().toolkit->saveFile(OpenDialog)) OpenDialog.fileName = *chosen;
    // After a cancel an earlier choice comes back.
    if (OpenDialog.fileName.empty()) return;
    uiTxtFileName.setText(OpenDialog.fileName);
    EnsureFormatExtension(OpenDialog.fileName);
  });
}

}  // namespace vlclientui
