#pragma once
// The player's message boxes, captioned "Verdin", owned by the window given (the dialog
// owner). The window application and the dialogs show their boxes through these.
#include "shell/PlayerHost.h"

#include <string_view>

class QWidget;

namespace verdin {

void ShowMessageBox(QWidget* owner, std::string_view text, MessageIcon icon);
// Yes and No; true for Yes.
bool AskYesNoBox(QWidget* owner, std::string_view text, MessageIcon icon);

}  // namespace verdin
