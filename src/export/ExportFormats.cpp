#include "documents/ExportFormats.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "documents/TextCase.h"
#include "export/ExportControl.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

// What choosing a format sets: tile size, quality, extension and the filter of the file dialog.

namespace vlclientui {

namespace {

constexpr const char* dialogTitle = "Export image to:";
// Deliberate: written as one word, unlike the folder of the default file.
constexpr const char* dialogFolderTail = "\\Ostrel\\Vorlane\\";

/// The text after the last dot; nothing without a dot.
std::optional<std::string_view> extensionOf(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  return name.substr(dot + 1);
}

/// As the formats write it; what people write besides ("tiff", "jpg") is none of these.
bool isWrittenExtension(std::string_view extension) {
  return std::ranges::any_of(fileFormats(), [wanted = upperCased(extension)](const FileFormatRow& row) {
    return upperCased(row.ending) == wanted;
  });
}

const ExportFormat& formatOrNone(const std::string& entry) {
  // What a text that is no entry sets; it names no file format.
  static constexpr ExportFormat none = {
      "", FileFormat::Tiff, Compression::None, "None", false, "100", true, "", SizeEstimate::ByQuality};
  const ExportFormat* const format = findExportFormat(entry);
  return format ? *format : none;
}

/// Null where the text is no entry.
const char* writtenExtension(const std::string& entry) {
  const ExportFormat* const format = findExportFormat(entry);
  return format ? rowOf(format->file).ending : nullptr;
}

}  // namespace

void ExportControl::formatChosen() {
  endsQuietly([this] {
    switchToCustomExtent();
    // Deliberate: an earlier complaint stays, although the box now gets a good value.
    uiTxtCompression.setTextColor(TextColor::Normal);
    const ExportFormat& format = formatOrNone(FormatCombo.text());
    TileSizeCombo.setText(format.tileSize);
    TileSizeCombo.setEnabled(format.tiles);
    uiTxtCompression.setText(format.quality);
    uiTxtCompression.setEnabled(format.takesQuality);
    ApplyFormatExtension(uiTxtFileName.text());
    if (*format.toolTip != '\0') FormatCombo.setToolTip(format.toolTip);
    UpdateApproxMB();
  });
}

void ExportControl::ApplyFormatExtension(const std::string& name) {
  endsQuietly([&] {
    const char* const written = writtenExtension(FormatCombo.text());
    if (!written || name.empty()) return;
    const auto extension = extensionOf(name);
    const std::string_view tail = extension.value_or(name);
    if (tail.find('\\') != std::string_view::npos) {
      uiTxtFileName.setText(uiTxtFileName.text() + "." + written);
    } else {
      const std::string base = extension ? name.substr(0, name.size() - extension->size()) : name + ".";
      uiTxtFileName.setText(base + written);
    }
  });
}

void ExportControl::EnsureFormatExtension(const std::string& name) {
  endsQuietly([&] {
    const char* const written = writtenExtension(FormatCombo.text());
    if (!written || isWrittenExtension(extensionOf(name).value_or(""))) return;
    uiTxtFileName.setText(uiTxtFileName.text() + "." + written);
  });
}

void ExportControl::openFilePressed() {
  endsQuietly([this] {
    OpenDialog.title = dialogTitle;
    const auto folder = callOut(currentPlatform().system)->environment("APPDATA");
    OpenDialog.startFolder = folder.value_or(std::string()) + dialogFolderTail;
    if (const ExportFormat* const format = findExportFormat(FormatCombo.text())) {
      OpenDialog.filter = rowOf(format->file).filter;
    }
    const auto chosen = callOut(currentPlatform().toolkit)->saveFile(OpenDialog);
    if (chosen) OpenDialog.fileName = *chosen;
    // After Cancel the dialog still holds an earlier choice.
    if (OpenDialog.fileName.empty()) return;
    uiTxtFileName.setText(OpenDialog.fileName);
    EnsureFormatExtension(OpenDialog.fileName);
  });
}

}  // namespace vlclientui
