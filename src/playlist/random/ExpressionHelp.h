#pragma once
// What the random entry properties dialog tells the user about expressions, and the data
// of its "Insert an integer variable" / "Insert a string variable" menus.
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

inline constexpr std::string_view kExpressionExplanation =
    "This is the expression based on which the track is randomly selected. To set no requirements for the "
    "track, leave the string empty. Use operators && (and) and | (or) to combine expressions. All expressions "
    "must be in parentheses.";

inline constexpr std::array<std::string_view, 6> kIntegerOperatorTexts{
    "= (is equal to)",     "!= (is not equal to)", "> (is greater than)",
    "< (is less than)",    ">= (is greater than or equal to)", "<= (is less than or equal to)",
};

inline constexpr std::array<std::string_view, 4> kStringOperatorTexts{
    "= (is)", "!= (is not)", "~ (contains)", "!~ (does not contain)",
};

inline constexpr std::string_view kCaseInsensitiveNote = "All comparisons are case insensitive";

inline constexpr std::string_view kExamplesHeading = "Examples";

// Shown one a line under "Examples".
inline constexpr std::array<std::string_view, 3> kExpressionExamples{
    "((CONTENTTYPE ~ \"Blues\") | (CONTENTTYPE ~ \"Jazz\")) && (YEAR < 1970)",
    "(DURATION > 300) && ((LEADARTIST ~ \"Davis\") | (COMPOSER ~ \"Ellington\"))",
    "(COMPOSER ~ \"Bach\") && (LEADARTIST !~ \"Gould\") && (DURATION < 600)",
};

// Menu groups: the track's own values, and the frames of its tag.
inline constexpr std::string_view kGeneralVariablesGroup = "General";
inline constexpr std::string_view kFrameVariablesGroup = "ID3 Frame";

// One menu entry: "NAME\tdescription"; the text before the tab is what gets inserted.
struct VariableMenuEntry {
    std::string text;
    std::string_view group;
};

// "FILESIZE\tFile size (in bytes)", "DURATION\tTrack duration (in seconds)", then every
// integer frame in table order.
std::vector<VariableMenuEntry> IntegerVariableMenu();
// "FILEPATH\tFile path", "FILEBODY\tFile body", then every text frame in table order.
std::vector<VariableMenuEntry> StringVariableMenu();

// The text a menu entry inserts (up to its tab).
std::string_view InsertedVariableName(std::string_view menuText);

}  // namespace verdin
