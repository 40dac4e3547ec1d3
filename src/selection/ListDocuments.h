#pragma once

#include <functional>
#include <string>
#include <vector>

#include "contracts/XmlDocument.h"
#include "selection/ServiceDetails.h"

/// The form engine's list takes two documents: columns and rows.
namespace vlclientui {

inline constexpr const char* listFieldsOption = "List_Fields";
inline constexpr const char* listValuesOption = "List_Values";

/// Columns in the order of the list's cells.
inline constexpr const char* listFields =
    "<list_fields><Name width='15'/><Geographic_Region width='8'/><Pixel_Source width='8'/>"
    "<Pixel_Unit width='8'/><Color_Space width='8'/><Pixel_Type width='8'/><Bit_Depth width='8'/>"
    "<Bands width='5'/></list_fields>";
inline constexpr const char* serverNotFoundValues =
    "<list_values><Europe icon=\"\" displayName=\"(Server not found)\"/></list_values>";
inline constexpr const char* emptyServerValues =
    "<list_values><Europe icon=\"\" displayName=\"(empty)\"/></list_values>";

/// Makes an element name of a label: "_" goes before a leading digit, blanks are dropped, brackets, angle
/// signs and plus become "_". Other characters that XML forbids stay.
[[nodiscard]] std::string XmlNameFromLabel(const std::string& label);

/// Where the texts beside a service come from.
using DetailsSource = std::function<const ServiceDetails&()>;

/// Rows for folders (".." and empty ones left out), then for services, each group in the order given.
/// @param details asked once, and only when there are files. @param wholeNames by index of files; may be
/// longer.
/// @throws RuntimeFailure when a label cannot become an element name.
[[nodiscard]] std::string BuildListValues(const XmlService& xml, const DetailsSource& details,
                                          const std::vector<std::string>& folders,
                                          const std::vector<std::string>& files,
                                          const std::vector<std::string>& wholeNames);

}  // namespace vlclientui
