#pragma once
// The "insert a variable" menus of the random entry dialog and the options page's
// "Strings": entries "NAME\tdescription" (Qt shows the part after the tab in the menu's
// right-hand column), grouped into submenus; choosing one inserts its name at the caret
// of an edit field.
#include <QString>
#include <vector>

class QLineEdit;
class QMenu;
class QWidget;

namespace verdin {

struct InsertMenuEntry {
    QString text;      // shown: "DURATION\tTrack duration (in seconds)"
    QString group;     // the submenu, empty for the menu itself
    QString inserted;  // what goes into the field: "DURATION"
};

// The random-entry variable menus (ExpressionHelp.h).
std::vector<InsertMenuEntry> IntegerVariableEntries();
std::vector<InsertMenuEntry> StringVariableEntries();
// The template variable menus (TemplateVariables.h).
std::vector<InsertMenuEntry> TrackTitleEntries();
std::vector<InsertMenuEntry> WindowTitleEntries();
std::vector<InsertMenuEntry> StatusStringEntries();

// A menu titled title, owned by parent: entries without a group first-level, the others
// in one submenu per group in the order the groups first appear. Triggering an entry
// inserts its text at target's caret (replacing a selection) and gives target the focus.
QMenu* BuildInsertMenu(QWidget* parent, const QString& title, const std::vector<InsertMenuEntry>& entries,
                       QLineEdit* target);

// Inserts text at the caret of the field and gives it the focus.
void InsertAtCaret(QLineEdit* target, const QString& text);

}  // namespace verdin
