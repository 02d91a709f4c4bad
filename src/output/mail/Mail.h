#pragma once

namespace tessaly {

class AppHome;
class Application;
namespace script {
class Registry;
}

// The e-mail dispatch joins the program: Tessaly's mail program (reached by
// CreateObject("Outlook.Application"), with the scripting file system object
// beside it), the e-mail window, the main window's mnuFile_email, and the
// delivery of the outbox at each start of the program.
void registerMail(Application& app);

// The mail program's values of the install step: MailProgram "Outbox", and
// MailServer, MailFrom, MailUser and MailTimeout where absent (the server
// empty, so that messages wait in the outbox until one is set).
void installMail(const AppHome& home);

// The script driver's part: the events mail, zip and spell, `answer spell`,
// and `print outbox`.
void addMailScriptCommands(script::Registry& registry);

} // namespace tessaly
