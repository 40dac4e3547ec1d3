#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "contracts/Object.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"
#include "contracts/controls/PictureButton.h"
#include "viewpoint/SteeringRules.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// A window that steers the viewpoint of a mosaic by nine buttons and two text boxes.
///
/// The boxes are the state: the viewpoint is a pair of texts in the user's locale, unchecked, and read as
/// numbers only to compute a step. Extent and step are map units. There are no bounds. Published values stay
/// in the thread's gViewPointX and gViewPointY until somebody saves them; every load, every refresh and every
/// gain of the focus clears them.
///
/// A routine ends silently at its first failure, and its caller continues.
class ViewPointSteering : public Form {
 public:
  struct Controls {
    Controls(ViewPointSteering& form, SteeringRules::OkButton okButton);

    Frame ViewPointFrame;
    PictureButton MoveNW;
    PictureButton MoveUp;
    PictureButton MoveNE;
    PictureButton MoveLeft;
    PictureButton Center;
    PictureButton MoveRight;
    PictureButton MoveSW;
    PictureButton MoveDown;
    PictureButton MoveSE;
    Label uiLblX;
    TextBox uiTxtBoxX;
    Label uiLblY;
    TextBox uiTxtBoxY;
    std::optional<Button> uibtnok;  ///< in the modal window only
  };

  ObjectPtr myImageServiceObject;  ///< the service; without one the window uses the given documents
  std::string myImageMetaDataXml;

  /// Loads the form when needed.
  [[nodiscard]] Controls& controls();
  /// Reads extent and step again and clears what was published.
  void RefReshViewpoints();

 protected:
  ViewPointSteering(Toolkit& toolkit, SteeringRules rules);

  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override { loadViewPointData(); }
  void onEnter() override { loadViewPointData(); }
  void onLeave() override { windowLeft(); }
  void onUnload() override { windowLeft(); }

 private:
  /// One direction of the image: its extent, its center and one step.
  struct Axis {
    double low = 0;
    double high = 0;
    double center = 0;
    double spacing = 0;
  };
  struct Move {
    PictureButton Controls::*button;
    int dx;
    int dy;
  };
  enum class CenterRead { NoData, SumIsZero, Done };

  static const std::array<Move, 8> moves;

  void connectEvents(Controls& controls);
  void loadViewPointData();
  void readDecimalSeparator();
  [[nodiscard]] CenterRead readCenter();
  void readExtent();
  void readSpacing();
  void swapDecimalSeparator(Controls& boxes, const std::string& from, const std::string& to);

  void clearButtonMarks();
  void move(const Move& move);
  void center();
  void accept();
  void boxChanged();
  void windowLeft();
  void publishBoxes(const Controls& boxes);
  void publishViewPoint(const std::string& x, const std::string& y);

  [[nodiscard]] double documentNumber(const std::string& text) const;
  [[nodiscard]] bool separatorIsPoint() const;

  SteeringRules rules_;
  Axis x_;
  Axis y_;
  std::uint32_t clickNumber_ = 0;
  std::string lastMove_;  ///< name of the button used last; survives the window
  std::string decimalSeparator_;
  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
