#include <algorithm>

#include <pybind11/complex.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include "Bindings.h"
#include "Extents.h"
#include "client/facade/ServiceDrawing.h"
#include "client/mapping/MapPicture.h"
#include "client/mapping/MapSystem.h"
#include "client/mapping/ValuesAt.h"

namespace vlclientui::python {
namespace {

using client::ServiceDrawing;
using client::SourceValues;

/// @throws RuntimeFailure for a text that names no system of the earth.
std::string wktOf(const ServiceDrawing& drawing, const std::optional<Text>& system) {
  if (!system) return drawing.facts().srsWkt;
  const auto found = client::mapSystemOf(system->utf8);
  if (!found) throw RuntimeFailure("'" + system->utf8 + "' names no coordinate system");
  return found->wkt;
}

client::DrawingSource sourceOf(const ServiceDrawing& drawing) {
  return [drawing](const std::optional<client::Bounds>& area) { return drawing.within(area); };
}

py::array_t<std::uint8_t> drawMap(const ServiceDrawing& drawing, int columns, int rows, const Extent& extent,
                                  const std::optional<Text>& system) {
  if (columns < 1 || rows < 1) throw RuntimeFailure("A picture has one column and one row at least");
  const auto picture = released([&] {
    return client::pictureOnMap(sourceOf(drawing), {wktOf(drawing, system), boundsOf(extent), columns, rows});
  });
  if (!picture) throw RuntimeFailure("The drawing was given up");
  py::array_t<std::uint8_t> array({rows, columns, 4});
  std::copy(picture->rgba.begin(), picture->rgba.end(), array.mutable_data());
  return array;
}

py::dict dictOf(const client::BandValue& band) {
  py::dict told;
  told["band"] = band.band;
  told["name"] = Text{band.name};
  told["unit"] = Text{band.unit};
  told["value"] = py::none();
  if (band.value && band.imaginary) {
    told["value"] = std::complex<double>(*band.value, *band.imaginary);
  } else if (band.value) {
    told["value"] = *band.value;
  }
  told["class_name"] = Text{band.className};
  return told;
}

py::dict dictOf(const SourceValues& source) {
  constexpr const char* kinds[] = {"data", "hole", "unreadable"};
  py::dict told;
  told["name"] = Text{source.name};
  told["id"] = Text{source.id};
  told["kind"] = kinds[static_cast<int>(source.kind)];
  told["is_on_top"] = source.isOnTop;
  told["column"] = source.column;
  told["row"] = source.row;
  told["problem"] = Text{source.problem};
  py::list bands;
  for (const client::BandValue& band : source.bands) bands.append(dictOf(band));
  told["bands"] = bands;
  return told;
}

py::list valuesAt(const ServiceDrawing& drawing, double x, double y, const std::optional<Text>& system) {
  const auto values = released([&] {
    return client::valuesAt(sourceOf(drawing), {wktOf(drawing, system), {x, y}});
  });
  py::list told;
  for (const SourceValues& source : values.value_or(std::vector<SourceValues>())) told.append(dictOf(source));
  return told;
}

}  // namespace

void bindMap(py::module_& module) {
  boundClass<py::class_<ServiceDrawing>>(module, "Drawing")
      .def("draw_map", &drawMap, py::arg("columns"), py::arg("rows"), py::arg("extent"),
           py::arg("system") = py::none(),
           "Draws the service on a map of any coordinate system.\n\n"
           "Args:\n    columns, rows: of the map, at least 1.\n"
           "    extent: (xmin, ymin, xmax, ymax) of the map, in its coordinates.\n"
           "    system: a code such as EPSG:3857, or a definition; None for that of the service.\n"
           "Returns:\n    numpy.ndarray: as of draw. Colors do not depend on what of the service is shown.\n"
           "Raises:\n    RuntimeFailure: when it cannot be drawn, and for a text that names no system.")
      .def("values_at", &valuesAt, py::arg("x"), py::arg("y"), py::arg("system") = py::none(),
           "What stands in the rasters under a place.\n\n"
           "Args:\n    x, y: the place.\n    system: as of draw_map.\n"
           "Returns:\n    list[dict]: of each source there, the topmost first: name, id, kind (data, hole or "
           "unreadable),\n"
           "        is_on_top, column, row, problem, and bands with band, name, unit, value and class_name.\n"
           "Raises:\n    RuntimeFailure: when the service cannot be read.");
}

}  // namespace vlclientui::python
