// The variable menus of the random entry dialog, held against what the evaluator accepts.
#include "playlist/random/EvaluateExpression.h"
#include "playlist/random/ExpressionHelp.h"
#include "playlist/random/ExpressionVariable.h"
#include "tags/FrameTable.h"

#include "TrackFixtures.h"

#include <gtest/gtest.h>

#include <set>

namespace verdin {
namespace {

std::vector<std::string> Texts(const std::vector<VariableMenuEntry>& menu, size_t count) {
    std::vector<std::string> out;
    for (size_t i = 0; i < count && i < menu.size(); ++i) out.push_back(menu[i].text);
    return out;
}

TEST(ExpressionMenus, StartWithTheTrackValues) {
    const auto integers = IntegerVariableMenu();
    const auto strings = StringVariableMenu();
    EXPECT_EQ(Texts(integers, 2),
              (std::vector<std::string>{"FILESIZE\tFile size (in bytes)", "DURATION\tTrack duration (in seconds)"}));
    EXPECT_EQ(Texts(strings, 2), (std::vector<std::string>{"FILEPATH\tFile path", "FILEBODY\tFile body"}));
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(integers[i].group, "General");
        EXPECT_EQ(strings[i].group, "General");
    }
}

// Every frame but the table's "no frame" placeholder is in exactly one menu, the one of
// the kind the evaluator gives it, as "NAME\tdescription", in table order.
TEST(ExpressionMenus, EveryFrameIsInTheMenuOfItsKind) {
    const auto integers = IntegerVariableMenu();
    const auto strings = StringVariableMenu();
    std::set<std::string> listed;
    for (const auto* menu : {&integers, &strings}) {
        const VariableKind kind = menu == &integers ? VariableKind::IntegerFrame : VariableKind::StringFrame;
        int lastIndex = -1;
        for (size_t i = 2; i < menu->size(); ++i) {
            const std::string name(InsertedVariableName((*menu)[i].text));
            const ExpressionVariable variable = LookUpVariable(name);
            EXPECT_EQ(variable.kind, kind) << name;
            EXPECT_EQ((*menu)[i].text, name + "\t" + std::string(FrameDescription(variable.frame)));
            EXPECT_EQ((*menu)[i].group, "ID3 Frame");
            EXPECT_GT(static_cast<int>(variable.frame), lastIndex) << name << " out of table order";
            lastIndex = static_cast<int>(variable.frame);
            EXPECT_TRUE(listed.insert(name).second) << name << " listed twice";
        }
    }
    EXPECT_EQ(listed.size(), kFrameCount - 1);
    EXPECT_EQ(listed.count("NOFRAME"), 0u);
    for (const char* integer : {"YEAR", "TRACKNUM"})
        EXPECT_EQ(LookUpVariable(integer).kind, VariableKind::IntegerFrame) << integer;
    EXPECT_EQ(LookUpVariable("LEADARTIST").kind, VariableKind::StringFrame);
}

// Each menu's names work in an expression: an integer variable compares with "<", a
// string variable with "~".
TEST(ExpressionMenus, InsertedNamesAreUnderstood) {
    const auto track = test::MakeTrack({"/m/x.mp3", {}, 5000, 100});
    for (const auto& entry : IntegerVariableMenu()) {
        const std::string name(InsertedVariableName(entry.text));
        EXPECT_NE(LookUpVariable(name).kind, VariableKind::Unknown) << name;
        // A missing frame is 0 and FILESIZE/DURATION are small here: all below 1e6.
        EXPECT_TRUE(EvaluateExpression(*track, "(" + name + " < 1000000)")) << name;
    }
    for (const auto& entry : StringVariableMenu())
        EXPECT_NE(LookUpVariable(InsertedVariableName(entry.text)).kind, VariableKind::Unknown) << entry.text;
}

TEST(ExpressionHelp, DialogTexts) {
    EXPECT_EQ(kExpressionExamples[0], "((CONTENTTYPE ~ \"Blues\") | (CONTENTTYPE ~ \"Jazz\")) && (YEAR < 1970)");
    // The other two examples use the variables and operators the dialog promises.
    const std::string others = std::string(kExpressionExamples[1]) + std::string(kExpressionExamples[2]);
    for (const char* piece : {"DURATION", "LEADARTIST", "COMPOSER", "&&", "|", " ~ ", "!~"})
        EXPECT_NE(others.find(piece), std::string::npos) << piece;
    EXPECT_EQ(kIntegerOperatorTexts[4], ">= (is greater than or equal to)");
    EXPECT_EQ(kStringOperatorTexts[3], "!~ (does not contain)");
    EXPECT_EQ(kCaseInsensitiveNote, "All comparisons are case insensitive");
}

}  // namespace
}  // namespace verdin
