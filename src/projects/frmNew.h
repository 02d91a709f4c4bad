#pragma once

#include "core/forms/Form.h"

#include <array>

namespace tessaly {

class Application;
struct ProjectsModule;

// The client window: one client added, edited or deleted, on the Clients
// table through the shared recordset. The project manager decides before it
// opens whether it adds (gIsNewClient -1) or edits (0) and which client it
// shows (gCurrentClientID).
class frmNew final : public Form {
public:
    static constexpr const char* FormName = "frmNew";
    frmNew(Application& app, ProjectsModule& module);

    // The boxes of the client, by index: 0 Client to 8 Contact, 9 the hidden
    // ClientID, 10 the comments that are never stored.
    static constexpr int BoxCount = 11;
    static constexpr int IdBox = 9;
    static constexpr int CommentsBox = 10;
    Control& txtClient(int index) const { return *txtClient_[static_cast<size_t>(index)]; }
    Control& cmdSaveClient;
    Control& cmdDelateClient;
    Control& cmdClose;

    // Fills the boxes from the client gCurrentClientID names.
    void LoadClient();
    // A new Clients row from boxes 0 to 8, trimmed.
    void AddClient();
    // The client of box 9 rewritten from boxes 0 to 8, trimmed.
    void UpdateClient();

private:
    void buildLayout();
    void registerHandlers();
    void registerRoutines();
    void Form_Load();
    void txtClient_LostFocus(Control& box);
    void cmdSaveClient_Click();
    void cmdDelateClient_Click();
    void writeClientFields();

    Application& app_;
    ProjectsModule& module_;
    std::array<Control*, BoxCount> txtClient_{};
};

} // namespace tessaly
