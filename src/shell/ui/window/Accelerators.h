#pragma once
// The accelerator table: every key of the command table as a shortcut of the main window
// and of the mini window (numeric-keypad minus and plus included). Keys work wherever the
// focus is inside the window; they run the key's action.
#include "shell/CommandTable.h"

#include <QKeySequence>
#include <QList>
#include <functional>
#include <string_view>

class QWidget;

namespace verdin {

// The sequences of a command-table key ("Ctrl+Q", "Num+-"); Enter on the main keyboard
// and on the keypad are one key, as they are for the command table's accelerators.
QList<QKeySequence> KeySequences(std::string_view key);

// One action per key, added to window. Returns how many were installed.
int InstallAccelerators(QWidget& window, const std::function<void(Action)>& run);

}  // namespace verdin
