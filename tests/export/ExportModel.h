#pragma once

#include <map>
#include <set>
#include <string>

#include "contracts/LocaleFormat.h"
#include "export/ExportControl.h"

namespace vlclientui::test {

/// The export fields once more, slow and plain: texts by short names ("Left", "GSDX"), each rule written out
/// for itself with nothing shared. The judge of the real control in random tests.
class ExportModel {
 public:
  /// What the control shows now is where the model begins.
  ExportModel(const ExportControl& control, const LocaleFormat& locale);

  // Values from the documents.
  double bytesPerPixel = 0;
  int bandCount = 0;
  int maxCols = 0;
  int maxRows = 0;
  std::string extentForm = "###.000";
  std::string pixelForm = "###.0000";

  // State of the boxes.
  std::map<std::string, std::string> text;
  std::map<std::string, std::string> complaint;
  std::map<std::string, std::string> toolTip;
  std::set<std::string> red;
  int messages = 0;

  /// A person moves into a box, replaces its text and leaves it.
  void edit(const std::string& box, const std::string& typed);

  /// The boxes of a control by the model's names.
  static std::map<std::string, const TextBox*> boxesOf(const ExportControl& control);

 private:
  void leave(const std::string& box);
  void leaveSize(const std::string& box, const std::string& wrong, const std::string& anchor, int direction,
                 const std::string& movingEdge);
  void leaveGrid(const std::string& box);
  void leavePixelSize(const std::string& box);
  void leaveQuality();
  bool refused(const std::string& box);
  void convert(const std::string& box);
  bool changed(const std::string& box);

  double number(const std::string& box);
  double numberOrZero(const std::string& box);
  std::string plain(double value);
  std::string pictured(const std::string& value, const std::string& form);

  void recalculateAll();
  void heightFromExtent();
  void widthFromExtent();
  void pixelSizeX();
  void pixelSizeY();
  void approxMB();
  void formatAll();
  void colsFromPixelSize();
  void rowsFromPixelSize();
  void checkCols();
  void checkRows();
  void checkSign(const std::string& box, const std::string& message);

  LocaleFormat locale_;
  std::map<std::string, std::string> saved_;
};

}  // namespace vlclientui::test
