#include "contracts/Toolkit.h"

#include "contracts/Operations.h"

namespace vlclientui {

const char* wordOf(MessageAnswer answer) {
  switch (answer) {
    case MessageAnswer::Ok:
      return "Ok";
    case MessageAnswer::Cancel:
      return "Cancel";
    case MessageAnswer::Yes:
      return "Yes";
    case MessageAnswer::No:
      return "No";
  }
  return "";
}

MessageAnswer Toolkit::showMessage(const MessageBox& box) {
  ++messageCount_;
  PersonInPlace* const person = PersonInPlace::ofThread();
  const MessageAnswer answer = person ? person->answer(box) : doShowMessage(box);
  tellOperation({Operation::Kind::Answer, {}, {}, wordOf(answer), {box.text}});
  return answer;
}

}  // namespace vlclientui
