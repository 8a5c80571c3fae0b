#include "playlist/random/ExpressionScan.h"

namespace verdin {
namespace {

constexpr char kBlank = ' ';

bool IsOperatorCharacter(char c) { return c == '!' || c == '~' || c == '=' || c == '<' || c == '>'; }

std::string_view Unquote(std::string_view value) {
    if (value.empty() || value.front() != '"') return value;
    if (value.size() <= 2) return {};
    return value.substr(1, value.size() - 2);
}

}  // namespace

std::string_view ExpressionText(std::string_view text) {
    const std::size_t nul = text.find('\0');
    return nul == std::string_view::npos ? text : text.substr(0, nul);
}

std::size_t SkipBlanks(std::string_view text, std::size_t pos) {
    while (pos < text.size() && text[pos] == kBlank) ++pos;
    return pos;
}

std::size_t SkipToBlank(std::string_view text, std::size_t pos) {
    while (pos < text.size() && text[pos] != kBlank) ++pos;
    return pos;
}

GroupSpan FindGroup(std::string_view text, std::size_t pos) {
    GroupSpan group;
    if (pos >= text.size() || text[pos] != '(') {
        group.end = SkipToBlank(text, pos);
        return group;
    }
    group.wellFormed = true;
    std::size_t depth = 0;
    std::size_t i = pos;
    do {
        if (text[i] == '(') ++depth;
        else if (text[i] == ')') --depth;
        ++i;
    } while (i < text.size() && depth != 0);
    // Closed: drop the closing parenthesis; unbalanced: everything after "(".
    const std::size_t insideEnd = depth == 0 ? i - 1 : i;
    group.inside = text.substr(pos + 1, insideEnd - (pos + 1));
    group.end = i;
    return group;
}

char ReadConnector(std::string_view text, std::size_t& pos) {
    const char connector = pos < text.size() ? text[pos] : '\0';
    pos = SkipBlanks(text, SkipToBlank(text, pos));
    return connector;
}

ComparisonParts ScanComparison(std::string_view text) {
    ComparisonParts parts;
    const std::size_t nameStart = SkipBlanks(text, 0);
    const std::size_t nameEnd = SkipToBlank(text, nameStart);
    parts.name = text.substr(0, nameEnd - nameStart);

    std::size_t pos = SkipBlanks(text, nameEnd);
    const std::size_t opStart = pos;
    while (pos < text.size() && pos - opStart < 2 && IsOperatorCharacter(text[pos])) ++pos;
    parts.op = text.substr(opStart, pos - opStart);

    pos = SkipBlanks(text, SkipToBlank(text, pos));
    parts.value = Unquote(text.substr(pos));
    return parts;
}

}  // namespace verdin
