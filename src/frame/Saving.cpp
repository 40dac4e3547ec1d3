#include "frame/Saving.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui {

void saveAndTell(Toolkit& toolkit, const XmlDocument& document, const std::string& file) {
  try {
    document.save(file);
  } catch (const RuntimeFailure& failure) {
    toolkit.tell("Not saved: " + failure.description());
    throw;
  }
  tellSaved(toolkit, file);
}

void tellSaved(Toolkit& toolkit, const std::string& file) { toolkit.tell("Saved to '" + file + "'"); }

}  // namespace vlclientui
