#include "contracts/Toolkit.h"

namespace vlclientui {

MessageAnswer Toolkit::showMessage(const MessageBox& box) {
  ++messageCount_;
  return doShowMessage(box);
}

}  // namespace vlclientui
