#pragma once

#include <string>
#include <string_view>

#include "client/network/Coverages.h"

namespace vlclientui::client {

/// "EPSG:32632" from any of the spellings of servers: "EPSG:32632", "urn:ogc:def:crs:EPSG::32632",
/// "http://www.opengis.net/def/crs/EPSG/0/32632", "urn:ogc:def:crs:OGC:1.3:CRS84", which is EPSG:4326 with
/// longitude first. Empty for all else.
[[nodiscard]] std::string systemName(std::string_view text);

/// How coordinates of a system stand in documents and requests that name it by its authority's order.
[[nodiscard]] AxisOrder authorityOrder(const std::string& system);

}  // namespace vlclientui::client
