#include "playlist/random/Comparison.h"

#include "base/Text.h"

#include <array>

namespace verdin {
namespace {

struct OperatorSpelling {
    std::string_view text;
    ComparisonOperator op;
};

constexpr std::array<OperatorSpelling, 8> kOperators{{
    {"=", ComparisonOperator::Equal},
    {"!=", ComparisonOperator::NotEqual},
    {"<", ComparisonOperator::Less},
    {">", ComparisonOperator::Greater},
    {"<=", ComparisonOperator::LessOrEqual},
    {">=", ComparisonOperator::GreaterOrEqual},
    {"~", ComparisonOperator::Contains},
    {"!~", ComparisonOperator::NotContains},
}};

void UpperInto(std::string_view text, std::string& out) {
    out.resize(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = AsciiUpper(text[i]);
}

}  // namespace

ComparisonOperator ParseComparisonOperator(std::string_view op) {
    for (const OperatorSpelling& spelling : kOperators)
        if (spelling.text == op) return spelling.op;
    return ComparisonOperator::Other;
}

bool CompareText(ComparisonOperator op, std::string_view text, std::string_view value,
                 std::string_view upperValue, std::string& upperScratch) {
    switch (op) {
        case ComparisonOperator::Equal:
            return EqualsIgnoreCase(text, value);
        case ComparisonOperator::NotEqual:
            return !EqualsIgnoreCase(text, value);
        case ComparisonOperator::Contains:
        case ComparisonOperator::NotContains: {
            UpperInto(text, upperScratch);
            const bool found = upperScratch.find(upperValue) != std::string::npos;
            return op == ComparisonOperator::Contains ? found : !found;
        }
        default:
            return false;
    }
}

bool CompareUpperText(ComparisonOperator op, std::string_view upperText, std::string_view upperValue) {
    switch (op) {
        case ComparisonOperator::Equal: return upperText == upperValue;
        case ComparisonOperator::NotEqual: return upperText != upperValue;
        case ComparisonOperator::Contains: return upperText.find(upperValue) != std::string_view::npos;
        case ComparisonOperator::NotContains: return upperText.find(upperValue) == std::string_view::npos;
        default: return false;
    }
}

bool CompareInteger(ComparisonOperator op, std::int64_t variable, std::int64_t value) {
    switch (op) {
        case ComparisonOperator::Equal: return variable == value;
        case ComparisonOperator::NotEqual: return variable != value;
        case ComparisonOperator::Less: return variable < value;
        case ComparisonOperator::Greater: return variable > value;
        case ComparisonOperator::LessOrEqual: return variable <= value;
        case ComparisonOperator::GreaterOrEqual: return variable >= value;
        default: return false;
    }
}

}  // namespace verdin
