#include "contracts/controls/PictureButton.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/controls/Form.h"
#include "headless/HeadlessToolkit.h"

namespace vlclientui::test {
namespace {

/// A form for tests with one picture button.
class PictureForm : public Form {
 public:
  explicit PictureForm(Toolkit& toolkit) : Form(toolkit, "PictureForm") { load(); }
  std::shared_ptr<PictureButton> button;

 protected:
  std::shared_ptr<void> buildControls() override {
    return button = std::make_shared<PictureButton>(*this, "picture");
  }
  void dropControls() override { button.reset(); }
};

class PictureButtons : public testing::Test {
 protected:
  headless::HeadlessToolkit toolkit;
  PictureForm form{toolkit};
};

TEST_F(PictureButtons, BearNoMarkAndNoCaptionAtFirst) {
  EXPECT_FALSE(form.button->marked());
  EXPECT_EQ(form.button->caption(), "");
  EXPECT_EQ(form.button->kind(), ControlKind::PictureButton);
}

TEST_F(PictureButtons, TellTheirViewOfTheMarkAndRaiseNoClick) {
  std::vector<Aspect> told;
  int clicks = 0;
  form.button->changed.connect([&](Aspect aspect) { told.push_back(aspect); });
  form.button->click.connect([&] { ++clicks; });
  form.button->setMarked(true);
  EXPECT_TRUE(form.button->marked());
  EXPECT_THAT(told, testing::ElementsAre(Aspect::CheckState));
  EXPECT_EQ(clicks, 0);
}

TEST_F(PictureButtons, KeepTheirMarkWhenTheyAreClicked) {
  form.button->userClicks();
  EXPECT_FALSE(form.button->marked());
  form.button->setMarked(true);
  form.button->userClicks();
  EXPECT_TRUE(form.button->marked());
}

}  // namespace
}  // namespace vlclientui::test
