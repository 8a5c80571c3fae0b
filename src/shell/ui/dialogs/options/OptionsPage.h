#pragma once
// One page of the options dialog. A page shows the settings it edits when it is made and
// after Load, and writes them back (and sets off what must change at once) on Apply.
#include <QString>
#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

class QCheckBox;
class QLineEdit;

namespace verdin {

class PlayerCore;
struct Settings;

class OptionsPage : public QWidget {
    Q_OBJECT
public:
    OptionsPage(const QString& title, PlayerCore& core, QWidget* parent = nullptr);

    const QString& Title() const { return title_; }
    // Shows what the settings hold now.
    virtual void Load() = 0;
    // Puts the page's values into the settings, and makes the changes that take effect
    // at once. The dialog saves the settings afterwards.
    virtual void Apply() = 0;

protected:
    Settings& CurrentSettings();

    // Check boxes and text fields that edit one field each, loaded and applied by table.
    QCheckBox* AddFlag(const QString& text, int32_t Settings::*field, QWidget* parent = nullptr);
    QLineEdit* AddText(std::string Settings::*field, int maximumLength, QWidget* parent = nullptr);
    void LoadBindings();
    void ApplyBindings();

    PlayerCore& core_;

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
