#include <pybind11/stl.h>

#include "Bindings.h"
#include "KeepingWords.h"
#include "ServiceView.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::python {
namespace {

using client::Keeping;

constexpr std::pair<Keeping, const char*> keepingWords[] = {{Keeping::Nothing, "nothing"},
                                                            {Keeping::Begin, "partial"},
                                                            {Keeping::GoOn, "resume"},
                                                            {Keeping::Anew, "restart"}};

const char* wordOf(Keeping keeping) {
  for (const auto& [known, word] : keepingWords) {
    if (known == keeping) return word;
  }
  return "nothing";
}

std::optional<std::uint64_t> keptBytes(const ServiceView& self) {
  const auto object = self.use();
  const auto kept = released([&] { return object->keptPart(); });
  return kept ? std::optional(kept->bytes) : std::nullopt;
}

py::dict forecast(const ServiceView& self) {
  const auto object = self.use();
  const client::ExportForecast told = released([&] { return object->forecastExport(); });
  py::dict words;
  words["remote"] = told.isRemote;
  words["requests"] = told.requests;
  words["bytes_to_fetch"] = told.bytesToFetch;
  words["seconds_to_fetch"] = told.seconds;
  words["bytes_to_write"] = told.bytesToWrite;
  words["folder"] = PathText{told.folder.string()};
  words["bytes_free"] = told.room;
  words["bytes_kept"] = told.kept ? std::optional(told.kept->bytes) : std::nullopt;
  py::list limits;
  for (const std::string& limit : told.limits) limits.append(Text{limit});
  words["limits"] = limits;
  return words;
}

}  // namespace

Keeping keepingOf(const std::string& word) {
  for (const auto& [keeping, known] : keepingWords) {
    if (word == known) return keeping;
  }
  throw RuntimeFailure("What is kept is one of nothing, partial, resume and restart, not '" + word + "'");
}

void bindKeeping(py::module_& module) {
  boundClass<py::class_<ServiceView>>(module, "CatalogueImageService")
      .def_property(
          "keeping", [](const ServiceView& self) { return Text{wordOf(self.use()->keeping())}; },
          [](const ServiceView& self, const Text& word) {
            const auto object = self.use();
            object->setKeeping(keepingOf(word.utf8));
          },
          "str: what becomes of pixels that an export has read where it breaks off before its file is whole: "
          "\"nothing\" lets them go; \"partial\" keeps them, and is refused where some are kept; \"resume\" "
          "keeps them and goes on with those that are; \"restart\" keeps them, and lets former ones go "
          "first.")
      .def_property_readonly("kept_bytes", &keptBytes,
                             "int | None: what an earlier export to the same file kept; None for nothing.")
      .def(
          "discard_kept",
          [](const ServiceView& self) {
            const auto object = self.use();
            return released([&] { return object->discardKept(); });
          },
          "Lets that go.\n\nReturns:\n    bool: False where another export uses it.")
      .def("forecast", &forecast,
           "What the export of the request handed over last is going to take. Reads a part of it.\n\n"
           "Returns:\n    dict: remote, requests, bytes_to_fetch, seconds_to_fetch, bytes_to_write, folder, "
           "bytes_free,\n        bytes_kept and limits.\n"
           "Raises:\n    RuntimeFailure: for what the export would refuse.");
}

}  // namespace vlclientui::python
