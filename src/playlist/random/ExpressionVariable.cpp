#include "playlist/random/ExpressionVariable.h"

#include "playlist/TrackRecord.h"
#include "base/Text.h"
#include "tags/FrameTable.h"
#include "tags/FrameValues.h"

#include <array>

namespace verdin {
namespace {

struct FileVariable {
    std::string_view name;
    VariableKind kind;
};

constexpr std::array<FileVariable, 4> kFileVariables{{
    {"FILESIZE", VariableKind::FileSize},
    {"DURATION", VariableKind::Duration},
    {"FILEPATH", VariableKind::FilePath},
    {"FILEBODY", VariableKind::FileBody},
}};

bool IsIntegerFrame(FrameId id) { return IsNumericFrame(id) || id == FrameId::Year || id == FrameId::TrackNum; }

void AssignCut(std::string& out, std::string_view text) {
    out.assign(text.substr(0, kVariableTextLimit));
}

}  // namespace

ExpressionVariable LookUpVariable(std::string_view name) {
    if (const auto frame = FindFrameNameIgnoreCase(name))
        return {IsIntegerFrame(*frame) ? VariableKind::IntegerFrame : VariableKind::StringFrame, *frame};
    for (const FileVariable& v : kFileVariables)
        if (EqualsIgnoreCase(v.name, name)) return {v.kind, FrameId::NoFrame};
    return {};
}

void ReadVariable(const ExpressionVariable& variable, const TrackRecord& track, VariableValue& out) {
    out.integer = 0;
    out.text.clear();
    switch (variable.kind) {
        case VariableKind::Unknown:
            break;
        case VariableKind::IntegerFrame:
            out.integer = FrameIntegerValue(track.Tag(), variable.frame);
            break;
        case VariableKind::StringFrame:
            FrameStringValue(track.Tag(), variable.frame, out.text);  // already cut to 255
            break;
        case VariableKind::FileSize:
            out.integer = track.FileSize();
            break;
        case VariableKind::Duration:
            out.integer = track.Duration() / 1000;
            break;
        case VariableKind::FilePath:
            AssignCut(out.text, track.Path());
            break;
        case VariableKind::FileBody:
            AssignCut(out.text, track.Body());
            break;
    }
}

}  // namespace verdin
