#pragma once

#include "core/forms/Form.h"

namespace tessaly {

class CoreApplication;

// The splash window: finds the project database, opens the one connection,
// and two seconds later brings up the main window.
class frmSplash final : public Form {
public:
    static constexpr const char* FormName = "frmSplash";
    explicit frmSplash(CoreApplication& app);

    Control& lblVersion;
    Control& Timer1;

private:
    void Form_Load();
    void Timer1_Timer();

    CoreApplication& app_;
};

} // namespace tessaly
