#pragma once
// The text-level steps of reading a random-entry expression (CompiledExpression.h).
//
// Blanks are the character 0x20 only (a tab is an ordinary character). An expression is a
// C text: it ends at its first NUL.
#include <cstddef>
#include <string_view>

namespace verdin {

// Groups nested deeper than this evaluate to false. The expression language has no limit,
// but a text of a million "(" must neither exhaust the stack nor take quadratic time.
inline constexpr int kMaxGroupDepth = 64;

// The text up to its first NUL.
std::string_view ExpressionText(std::string_view text);

// The first position at or after pos that is not a blank (or the end).
std::size_t SkipBlanks(std::string_view text, std::size_t pos);
// The first position at or after pos that is a blank (or the end).
std::size_t SkipToBlank(std::string_view text, std::size_t pos);

// A parenthesised group starting at a position of a compound.
struct GroupSpan {
    bool wellFormed = false;  // it starts with "("
    std::string_view inside;  // the text strictly between its outer parentheses
    std::size_t end = 0;      // the position just after the group
};

// Counts parentheses from pos ("(" one up, ")" one down) until the count is back to zero
// or the text ends (an unbalanced group runs to the end). A group that does not start
// with "(" (possible only after a connector: "(A) && B") is not well formed; it reaches to
// the next blank and evaluates to false.
GroupSpan FindGroup(std::string_view text, std::size_t pos);

// After a group: reads the connector at pos. Only its first character counts; the rest of
// its word is skipped, then the blanks after it. Returns the connector character and
// moves pos to the next group.
char ReadConnector(std::string_view text, std::size_t& pos);

// NAME OP VALUE as read from a comparison text.
struct ComparisonParts {
    // Measured from the first non-blank character to the next blank, but taken from the
    // very start of the text: leading blanks make the name begin with blanks and lose as
    // many characters at its end, so such a comparison names no variable.
    std::string_view name;
    // Up to two characters, each one of "!~=<>".
    std::string_view op;
    // The rest of the text, blanks kept, with the double-quote rule applied: a value that
    // begins with a double quote is empty when one or two characters long, else loses its
    // first and its last character (whatever the last one is).
    std::string_view value;
};

ComparisonParts ScanComparison(std::string_view text);

}  // namespace verdin
