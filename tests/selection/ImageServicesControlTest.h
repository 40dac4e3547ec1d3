#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "selection/ImageServicesControl.h"
#include "selection/ListDocuments.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {

inline const char* const extent =
    "<AddImageServiceDialog><CustomEnvelope><XMin>0</XMin><YMin>0</YMin><XMax>10</XMax><YMax>10</YMax>"
    "</CustomEnvelope></AddImageServiceDialog>";

/// The control over a server with a folder A and a service D, and the engine calls that are expected of it.
class ImageServicesControlTest : public SelectionTest {
 protected:
  using Texts = std::vector<std::string>;

  ImageServicesControlTest() { server->answer = serverInfoOf({"A/B", "D"}); }

  [[nodiscard]] static Texts requestCalls(int engine) {
    const std::string number = std::to_string(engine) + ".";
    return {number + "AttributeDefinition C:\\Program\\VLClient.XADef", number + "GetTemplateXml",
            number + "released"};
  }

  [[nodiscard]] Texts placingCalls(int engine, ImageServicesControl& control) const {
    const std::string number = std::to_string(engine) + ".";
    return {number + "ParentWindow " + std::to_string(toolkit->windowOf(control)),
            number + "DataXml <root><xfd_header/></root>",
            number + "Height 226",
            number + "Width 480",
            number + "Top 26",
            number + "SetOption ShowVScrollBar False",
            number + "Show"};
  }

  [[nodiscard]] static std::string fieldsCall(int engine) {
    return std::to_string(engine) + ".SetOption List_Fields " + listFields;
  }
  [[nodiscard]] static std::string valuesCall(int engine, const std::string& values) {
    return std::to_string(engine) + ".SetOption List_Values " + values;
  }

  static Texts joined(std::initializer_list<Texts> lists) {
    Texts all;
    for (const Texts& list : lists) all.insert(all.end(), list.begin(), list.end());
    return all;
  }

  const std::string rootRows =
      "<list_values><A icon=\"fldr\" displayName=\"A\"/><D icon=\"VLSERVICE\" displayName=\"D\" "
      "Geographic_Region=\"\" Pixel_Unit=\"\" Pixel_Source=\"\" Color_Space=\"\" Pixel_Type=\"\" "
      "Bit_Depth=\"\" Bands=\"\"/></list_values>";
};

}  // namespace vlclientui::test
