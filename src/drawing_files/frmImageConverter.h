#pragma once

#include "core/forms/Form.h"

#include <cstdint>

namespace tessaly {

class Application;
class PictureBox;

// The image converter: a picture loaded from a file, a transparent colour
// picked on it with the mouse, and a walk over its pixels that reports where
// the picture is not transparent. It writes nothing to the canvas.
class frmImageConverter final : public Form {
public:
    static constexpr const char* FormName = "frmImageConverter";
    explicit frmImageConverter(Application& app);

    Control& Label1; // the title
    Control& Label4; // what the window is for
    Control& Picture1;
    Control& cmdLoad;
    Control& cmdTransp;
    Control& cmdStart;
    Control& cmdClear;
    Control& lblColIndecator;
    Control& Label3; // the coordinates of the walk
    Control& Label2; // the row of the walk

    // True between Set Transp and the next mouse release on the picture.
    bool PickingColour = false;
    // The colour the walk passes over; black until one is picked.
    int32_t TransparentColour = 0;
    // The colour of the last pixel the walk read.
    int32_t CurrentColour = 0;

    void cmdLoad_Click();
    void cmdClear_Click();
    void cmdTransp_Click();
    void cmdStart_Click();
    void Picture1_MouseUp(int button, int shift, float x, float y);

    // The surface of Picture1.
    PictureBox& picture() const { return picture_; }

private:
    void buildLayout();
    void registerMembers();
    void enablePictureButtons(bool on);

    Application& app_;
    PictureBox& picture_;
};

} // namespace tessaly
