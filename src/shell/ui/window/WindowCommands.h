#pragma once
// The commands that need the window: dialogs, the playlist view's selection, what the
// window shows. Everything else goes to the player with the same context.
#include "shell/CommandTable.h"
#include "shell/Player.h"
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

private:
    // Flips one of the window's flags in the settings.
    void Toggle(int32_t Settings::*setting);
    void SaveSelectedPlaylist(int row);
    void Find(bool askFirst);
    QWidget* Owner();

    MainWindow& window_;
    Player& player_;
    AddCommands adding_;
    FindRequest lastFind_;  // the last search, for "Find Next"
};

}  // namespace verdin
