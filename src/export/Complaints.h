#pragma once

#include <string>

#include "contracts/controls/Controls.h"

namespace vlclientui {

/// A box and the host's property say the same about it; an empty text says that it is good.
inline void complain(TextBox& box, std::string& complaint, const std::string& text) {
  complaint = text;
  box.setComplaint(text);
}

}  // namespace vlclientui
