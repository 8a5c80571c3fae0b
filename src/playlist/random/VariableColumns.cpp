#include "playlist/random/VariableColumns.h"

#include "base/Text.h"
#include "playlist/TrackRecord.h"

namespace verdin {

VariableColumns::Column& VariableColumns::ColumnFor(const ExpressionVariable& variable, std::size_t rows) {
    for (Column& column : columns_)
        if (column.variable.kind == variable.kind && column.variable.frame == variable.frame) return column;
    Column& column = columns_.emplace_back();
    column.variable = variable;
    column.values.resize(rows);
    column.revisions.resize(rows);
    column.filled.resize(rows);
    return column;
}

const ColumnValue& VariableColumns::Value(const ExpressionVariable& variable, std::size_t row, std::size_t rows,
                                          const TrackRecord& track) {
    Column& column = ColumnFor(variable, rows);
    ColumnValue& value = column.values[row];
    if (column.filled[row] && column.revisions[row] == track.Revision()) return value;
    ReadVariable(variable, track, scratch_);
    value.integer = scratch_.integer;
    value.upperText = ToUpper(scratch_.text);
    column.revisions[row] = track.Revision();
    column.filled[row] = true;
    return value;
}

}  // namespace verdin
