#pragma once
// The commands that need the window: dialogs, the playlist view's selection, what the
// window shows. Everything else goes to the player core with the same context.
#include "shell/CommandTable.h"
#include "shell/PlayerCore.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/files/AddCommands.h"

namespace verdin {

class MainWindow;

class WindowCommands {
public:
    explicit WindowCommands(MainWindow& window);

    // Runs the action if it is one of the window's; false to leave it to the core.
    bool Run(Action action, const CommandContext& context);

    AddCommands& Adding() { return adding_; }
    // Rows dragged in the playlist view, dropped before beforeRow; the current row stays
    // with its entry.
    void MoveRows(const std::vector<int>& rows, int beforeRow);

private:
    void ToggleSetting(int32_t& setting);
    void ResetOptions(const CommandContext& context);
    void AddRandomEntry(int atRow);
    void IncorporateItems(const CommandContext& context);
    void SaveSelectedPlaylist(int row);
    void DropPlaylist(int row);
    void ShowProperties(int row);
    void ShowEvaluatedProperties(int row);
    void Find(bool askFirst);
    QWidget* Owner();

    MainWindow& window_;
    PlayerCore& core_;
    AddCommands adding_;
    FindRequest lastFind_;  // the last search, for "Find Next"
};

}  // namespace verdin
