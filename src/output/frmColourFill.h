#pragma once

#include "core/forms/Form.h"

#include <cstdint>

namespace tessaly {

class Application;

// "Colour Fill": a copy of the open plan's .emf as a picture that the user
// floods and paints on; saved beside the plan as " Coloured" .bmp, .emf and
// .wmf, and the plan's row marked, so that the e-mail window offers it.
class frmColourFill final : public Form {
public:
    static constexpr const char* FormName = "frmColourFill";
    explicit frmColourFill(Application& app);

    Control& Picture1;
    Control& Option1;
    Control& Option2;
    Control& cmdChoseColour;
    Control& lblcolour;
    Control& cmdSave;
    Control& cmdCancel;

    // Area mode: a mouse release floods. Point mode: a drag paints. They
    // exclude each other; the load sets area mode.
    int16_t AreaMode = 0;
    int16_t PointMode = 0;
    uint32_t ChosenColour = 0;
    // Where the paint line goes on from.
    int32_t LastX = 0;
    int32_t LastY = 0;
    QString OutputEMF;
    QString OutputWMF;
    // The colour the colour dialog holds between two uses.
    uint32_t ColourDialogValue = 0;

private:
    void buildLayout();
    void registerMembers();
    void Form_Load();
    void Form_Resize();
    void cmdChoseColour_Click();
    void Picture1_MouseDown(int button, float x, float y);
    void Picture1_MouseMove(int button, float x, float y);
    void Picture1_MouseUp(int button, float x, float y);
    void cmdSave_Click();
    // S: the file store, a backslash and the plan's name.
    QString planPath() const;

    Application& app_;
};

} // namespace tessaly
