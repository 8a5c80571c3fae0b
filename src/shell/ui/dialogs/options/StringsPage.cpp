#include "shell/ui/dialogs/options/StringsPage.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/common/VariableMenu.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

namespace verdin {
namespace {

constexpr int kTemplateLength = 255;

}  // namespace

StringsPage::StringsPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("Strings"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    struct Row {
        const char* label;
        const char* name;
        std::string Settings::*field;
        const char* menuTitle;
        std::vector<InsertMenuEntry> entries;
        QLineEdit** edit;
        QMenu** menu;
    };
    Row rows[] = {
        {"Track title (only if an ID3 tag is found)", "trackTitleTemplate", &Settings::trackTitleTemplate,
         "Insert a variable reference into Track Title", TrackTitleEntries(), &trackTitle_, &trackTitleMenu_},
        {"Window title", "windowTitleTemplate", &Settings::windowTitleTemplate, "Insert a variable reference into Window Title",
         WindowTitleEntries(), &windowTitle_, &windowTitleMenu_},
        {"Status string", "statusStringTemplate", &Settings::statusStringTemplate, "Insert a variable reference into Status String",
         StatusStringEntries(), &statusString_, &statusStringMenu_},
    };
    int line = 0;
    for (Row& row : rows) {
        grid->addWidget(new QLabel(QLatin1String(row.label), this), line++, 0, 1, 2);
        QLineEdit* edit = AddText(row.field, kTemplateLength);
        edit->setObjectName(QLatin1String(row.name));
        *row.edit = edit;
        const QString title = QLatin1String(row.menuTitle);
        *row.menu = BuildInsertMenu(this, title, row.entries, edit);
        auto* insert = new QPushButton(QStringLiteral("Insert variable"), this);
        insert->setToolTip(title);
        insert->setMenu(*row.menu);
        grid->addWidget(edit, line, 0);
        grid->addWidget(insert, line++, 1);
    }
    layout->addLayout(grid);
    layout->addStretch();
    Load();
}

void StringsPage::Load() { LoadBindings(); }
void StringsPage::Apply(Settings& s) { ApplyBindings(s); }

}  // namespace verdin
