#pragma once
// One page of the options dialog. A page shows the settings it edits when it is made and
// after Load, and writes its values into the settings being changed on Apply; the player
// then makes what must change at once.
#include <QString>
#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

class QCheckBox;
class QLineEdit;

namespace verdin {

class Player;
struct Settings;

class OptionsPage : public QWidget {
    Q_OBJECT
public:
    OptionsPage(const QString& title, Player& player, QWidget* parent = nullptr);

    const QString& Title() const { return title_; }
    // Shows what the settings hold now.
    virtual void Load() = 0;
    // Puts the page's values into the settings the dialog is changing.
    virtual void Apply(Settings& s) = 0;
    // Hands values kept apart from the settings record to the player, after the settings
    // were applied; false when they could not be saved.
    virtual bool ApplyApart() { return true; }

protected:
    const Settings& CurrentSettings() const;

    // Check boxes and text fields that edit one field each, loaded and applied by table.
    QCheckBox* AddFlag(const QString& text, int32_t Settings::*field, QWidget* parent = nullptr);
    QLineEdit* AddText(std::string Settings::*field, int maximumLength, QWidget* parent = nullptr);
    void LoadBindings();
    void ApplyBindings(Settings& settings);

    Player& player_;

private:
    struct FlagBinding {
        QCheckBox* box;
        int32_t Settings::*field;
    };
    struct TextBinding {
        QLineEdit* edit;
        std::string Settings::*field;
    };

    QString title_;
    std::vector<FlagBinding> flags_;
    std::vector<TextBinding> texts_;
};

}  // namespace verdin
