#pragma once
// The values of the expression variables for every track of a sample space, read once and
// kept, so that a pick compares integers and upper-cased texts at hand instead of walking
// each track's tag (a pick looks at every track, with every variable its expression names).
//
// A column is made for a variable the first time an expression asks for it. A value is read
// again when its track's record changed since (TrackRecord::Revision). Clear() forgets every
// column, for a space that holds other tracks now.
//
// One thread at a time: the sample space's owner.
#include "playlist/random/ExpressionVariable.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace verdin {

class TrackRecord;

struct ColumnValue {
    std::int64_t integer = 0;
    std::string upperText;  // empty for an integer variable, or an empty string value
};

class VariableColumns {
public:
    // The variable's value for the track at row (of tracks that number `rows`).
    const ColumnValue& Value(const ExpressionVariable& variable, std::size_t row, std::size_t rows,
                             const TrackRecord& track);
    void Clear() { columns_.clear(); }

private:
    struct Column {
        ExpressionVariable variable;
        std::vector<ColumnValue> values;
        std::vector<std::uint32_t> revisions;
        std::vector<bool> filled;
    };
    Column& ColumnFor(const ExpressionVariable& variable, std::size_t rows);

    std::vector<Column> columns_;  // few: an expression names a handful of variables
    VariableValue scratch_;
};

}  // namespace verdin
