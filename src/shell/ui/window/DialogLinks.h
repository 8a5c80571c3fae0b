#pragma once
// The dialogs the window's commands open. They are built in their own folder
// (shell/ui/dialogs); a dialog that is not part of this build yet makes its command say
// so instead of keeping the window library from loading (it is loaded with every symbol
// resolved at once). Every file that calls a dialog includes this header, so each call is
// a weak reference that stays null until the dialog's definition is linked in.
#include "shell/ui/dialogs/Dialogs.h"

namespace verdin {

__attribute__((weak)) void ShowTrackProperties(QWidget* parent, PlayerCore& core, int row);
__attribute__((weak)) bool EditRandomEntry(QWidget* parent, PlayerCore& core, RandomEntry& entry);
__attribute__((weak)) void ShowEvaluatedTrackProperties(QWidget* parent, PlayerCore& core, int row);
__attribute__((weak)) std::optional<FindRequest> AskFind(QWidget* parent, const FindRequest& last);
__attribute__((weak)) void ShowEqualizer(QWidget* parent, PlayerCore& core);
__attribute__((weak)) void ShowOptions(QWidget* parent, PlayerCore& core, const std::string& page);
__attribute__((weak)) void ShowAbout(QWidget* parent);

// Whether a dialog function is built in.
template <typename Function>
bool Built(Function* function) {
    return function != nullptr;
}

}  // namespace verdin
