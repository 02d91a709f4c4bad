#pragma once

#include "core/forms/Form.h"
#include "core/runtime/AutoObject.h"

#include <array>
#include <cstdint>

namespace tessaly {

class Application;

// "Shadow lens settings": the lens effect of the selected shapes, changed
// live; Cancel writes back the five values of the load.
class frmShadowLens final : public Form {
public:
    static constexpr const char* FormName = "frmShadowLens";
    explicit frmShadowLens(Application& app);

    Control& lblLensType;
    Control& cmbLensType;
    Control& lblPercentage;
    Control& sldPercentage;
    Control& cmdStartColor;
    Control& cmdEndColor;
    Control& cmdOk;
    Control& cmdCancel;

    // The lens table: item texts and LensFormat.Type codes, in list order.
    static constexpr int LensCount = 9;
    std::array<QString, LensCount> LensNames;
    std::array<int, LensCount> LensCodes{};

    // The LensFormat of the selection, kept while the window is open.
    AutoPtr Lens;
    // The values at load, written back by Cancel.
    int32_t OldType = 0;
    int32_t OldPercent = 0;
    uint32_t OldEndColour = 0;
    uint32_t OldStartColour = 0;
    bool OldLensActive = false;

private:
    void buildLayout();
    void registerMembers();
    void Form_Load();
    void Form_Unload();
    void cmbLensType_Click();
    void sldPercentage_Change();
    void colourButton(const char* property);
    void cmdCancel_Click();
    // Enables the slider and the two colour buttons as the lens code wants;
    // a code the table does not know leaves them as they are.
    void enableFor(int code);
    void showPercentage(int figure);
    AutoPtr effect() const;

    Application& app_;
};

} // namespace tessaly
