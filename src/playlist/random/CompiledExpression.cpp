#include "playlist/random/CompiledExpression.h"

#include "playlist/random/ExpressionScan.h"
#include "base/Text.h"

namespace verdin {

CompiledExpression::CompiledExpression(std::string_view text) { root_ = Compile(ExpressionText(text), 0); }

int CompiledExpression::AddConstant(bool value) {
    Node node;
    node.constant = value;
    nodes_.push_back(std::move(node));
    return static_cast<int>(nodes_.size() - 1);
}

int CompiledExpression::Compile(std::string_view text, int depth) {
    if (depth > kMaxGroupDepth) return AddConstant(false);
    if (text.empty()) return AddConstant(true);
    const std::size_t start = SkipBlanks(text, 0);
    if (start < text.size() && text[start] == '(') return CompileCompound(text, start, depth);
    return CompileComparison(text);
}

int CompiledExpression::CompileCompound(std::string_view text, std::size_t pos, int depth) {
    std::vector<Link> links;
    bool first = true;
    while (pos < text.size()) {
        const char connector = first ? '\0' : ReadConnector(text, pos);
        const GroupSpan group = FindGroup(text, pos);
        pos = SkipBlanks(text, group.end);
        if (!first && connector != '&' && connector != '|') continue;
        const int child = group.wellFormed ? Compile(group.inside, depth + 1) : AddConstant(false);
        links.push_back({connector, child});
        first = false;
    }
    Node node;
    node.type = NodeType::Compound;
    node.links = std::move(links);
    nodes_.push_back(std::move(node));
    return static_cast<int>(nodes_.size() - 1);
}

int CompiledExpression::CompileComparison(std::string_view text) {
    const ComparisonParts parts = ScanComparison(text);
    Node node;
    node.variable = LookUpVariable(parts.name);
    node.op = ParseComparisonOperator(parts.op);
    // Either kind of comparison is false for an unknown variable or operator.
    if (node.variable.kind == VariableKind::Unknown || node.op == ComparisonOperator::Other)
        return AddConstant(false);
    node.type = NodeType::Comparison;
    node.value = parts.value;
    node.upperValue = ToUpper(parts.value);
    node.integerValue = ParseDecimal(parts.value);
    nodes_.push_back(std::move(node));
    return static_cast<int>(nodes_.size() - 1);
}

template <typename Compare>
bool CompiledExpression::Evaluate(int index, const Compare& compare) const {
    const Node& node = nodes_[static_cast<std::size_t>(index)];
    switch (node.type) {
        case NodeType::Constant:
            return node.constant;
        case NodeType::Comparison:
            return compare(node);
        case NodeType::Compound:
            break;
    }
    bool running = false;
    for (const Link& link : node.links) {
        if (link.connector == '\0') {
            running = Evaluate(link.node, compare);
        } else if (link.connector == '&') {
            // A failed "and" ends the whole compound: nothing after it is looked at.
            if (!running || !Evaluate(link.node, compare)) return false;
        } else if (!running) {
            running = Evaluate(link.node, compare);
        }
    }
    return running;
}

bool CompiledExpression::Matches(const TrackRecord& track) const {
    return Evaluate(root_, [&](const Node& node) {
        ReadVariable(node.variable, track, variableScratch_);
        if (!variableScratch_.text.empty())
            return CompareText(node.op, variableScratch_.text, node.value, node.upperValue, upperScratch_);
        return CompareInteger(node.op, variableScratch_.integer, node.integerValue);
    });
}

bool CompiledExpression::Matches(const TrackRecord& track, std::size_t row, std::size_t rows,
                                 VariableColumns& columns) const {
    return Evaluate(root_, [&](const Node& node) {
        const ColumnValue& value = columns.Value(node.variable, row, rows, track);
        if (!value.upperText.empty()) return CompareUpperText(node.op, value.upperText, node.upperValue);
        return CompareInteger(node.op, value.integer, node.integerValue);
    });
}

}  // namespace verdin
