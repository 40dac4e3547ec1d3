#include "frame/Saving.h"

#include "contracts/CallOut.h"
#include "contracts/News.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui {

void saveAndTell(Toolkit& toolkit, const XmlDocument& document, const std::string& file) {
  try {
    callOut(document)->save(file);
  } catch (const RuntimeFailure& failure) {
    tellInPassing(toolkit, "Not saved: " + failure.description());
    throw;
  }
  tellSaved(toolkit, file);
}

void tellSaved(Toolkit& toolkit, const std::string& file) {
  tellInPassing(toolkit, "Saved to '" + file + "'");
}

void tellInPassing(Toolkit& toolkit, const std::string& news) {
  if (auto* const teller = dynamic_cast<NewsTeller*>(&toolkit)) callOut(*teller)->tell(news);
}

}  // namespace vlclientui
