#pragma once
// Comparing a variable's value with the VALUE of a comparison.
//
// A non-empty string value makes it a string comparison: "=" and "!=" ignore case, "~"
// and "!~" test containment after turning both texts to upper case. Otherwise it is an
// integer comparison of the variable's integer (0 for an empty string) against VALUE's
// decimal conversion, with "=", "!=", "<", ">", "<=" and ">=". Any other operator, in
// either kind, makes the comparison false.
#include <cstdint>
#include <string>
#include <string_view>

namespace verdin {

enum class ComparisonOperator : std::uint8_t {
    Other,  // anything else, including no operator at all
    Equal,
    NotEqual,
    Less,
    Greater,
    LessOrEqual,
    GreaterOrEqual,
    Contains,
    NotContains,
};

ComparisonOperator ParseComparisonOperator(std::string_view op);

// String comparison. upperValue is VALUE turned to upper case (for "~" and "!~");
// upperScratch is a buffer the call may reuse for the variable's upper-cased text.
bool CompareText(ComparisonOperator op, std::string_view text, std::string_view value,
                 std::string_view upperValue, std::string& upperScratch);

// The same string comparison with the variable's text already turned to upper case, as a
// sample space keeps it: equality ignoring case is equality of the upper-cased texts.
bool CompareUpperText(ComparisonOperator op, std::string_view upperText, std::string_view upperValue);

// Integer comparison (signed).
bool CompareInteger(ComparisonOperator op, std::int64_t variable, std::int64_t value);

}  // namespace verdin
