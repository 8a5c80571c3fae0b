#pragma once
// The variables a random-entry expression may name, and their values for one track.
//
// Lookup order (names compared without regard to case): the frame names of the tag
// layer, then FILESIZE, DURATION, FILEPATH and FILEBODY. A frame is an integer variable
// when the tag layer marks it numeric (YEAR and TRACKNUM always are), else a string.
#include "tags/FrameId.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace verdin {

class TrackRecord;

enum class VariableKind : std::uint8_t {
    Unknown,
    IntegerFrame,
    StringFrame,
    FileSize,  // bytes
    Duration,  // whole seconds
    FilePath,  // the directory part of the name
    FileBody,  // the name without directory and extension
};

struct ExpressionVariable {
    VariableKind kind = VariableKind::Unknown;
    FrameId frame = FrameId::NoFrame;  // for the two frame kinds
};

ExpressionVariable LookUpVariable(std::string_view name);

// At most this many characters of a string value take part in a comparison.
inline constexpr std::size_t kVariableTextLimit = 255;

// A variable's value: an integer variable has an empty text; a string variable has no
// integer of its own (0), which is what an empty string value compares as.
struct VariableValue {
    std::int64_t integer = 0;
    std::string text;
};

// Fills `out` (reusing its buffer). Nothing for an unknown variable.
void ReadVariable(const ExpressionVariable& variable, const TrackRecord& track, VariableValue& out);

}  // namespace verdin
