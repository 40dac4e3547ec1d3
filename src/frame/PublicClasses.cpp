#include "frame/PublicClasses.h"

#include <algorithm>

namespace vlclientui {

namespace {

constexpr std::array<PublicClass, 7> table{{
    {"ImageServicesControl",
     ClassKind::Control,
     "{DBF309B8-1E16-450F-ABB5-2DADCA37234E}",
     "_ImageServicesControl",
     {},
     "__ImageServicesControl",
     "abc"},
    {"ServicePropertiesDialog",
     ClassKind::CreatableGlobalClass,
     "{E3A5644A-5AFF-440A-BB2A-D72ECF18F882}",
     "_ServicePropertiesDialog",
     {"IServicePropertiesDialog", "IOVLServicePropertiesDialog", "IOVLServicePropertiesDialog2"},
     "__ServicePropertiesDialog",
     "OnAccept"},
    {"ImageServicesDialog",
     ClassKind::CreatableGlobalClass,
     "{66CEF2DE-E800-4B43-83E0-4CE5F2DE1E76}",
     "_ImageServicesDialog",
     {"IImageServicesDialog", "IOVLImageServicesDialog"},
     "",
     ""},
    {"ExportDialog",
     ClassKind::CreatableGlobalClass,
     "{F356F710-1DCF-4843-B16B-05090E97C61D}",
     "_ExportDialog",
     {"IExportImageDialog"},
     "",
     ""},
    {"ExportControl",
     ClassKind::Control,
     "{98087A02-99BF-4602-AD8A-E9FA220DB401}",
     "_ExportControl",
     {},
     "__ExportControl",
     ""},
    {"ServiceFolders",
     ClassKind::HelperClass,
     "{DEF6741B-DC32-4E7F-B6FD-1DB5592A0FD2}",
     "_ServiceFolders",
     {},
     "",
     ""},
    {"Envelope", ClassKind::HelperClass, "{0C1E5E87-93A5-4BB7-B48A-813B8CEE97E6}", "_Envelope", {}, "", ""},
}};

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool equalInAnyCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return upper(x) == upper(y); });
}

}  // namespace

std::span<const PublicClass> publicClasses() { return table; }

const PublicClass* findPublicClass(std::string_view nameOrIdentity) {
  const auto found = std::ranges::find_if(table, [nameOrIdentity](const PublicClass& entry) {
    return entry.name == nameOrIdentity || equalInAnyCase(entry.classIdentity, nameOrIdentity);
  });
  return found == table.end() ? nullptr : &*found;
}

}  // namespace vlclientui
