#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <simdjson.h>

#include "client/stac/StacDocuments.h"

// What documents and items are read with alike. A value of another type than expected counts as none.
namespace vlclientui::client::stac_json {

using Element = simdjson::dom::element;
using Object = simdjson::dom::object;
using Array = simdjson::dom::array;

/// Empty for what is no text, and for one of more than 8 KB.
[[nodiscard]] std::string textOf(const Element& value);
[[nodiscard]] std::optional<double> numberOf(const Element& value);
/// At least 1; nothing for what is no whole number of pixels.
[[nodiscard]] std::optional<std::int64_t> countOf(const Element& value);
/// The texts of an array, without those that are none.
[[nodiscard]] std::vector<std::string> textsOf(const Element& value, std::size_t most);
/// The numbers of an array; none at all where one is no number.
[[nodiscard]] std::vector<double> numbersOf(const Element& value);
/// Of four numbers, or of six with heights.
[[nodiscard]] std::optional<Bounds> boxOf(const Element& value);
/// A box in degrees; one across the antimeridian goes all around.
[[nodiscard]] std::optional<Bounds> degreesOf(const Element& value);

/// Takes a member about the place of pixels. @returns false for any other member.
bool takePlace(ToldRaster& raster, std::string_view name, const Element& value);

[[nodiscard]] std::vector<StacLink> linksOf(const Element& value);
/// @param keepsAddressless whether files without an address count: in a collection's description of items.
[[nodiscard]] std::vector<StacAsset> assetsOf(const Element& value, bool keepsAddressless);
/// Nothing for what is no item.
[[nodiscard]] std::optional<StacItem> itemOf(const Element& value);

/// A text as JSON writes it, with its quotes.
[[nodiscard]] std::string quoted(std::string_view text);
/// The members of one object, changed by those of another one; both as JSON texts. Empty where one is none.
[[nodiscard]] std::string merged(const std::string& before, const std::string& changes);

}  // namespace vlclientui::client::stac_json
