#include <algorithm>
#include <cstring>

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include "Bindings.h"
#include "Extents.h"
#include "ServiceView.h"
#include "client/drawing/RasterValues.h"
#include "client/facade/ServiceDrawing.h"

namespace vlclientui::python {
namespace {

using client::Bounds;
using client::ServiceDrawing;

/// Rows from the top, then columns, then red, green, blue and alpha.
py::array_t<std::uint8_t> picture(int columns, int rows, const std::vector<std::uint8_t>& rgba) {
  py::array_t<std::uint8_t> array({rows, columns, 4});
  std::copy(rgba.begin(), rgba.end(), array.mutable_data());
  return array;
}

void checkSize(int columns, int rows) {
  if (columns < 1 || rows < 1) throw RuntimeFailure("A picture has one column and one row at least");
}

Bounds areaOf(const std::optional<Extent>& extent, const client::RasterFacts& facts) {
  return extent ? boundsOf(*extent) : facts.envelope;
}

py::array_t<std::uint8_t> draw(const ServiceDrawing& drawing, int columns, int rows,
                               const std::optional<Extent>& extent) {
  checkSize(columns, rows);
  const auto drawn = released([&] { return drawing.draw(areaOf(extent, drawing.facts()), columns, rows); });
  return picture(drawn.width, drawn.height, drawn.rgba);
}

py::array_t<std::uint8_t> drawImage(const ServiceView& service, int columns, int rows,
                                    const std::optional<Extent>& extent) {
  checkSize(columns, rows);
  const auto object = service.use();
  const auto drawn =
      released([&] { return object->drawImage(areaOf(extent, object->facts()), columns, rows); });
  return picture(drawn.width, drawn.height, drawn.rgba);
}

/// The NumPy type of a pixel type of the raster library.
py::dtype dtypeOf(const std::string& type) {
  static constexpr std::pair<const char*, const char*> names[] = {
      {"Byte", "uint8"},      {"Int8", "int8"},       {"UInt16", "uint16"},      {"Int16", "int16"},
      {"UInt32", "uint32"},   {"Int32", "int32"},     {"UInt64", "uint64"},      {"Int64", "int64"},
      {"Float32", "float32"}, {"Float64", "float64"}, {"CFloat32", "complex64"}, {"CFloat64", "complex128"}};
  for (const auto& [known, name] : names) {
    if (type == known) return py::dtype(name);
  }
  throw RuntimeFailure("Pixels of the type " + type + " have no place in an array",
                       FailureKind::TypeMismatch);
}

py::object read(const ServiceDrawing& drawing, int columns, int rows, const std::optional<Extent>& extent) {
  checkSize(columns, rows);
  const client::OutputGrid grid{areaOf(extent, drawing.facts()), columns, rows};
  const auto values = released([&] { return client::readValues(*drawing.wholeWithin(grid.extent), grid); });
  const std::vector<py::ssize_t> shape{values.bands, rows, columns};
  py::array array(dtypeOf(values.type), shape);
  std::memcpy(array.mutable_data(), values.values.data(), values.values.size());
  py::array_t<bool> mask(shape);
  std::ranges::transform(values.isValid, mask.mutable_data(), [](std::uint8_t valid) { return valid == 0; });
  return py::module_::import("numpy.ma").attr("array")(array, py::arg("mask") = mask);
}

}  // namespace

void bindDrawing(py::module_& module) {
  py::class_<ServiceDrawing>(
      module, "Drawing",
      "How a service is drawn by the properties that it had when this was made. Any thread may use it.")
      .def_property_readonly(
          "facts", [](const ServiceDrawing& self) { return released([&] { return self.facts(); }); },
          "RasterFacts: of the whole service.")
      .def("draw", &draw, py::arg("columns"), py::arg("rows"), py::arg("extent") = py::none(),
           "Draws an area in natural colors.\n\n"
           "Args:\n    columns, rows: of the picture, at least 1.\n"
           "    extent: (xmin, ymin, xmax, ymax) in the coordinates of the service; None for all of it.\n"
           "Returns:\n    numpy.ndarray: uint8, shape (rows, columns, 4): red, green, blue, alpha; rows from "
           "the top.\n"
           "        Alpha is 0 where there are no data.\n"
           "Raises:\n    RuntimeFailure: when it cannot be drawn.")
      .def("read", &read, py::arg("columns"), py::arg("rows"), py::arg("extent") = py::none(),
           "Reads the pixels that an export would write.\n\n"
           "Args:\n    columns, rows: of the grid, at least 1.\n"
           "    extent: as of draw.\n"
           "Returns:\n    numpy.ma.MaskedArray: shape (bands, rows, columns), rows from the top, in the type "
           "of the pixels;\n"
           "        complex integers are floats. Masked where there are no data.\n"
           "Raises:\n    RuntimeFailure: when it cannot be read.");
  boundClass<py::class_<ServiceView>>(module, "CatalogueImageService")
      .def(
          "drawing",
          [](const ServiceView& service) {
            const auto object = service.use();
            return released([&] { return object->drawing(); });
          },
          "How the service is drawn now.\n\nReturns:\n    Drawing: for any thread.")
      .def("draw", &drawImage, py::arg("columns"), py::arg("rows"), py::arg("extent") = py::none(),
           "As Drawing.draw, and makes it the image last returned, of which GetImageMetadata tells.");
}

}  // namespace vlclientui::python
