#pragma once

#include "core/forms/Form.h"

#include <cstdint>

namespace tessaly {

class Application;

// "Guidelines Settings": the guide lines' switches and colour, written to the
// live canvas at once, and a horizontal and a vertical start line laid on OK.
class frmGuidelines final : public Form {
public:
    static constexpr const char* FormName = "frmGuidelines";
    explicit frmGuidelines(Application& app);

    Control& chckGuidelines;
    Control& chckSnapToGuidelines;
    Control& Frame1;
    Control& lblHorizontal;
    Control& txtHSG;
    Control& lblVertical;
    Control& txtVSG;
    Control& cmdChooseColor;
    Control& cmdOk;
    Control& cmdCancel;

    // The values at load (refreshed by OK), written back by Cancel.
    uint32_t OldGuideColour = 0;
    bool OldShowGuides = false;
    bool OldSnapToGuides = false;

private:
    void buildLayout();
    void registerMembers();
    void Form_Load();
    void cmdChooseColor_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

    Application& app_;
};

} // namespace tessaly
