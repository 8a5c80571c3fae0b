#include "shell/ui/dialogs/options/OptionsPage.h"

#include "settings/Settings.h"
#include "shell/Player.h"

#include <QCheckBox>
#include <QLineEdit>

namespace verdin {

OptionsPage::OptionsPage(const QString& title, Player& player, QWidget* parent)
    : QWidget(parent), player_(player), title_(title) {
    setObjectName(title);
}

const Settings& OptionsPage::CurrentSettings() const { return player_.GetSettings(); }

QCheckBox* OptionsPage::AddFlag(const QString& text, int32_t Settings::*field, QWidget* parent) {
    auto* box = new QCheckBox(text, parent ? parent : this);
    flags_.push_back({box, field});
    return box;
}

QLineEdit* OptionsPage::AddText(std::string Settings::*field, int maximumLength, QWidget* parent) {
    auto* edit = new QLineEdit(parent ? parent : this);
    edit->setMaxLength(maximumLength);
    texts_.push_back({edit, field});
    return edit;
}

void OptionsPage::LoadBindings() {
    const Settings& settings = CurrentSettings();
    for (const FlagBinding& flag : flags_) flag.box->setChecked(settings.*flag.field != 0);
    for (const TextBinding& text : texts_) text.edit->setText(QString::fromStdString(settings.*text.field));
}

void OptionsPage::ApplyBindings(Settings& settings) {
    // A flag keeps its stored value while the box agrees with it (any non-zero value is
    // "on"); a changed box stores 0 or 1.
    for (const FlagBinding& flag : flags_)
        if ((settings.*flag.field != 0) != flag.box->isChecked()) settings.*flag.field = flag.box->isChecked() ? 1 : 0;
    for (const TextBinding& text : texts_) settings.*text.field = text.edit->text().toStdString();
}

}  // namespace verdin
