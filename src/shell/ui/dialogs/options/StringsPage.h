#pragma once
// "Strings": the three title templates ("trackTitleTemplate", "windowTitleTemplate",
// "statusStringTemplate"), each with a menu that inserts a variable reference at the
// caret ("Insert a variable reference into Track Title" / "... Window Title" / "...
// Status String"). The caption and the status line use a changed template as soon as
// the options are applied.
#include "shell/ui/dialogs/options/OptionsPage.h"

class QLineEdit;
class QMenu;

namespace verdin {

class StringsPage : public OptionsPage {
    Q_OBJECT
public:
    explicit StringsPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;

    QLineEdit* TrackTitle() const { return trackTitle_; }
    QLineEdit* WindowTitle() const { return windowTitle_; }
    QLineEdit* StatusString() const { return statusString_; }
    QMenu* TrackTitleMenu() const { return trackTitleMenu_; }
    QMenu* WindowTitleMenu() const { return windowTitleMenu_; }
    QMenu* StatusStringMenu() const { return statusStringMenu_; }

private:
    QLineEdit* trackTitle_ = nullptr;
    QLineEdit* windowTitle_ = nullptr;
    QLineEdit* statusString_ = nullptr;
    QMenu* trackTitleMenu_ = nullptr;
    QMenu* windowTitleMenu_ = nullptr;
    QMenu* statusStringMenu_ = nullptr;
};

}  // namespace verdin
