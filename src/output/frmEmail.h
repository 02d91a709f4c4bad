#pragma once

#include "core/forms/Form.h"

#include <memory>

namespace tessaly {

class Application;
namespace mail {
class MailService;
}
namespace spell {
class VSSpell;
}

// "E-Mail Drawings To A Client": the finished outputs of chosen plans of one
// site, copied to the temporary folder, packed into Drawings.zip and handed
// to the mail program as one attachment. The grid G1 lists every site with
// its client through the data control RS1; a move to another row lists the
// site's plans in List1, with a tick box at each.
class frmEmail final : public Form {
public:
    static constexpr const char* FormName = "frmEmail";
    explicit frmEmail(Application& app);

    Control& lblHeading;
    Control& lblSubHeading;
    Control& SSActiveTabs1;
    Control& RS1;
    Control& G1;
    Control& List1;
    Control& lblHint;
    Control& lblRecipients;
    Control& txtRecipients;
    Control& lblSubject;
    Control& txtSubject;
    Control& lblToSend;
    Control& txtToSend;
    Control& cmdSend;
    Control& cmdSpellCheck;
    Control& Command1;
    Control& mnuOptions;
    Control& mnuOptions_Both;
    Control& mnuOptions_EMF;
    Control& mnuOptions_WMF;
    Control& mnuOptions_PDF;

    // The loaded flag: false until the load has ended, so that the data
    // control's first movements do not fill the list.
    bool Loaded = false;
    // The spell checker.
    std::shared_ptr<spell::VSSpell> VSSpell1;

private:
    void buildLayout();
    void buildMenu();
    void registerMembers();
    void Form_Load();
    void Form_Activate();
    void RS1_MoveComplete();
    void FillList();
    void mnuOptions_Click(Control& entry);
    void cmdSend_Click();
    void cmdSpellCheck_Click();

    Application& app_;
};

} // namespace tessaly
