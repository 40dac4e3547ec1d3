#pragma once

#include <filesystem>
#include <string>

namespace vlclientui::client {

class Places;

/// How a name that a file holds is meant.
enum class NameOrigin {
  Opened,  ///< the raster library opens it now: what a person chose by a link counts
  Written  ///< it stands in a document that is looked at before it is opened
};

/// Why the raster library may not open a name that stands in a file: it is an address, a text in place of a
/// file, leads to another kind of thing, or to a file outside of the places. Readable, a whole sentence
/// without secrets; empty when it may.
/// @param name as the library reads it: a path, one in an archive ("/vsizip/..."), one behind the name of a
/// format ("NETCDF:...").
[[nodiscard]] std::string refusalOfName(const std::string& name, const Places& places, NameOrigin origin);

}  // namespace vlclientui::client
