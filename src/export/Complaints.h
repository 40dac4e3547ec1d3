#pragma once

#include <string>

#include "contracts/controls/Controls.h"

namespace vlclientui {

/// Puts a complaint beside a box and into the host's property; an empty text takes it away.
inline void complain(TextBox& box, std::string& complaint, const std::string& text) {
  complaint = text;
  box.setComplaint(text);
}

}  // namespace vlclientui
