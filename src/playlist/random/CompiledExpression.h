#pragma once
// Whether a track meets a random entry's expression.
//
//   empty text                 true: no requirement
//   (A) && (B) | (C) ...       a compound: parenthesised groups joined by connectors, read
//                              left to right with no precedence. Only a connector's first
//                              character counts. After "&", a false running result or a
//                              false group ends the whole compound false at once; after
//                              "|" the running result is ORed with the group; after any
//                              other character the group is ignored. A group that does
//                              not start with "(" is false.
//   NAME OP VALUE              a comparison (Comparison.h, ExpressionVariable.h); an
//                              unknown NAME makes it false. No blank may follow "(":
//                              "( DURATION < 300)" names no variable (ExpressionScan.h).
//
// The expression is read once and kept as a tree, for evaluating it on every track of a
// sample space: the text split into groups and comparisons, variables looked up, VALUE
// upper-cased and converted to an integer.
//
// Matches() reuses scratch buffers of the object: one thread at a time per object. A sample
// space asks with its columns (VariableColumns.h), which keep the values between picks.
#include "playlist/random/Comparison.h"
#include "playlist/random/ExpressionVariable.h"
#include "playlist/random/VariableColumns.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class TrackRecord;

class CompiledExpression {
public:
    explicit CompiledExpression(std::string_view text);

    bool Matches(const TrackRecord& track) const;
    // The same for the track at row of a sample space of `rows` tracks, its values taken
    // from (and kept in) the space's columns.
    bool Matches(const TrackRecord& track, std::size_t row, std::size_t rows, VariableColumns& columns) const;

private:
    enum class NodeType : std::uint8_t { Constant, Comparison, Compound };
    struct Link {
        char connector = '\0';  // '\0' for the first group, else '&' or '|'
        int node = 0;
    };
    struct Node {
        NodeType type = NodeType::Constant;
        bool constant = false;
        // Comparison
        ExpressionVariable variable;
        ComparisonOperator op = ComparisonOperator::Other;
        std::string value;
        std::string upperValue;
        std::int64_t integerValue = 0;
        // Compound: the first group, then the groups after "&" and "|" (the groups after
        // other connectors are ignored by the language and not kept)
        std::vector<Link> links;
    };

    int Compile(std::string_view text, int depth);
    int CompileCompound(std::string_view text, std::size_t pos, int depth);
    int CompileComparison(std::string_view text);
    int AddConstant(bool value);
    // compare(node): a comparison node's result for the track at hand.
    template <typename Compare>
    bool Evaluate(int node, const Compare& compare) const;

    std::vector<Node> nodes_;
    int root_ = 0;
    mutable VariableValue variableScratch_;
    mutable std::string upperScratch_;
};

}  // namespace verdin
