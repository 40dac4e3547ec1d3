#pragma once

#include <string>
#include <vector>

#include "selection/ImageServicesControl.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {

inline const char* const attributeDefinition = "<ImageServiceInfo><Attributes/></ImageServiceInfo>";
inline const char* const formDefinition = "<ImageServiceInfo><Form/></ImageServiceInfo>";

inline std::string definitionFile(const std::string& section) {
  return "<Vorlane><AddImageServiceInformation>" + section + "</AddImageServiceInformation></Vorlane>";
}

inline std::string titled(const std::string& title) {
  return "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>" + title +
         "</Title></KeyDetails></ImageServiceInfo>";
}

/// A server with A\B, D and E (which has no title), and both definition files.
class ImageServicesControlSelectionTest : public SelectionTest {
 protected:
  using Texts = std::vector<std::string>;

  ImageServicesControlSelectionTest() {
    server->answer = serverInfo({{"A\\B", titled("Bee")}, {"D", titled("Dee")}, {"E"}});
    system->writeFile("C:\\Program\\VLClient.Xfdef", definitionFile(formDefinition));
    system->writeFile("C:\\Program\\VLClient.XADef", definitionFile(attributeDefinition));
  }

  static Texts entries(const ImageServicesControl& control) { return control.ListBox.entries(); }

  void fill(ImageServicesControl& control, const Texts& files) {
    for (const std::string& file : files) {
      toolkit->chooseFile(file);
      control.Browse.userClicks();
    }
  }

  static MessageBox fileMessage(const std::string& file, const std::string& complaint) {
    return {"The file: 'C:\\Program\\" + file + "' is " + complaint + ". Cannot show information.", "Error",
            MessageIcon::Exclamation, MessageButtons::Ok};
  }
};

}  // namespace vlclientui::test
