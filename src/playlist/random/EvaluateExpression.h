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
// This evaluator reads the text anew for every track. A pick over a whole sample space
// uses CompiledExpression instead, which reads it once and answers identically.
#include <string_view>

namespace verdin {

class TrackRecord;

bool EvaluateExpression(const TrackRecord& track, std::string_view text);

}  // namespace verdin
