#include "shell/ui/dialogs/common/VariableMenu.h"

#include "playlist/random/ExpressionHelp.h"
#include "playlist/titles/TemplateVariables.h"

#include <QLineEdit>
#include <QMenu>
#include <map>

namespace verdin {
namespace {

QString FromView(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// "&" marks a mnemonic in a menu text; a literal one is doubled.
QString MenuText(const QString& text) {
    QString escaped = text;
    escaped.replace(QLatin1Char('&'), QStringLiteral("&&"));
    return escaped;
}

std::vector<InsertMenuEntry> FromExpressionMenu(const std::vector<VariableMenuEntry>& menu) {
    std::vector<InsertMenuEntry> entries;
    for (const VariableMenuEntry& entry : menu)
        entries.push_back({FromView(entry.text), FromView(entry.group), FromView(InsertedVariableName(entry.text))});
    return entries;
}

std::vector<InsertMenuEntry> FromTemplateVariables(const std::vector<TemplateVariable>& variables) {
    std::vector<InsertMenuEntry> entries;
    for (const TemplateVariable& variable : variables) {
        const QString reference = FromView(variable.reference);
        entries.push_back({reference + QLatin1Char('\t') + FromView(variable.description), FromView(variable.group),
                           reference});
    }
    return entries;
}

}  // namespace

std::vector<InsertMenuEntry> IntegerVariableEntries() { return FromExpressionMenu(IntegerVariableMenu()); }
std::vector<InsertMenuEntry> StringVariableEntries() { return FromExpressionMenu(StringVariableMenu()); }
std::vector<InsertMenuEntry> TrackTitleEntries() { return FromTemplateVariables(TrackTitleVariables()); }
std::vector<InsertMenuEntry> WindowTitleEntries() { return FromTemplateVariables(WindowTitleVariables()); }
std::vector<InsertMenuEntry> StatusStringEntries() { return FromTemplateVariables(StatusStringVariables()); }

void InsertAtCaret(QLineEdit* target, const QString& text) {
    target->insert(text);
    target->setFocus();
}

QMenu* BuildInsertMenu(QWidget* parent, const QString& title, const std::vector<InsertMenuEntry>& entries,
                       QLineEdit* target) {
    auto* menu = new QMenu(title, parent);
    menu->setObjectName(title);
    std::map<QString, QMenu*> groups;
    for (const InsertMenuEntry& entry : entries) {
        QMenu* into = menu;
        if (!entry.group.isEmpty()) {
            QMenu*& group = groups[entry.group];
            if (!group) {
                group = menu->addMenu(MenuText(entry.group));
                group->setObjectName(entry.group);
            }
            into = group;
        }
        QAction* action = into->addAction(MenuText(entry.text));
        const QString inserted = entry.inserted;
        QObject::connect(action, &QAction::triggered, target, [target, inserted] { InsertAtCaret(target, inserted); });
    }
    return menu;
}

}  // namespace verdin
