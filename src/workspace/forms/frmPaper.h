#pragma once

#include "core/forms/Form.h"

#include <cstdint>

namespace tessaly {

class Application;

// "Canvas Settings": the sheet's size, paper, outline and shadow, and a locked
// background picture. Every change goes to the live page; there is no Cancel.
class frmPaper final : public Form {
public:
    static constexpr const char* FormName = "frmPaper";
    explicit frmPaper(Application& app);

    Control& lblHeading;
    Control& lblSubHeading;
    Control& fraDimensions;
    Control& lblPageWidth;
    Control& txtPageWidth;
    Control& lblPageHeight;
    Control& txtPageHeight;
    Control& fraGeneral;
    Control& chckShowPaper;
    Control& cmdPaperColor;
    Control& fraOutline;
    Control& chckPaperOutline;
    Control& cmdPaperOutlineColor;
    Control& fraShadow;
    Control& chckPaperShadow;
    Control& cmdPaperShadowColor;
    Control& fraBackground;
    Control& cmdBackground;
    Control& cmdOk;

    // What the load read: the orientation, and the two sizes as shown in the
    // width and the height box (the background picture is sized by them).
    bool PaperLandscape = false;
    int32_t ShownWidth = 0;
    int32_t ShownHeight = 0;

private:
    void buildLayout();
    void registerMembers();
    void Form_Load();
    void colourButton(const char* property);
    void cmdBackground_Click();

    Application& app_;
};

} // namespace tessaly
