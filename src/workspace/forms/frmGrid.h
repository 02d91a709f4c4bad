#pragma once

#include "core/forms/Form.h"

#include <cstdint>

namespace tessaly {

class Application;

// "Grid Settings": the grid's switches, spacing and colour, written to the
// live canvas at every change. Cancel writes back the values of the load.
class frmGrid final : public Form {
public:
    static constexpr const char* FormName = "frmGrid";
    explicit frmGrid(Application& app);

    Control& chckShowGrid;
    Control& chckSnapToGrid;
    Control& Frame1;
    Control& lblWidth;
    Control& txtHGrid;
    Control& lblHeight;
    Control& txtVGrid;
    Control& btnGridColor;
    Control& btnOK;
    Control& btnCancel;

    // The values at load, written back by Cancel.
    bool OldShowGrid = false;
    bool OldSnapToGrid = false;
    int32_t OldSpacingY = 0;
    int32_t OldSpacingX = 0;
    uint32_t OldGridColour = 0;

private:
    void buildLayout();
    void registerMembers();
    void Form_Load();
    void chckShowGrid_Click();
    void enableSettings(bool on);
    void btnGridColor_Click();
    void btnCancel_Click();

    Application& app_;
};

} // namespace tessaly
