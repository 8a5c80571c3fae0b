#include "playlist/random/EvaluateExpression.h"

#include "playlist/random/Comparison.h"
#include "playlist/random/ExpressionScan.h"
#include "playlist/random/ExpressionVariable.h"
#include "base/Text.h"

#include <string>

namespace verdin {
namespace {

bool Evaluate(const TrackRecord& track, const std::string& text, int depth);

bool EvaluateComparison(const TrackRecord& track, std::string_view text) {
    const ComparisonParts parts = ScanComparison(text);
    const ExpressionVariable variable = LookUpVariable(std::string(parts.name));
    if (variable.kind == VariableKind::Unknown) return false;
    VariableValue value;
    ReadVariable(variable, track, value);
    const ComparisonOperator op = ParseComparisonOperator(parts.op);
    const std::string compared(parts.value);
    if (!value.text.empty()) {
        std::string scratch;
        return CompareText(op, value.text, compared, ToUpper(compared), scratch);
    }
    return CompareInteger(op, value.integer, ParseDecimal(compared));
}

bool EvaluateCompound(const TrackRecord& track, std::string_view text, std::size_t pos, int depth) {
    bool running = false;
    bool first = true;
    while (pos < text.size()) {
        const char connector = first ? '\0' : ReadConnector(text, pos);
        const GroupSpan group = FindGroup(text, pos);
        pos = SkipBlanks(text, group.end);
        if (!first && connector != '&' && connector != '|') continue;  // the group is ignored
        const bool result = group.wellFormed && Evaluate(track, std::string(group.inside), depth + 1);
        if (first) {
            running = result;
            first = false;
        } else if (connector == '&') {
            if (!running || !result) return false;
        } else {
            running = running || result;
        }
    }
    return running;
}

bool Evaluate(const TrackRecord& track, const std::string& text, int depth) {
    if (depth > kMaxGroupDepth) return false;
    if (text.empty()) return true;
    const std::size_t start = SkipBlanks(text, 0);
    if (start < text.size() && text[start] == '(') return EvaluateCompound(track, text, start, depth);
    return EvaluateComparison(track, text);
}

}  // namespace

bool EvaluateExpression(const TrackRecord& track, std::string_view text) {
    return Evaluate(track, std::string(ExpressionText(text)), 0);
}

}  // namespace verdin
