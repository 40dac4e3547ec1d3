#include <pybind11/stl.h>

#include "Bindings.h"
#include "Session.h"
#include "contracts/LocaleFormat.h"
#include "contracts/RuntimeFailure.h"
#include "documents/DecimalText.h"
#include "documents/ExportFormats.h"
#include "documents/LockDocument.h"
#include "documents/NumberText.h"

namespace vlclientui::python {
namespace {

LocaleFormat localeOf(const Text& point, const Text& group) {
  if (point.utf8.empty()) throw RuntimeFailure("A decimal separator has one character at least");
  LocaleFormat locale;
  locale.decimalSeparator = point.utf8;
  locale.groupSeparator = group.utf8;
  return locale;
}

void bindNumbers(py::module_& module) {
  module.def(
      "read_decimal", [](const Text& text) { return readDecimal(text.utf8); }, py::arg("text"),
      "A finite number with \".\" or \",\", whatever the locale.\n\nReturns:\n    float | None: None for any "
      "other text.");
  module.def(
      "text_to_number",
      [](const Text& text, const Text& point, const Text& group) {
        return textToDouble(text.utf8, localeOf(point, group));
      },
      py::arg("text"), py::kw_only(), py::arg("point") = Text{"."}, py::arg("group") = Text{","},
      "A number as windows read it.\n\nArgs:\n    point: decimal separator.\n    group: between thousands.\n"
      "Raises:\n    RuntimeFailure: kind TypeMismatch for no number, Overflow for one too large.");
  module.def(
      "number_to_text",
      [](double number, const Text& point) { return Text{doubleToText(number, localeOf(point, {}))}; },
      py::arg("number"), py::kw_only(), py::arg("point") = Text{"."},
      "A number as windows show it: the shortest text of up to 15 significant digits.");
  module.def(
      "format_number",
      [](double number, const Text& picture, const Text& point) {
        return Text{formatDouble(number, picture.utf8, localeOf(point, {}))};
      },
      py::arg("number"), py::arg("picture"), py::kw_only(), py::arg("point") = Text{"."},
      "A number by a picture of \"#\", \"0\" and \".\", such as \"###.000\".");
}

py::dict dictOf(const ExportFormat& format) {
  const FileFormatRow& row = rowOf(format.file);
  py::dict told;
  told["entry"] = format.entry;
  told["format"] = row.requestName;
  told["compression"] = requestName(format.compression);
  told["ending"] = row.ending;
  told["takes_quality"] = format.takesQuality;
  told["tiles"] = format.tiles;
  return told;
}

}  // namespace

void bindDocuments(py::module_& module) {
  bindNumbers(module);
  module.def(
      "export_formats",
      [] {
        py::list told;
        for (const ExportFormat& format : exportFormats()) told.append(dictOf(format));
        return told;
      },
      "Entries of the export window's list of formats, in its order.\n\n"
      "Returns:\n    list[dict]: entry, format, compression, ending, takes_quality and tiles of each.");
  module.def(
      "export_format_of",
      [](const PathText& file) -> std::optional<Text> {
        const ExportFormat* const format = exportFormatOf(file.native);
        return format == nullptr ? std::nullopt : std::optional(Text{format->entry});
      },
      py::arg("file"), "The entry that the ending of a file asks for; None where no format has it.");
  module.def(
      "lock_document", [](const Text& rasterId) { return Text{lockDocument(lockIdOf(rasterId.utf8))}; },
      py::arg("raster_id"), "Service properties that lock a mosaic to a raster and say nothing else.");
  module.def(
      "allows_mosaic_method",
      [](const Text& allowed, const Text& method) { return allowsMosaicMethod(allowed.utf8, method.utf8); },
      py::arg("allowed"), py::arg("method"), "Whether a list of mosaic methods holds one, in any case.");
}

}  // namespace vlclientui::python
