#pragma once
// "Input": the input plug-ins loaded at start-up, in load order, with their own
// "Configure" and "About", where they are searched ("inputPluginsSearchPath"; used at
// the next start), and the file types the desktop opens with Verdin.
#include "shell/ui/dialogs/options/OptionsPage.h"

class QListWidget;
class QPushButton;

namespace verdin {

class FileTypesBox;
class SearchPathField;

// The note under every plug-in search path that is read only at start-up.
inline constexpr const char* kRestartNote =
    "Use semicolons to separate directories.\nYou will need to restart Verdin to apply the changes in the search path.";

class InputPage : public OptionsPage {
    Q_OBJECT
public:
    explicit InputPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;

    QListWidget* Modules() const { return modules_; }
    SearchPathField* SearchPath() const { return searchPath_; }
    FileTypesBox* FileTypes() const { return fileTypes_; }
    // The selected module's Configure / About; false without a selection.
    bool ConfigureSelected();
    bool AboutSelected();

private:
    void SelectionChanged();

    QListWidget* modules_ = nullptr;
    QPushButton* configure_ = nullptr;
    QPushButton* about_ = nullptr;
    SearchPathField* searchPath_ = nullptr;
    FileTypesBox* fileTypes_ = nullptr;
};

}  // namespace verdin
