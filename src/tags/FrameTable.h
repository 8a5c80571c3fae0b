#pragma once
// The frame-name table: for each frame identifier its upper-case name, the description
// shown beside it in the variable menus, and whether its value is an integer.
//
// Integer frames: YEAR and TRACKNUM always; besides them PARTINSET (disc "1/2" compares
// as 1, like TRACKNUM), PLAYCOUNTER (the play count) and POPULARIMETER (the rating,
// 0..255). Every other frame is a text: DATE and TIME are stored as "DDMM" and "HHMM"
// texts whose integer order would not be the calendar's, so they compare as strings.
#include "tags/FrameId.h"

#include <array>
#include <optional>
#include <string_view>

namespace verdin {

struct FrameInfo {
    FrameId id;
    std::string_view name;         // "LEADARTIST"
    std::string_view description;  // "Lead performer(s)/Soloist(s)"
    bool numeric;                  // compared as an integer in expressions
};

// All frames in identifier order (position = identifier), NOFRAME first.
const std::array<FrameInfo, kFrameCount>& FrameTable();

const FrameInfo& FrameInfoOf(FrameId id);
inline std::string_view FrameName(FrameId id) { return FrameInfoOf(id).name; }
inline std::string_view FrameDescription(FrameId id) { return FrameInfoOf(id).description; }
inline bool IsNumericFrame(FrameId id) { return FrameInfoOf(id).numeric; }

// Title templates: the frame whose name is exactly this text (case-sensitive).
std::optional<FrameId> FindFrameName(std::string_view name);
inline bool IsFrameName(std::string_view name) { return FindFrameName(name).has_value(); }

// Random-entry expressions: the frame whose name equals this text ignoring case.
std::optional<FrameId> FindFrameNameIgnoreCase(std::string_view name);

}  // namespace verdin
