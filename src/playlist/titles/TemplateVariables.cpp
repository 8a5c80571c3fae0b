#include "playlist/titles/TemplateVariables.h"

#include "tags/FrameTable.h"

#include <array>
#include <string>

namespace verdin {
namespace {

constexpr std::array<TemplateVariable, 13> kWindowTitleVariables{{
    {"%sugtitle%", "Title suggested by the input plug-in", ""},
    {"%title%", "Track title", ""},
    {"%num%", "Track number", ""},
    {"%path%", "File path", kTrackVariablesGroup},
    {"%body%", "File body", kTrackVariablesGroup},
    {"%ext%", "File extension", kTrackVariablesGroup},
    {"%dur%", "Duration", kTrackVariablesGroup},
    {"%ppath%", "File path", kPlaylistVariablesGroup},
    {"%pbody%", "File body", kPlaylistVariablesGroup},
    {"%pext%", "File extension", kPlaylistVariablesGroup},
    {"%pdur%", "Duration", kPlaylistVariablesGroup},
    {"%status%", "Player status", ""},
    {"%%", "%", ""},
}};

constexpr std::array<TemplateVariable, 4> kTimeVariables{{
    {"%time%", "Playing time", kTrackVariablesGroup},
    {"%timel%", "Playing time left", kTrackVariablesGroup},
    {"%ptime%", "Playing time", kPlaylistVariablesGroup},
    {"%ptimel%", "Playing time left", kPlaylistVariablesGroup},
}};

constexpr std::array<TemplateVariable, 4> kTrackTitleVariables{{
    {"%sugtitle%", "Title suggested by the input plug-in", ""},
    {"%path%", "File path", ""},
    {"%body%", "File body", ""},
    {"%ext%", "File extension", ""},
}};

// "%NAME%" for every frame, kept for the life of the process (the menus refer to them).
const std::array<std::string, kFrameCount>& FrameReferences() {
    static const auto references = [] {
        std::array<std::string, kFrameCount> out;
        for (const FrameInfo& frame : FrameTable()) out[FrameIndex(frame.id)] = "%" + std::string(frame.name) + "%";
        return out;
    }();
    return references;
}

}  // namespace

std::vector<TemplateVariable> TrackTitleVariables() {
    std::vector<TemplateVariable> out(kTrackTitleVariables.begin(), kTrackTitleVariables.end());
    for (const FrameInfo& frame : FrameTable()) {
        if (frame.id == FrameId::NoFrame) continue;  // the table's placeholder, not a frame
        out.push_back({FrameReferences()[FrameIndex(frame.id)], frame.description, kFrameReferencesGroup});
    }
    return out;
}

std::vector<TemplateVariable> WindowTitleVariables() {
    return {kWindowTitleVariables.begin(), kWindowTitleVariables.end()};
}

std::vector<TemplateVariable> StatusStringVariables() {
    std::vector<TemplateVariable> out = WindowTitleVariables();
    out.insert(out.end(), kTimeVariables.begin(), kTimeVariables.end());
    return out;
}

}  // namespace verdin
