#include "playlist/random/ExpressionHelp.h"

#include "playlist/random/ExpressionVariable.h"
#include "tags/FrameTable.h"

namespace verdin {
namespace {

std::string MenuText(std::string_view name, std::string_view description) {
    std::string text(name);
    text += '\t';
    text += description;
    return text;
}

// The frames of one kind, in table order. NOFRAME is the table's placeholder for "no
// frame" and is offered in neither menu.
void AppendFrames(std::vector<VariableMenuEntry>& menu, VariableKind kind) {
    for (const FrameInfo& frame : FrameTable()) {
        if (frame.id == FrameId::NoFrame || LookUpVariable(frame.name).kind != kind) continue;
        menu.push_back({MenuText(frame.name, frame.description), kFrameVariablesGroup});
    }
}

}  // namespace

std::vector<VariableMenuEntry> IntegerVariableMenu() {
    std::vector<VariableMenuEntry> menu{
        {MenuText("FILESIZE", "File size (in bytes)"), kGeneralVariablesGroup},
        {MenuText("DURATION", "Track duration (in seconds)"), kGeneralVariablesGroup},
    };
    AppendFrames(menu, VariableKind::IntegerFrame);
    return menu;
}

std::vector<VariableMenuEntry> StringVariableMenu() {
    std::vector<VariableMenuEntry> menu{
        {MenuText("FILEPATH", "File path"), kGeneralVariablesGroup},
        {MenuText("FILEBODY", "File body"), kGeneralVariablesGroup},
    };
    AppendFrames(menu, VariableKind::StringFrame);
    return menu;
}

std::string_view InsertedVariableName(std::string_view menuText) {
    return menuText.substr(0, menuText.find('\t'));
}

}  // namespace verdin
