#include "playlist/titles/TrackTitle.h"

#include "playlist/TrackRecord.h"
#include "playlist/titles/TemplateExpansion.h"
#include "tags/FrameTable.h"
#include "tags/FrameValues.h"

#include <array>

namespace verdin {
namespace {

using TrackText = const std::string& (TrackRecord::*)() const;

struct TrackVariable {
    std::string_view name;
    TrackText text;
};

constexpr std::array<TrackVariable, 4> kTrackVariables{{
    {"sugtitle", &TrackRecord::SuggestedTitle},
    {"path", &TrackRecord::Path},
    {"body", &TrackRecord::Body},
    {"ext", &TrackRecord::Extension},
}};

}  // namespace

std::string ExpandTrackTitle(const TrackRecord& track, std::string_view trackTitleTemplate) {
    if (track.Tag().empty()) trackTitleTemplate = "%sugtitle%";
    std::string frameText;
    return ExpandReferences(trackTitleTemplate, {}, [&](std::string_view name, std::string& out) {
        for (const TrackVariable& variable : kTrackVariables) {
            if (variable.name == name) {
                out += (track.*variable.text)();
                return true;
            }
        }
        const auto frame = FindFrameName(name);
        if (!frame) return false;
        FrameStringValue(track.Tag(), *frame, frameText);
        out += frameText;
        return true;
    });
}

}  // namespace verdin
