// Arbitrary text as a random-entry expression, against a few fixed tracks and one whose
// frames come from the input (after a 0xFF byte: LEADARTIST, CONTENTTYPE and YEAR,
// separated by further 0xFF bytes). The re-reading evaluator and the compiled form must
// agree on every track; neither may crash, hang or read out of bounds.
#include "playlist/TrackRecord.h"
#include "playlist/random/CompiledExpression.h"
#include "playlist/random/EvaluateExpression.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace verdin;

std::unique_ptr<TrackRecord> Track(const char* name, std::vector<std::pair<FrameId, std::string>> frames,
                                   std::uint32_t durationMs, std::uint32_t fileSize) {
    auto track = std::make_unique<TrackRecord>(name);
    for (const auto& [id, text] : frames) track->MutableTag().AddText(id, text);
    TrackInfo info = track->Info();
    info.duration = durationMs;
    info.fileSize = fileSize;
    track->SetInfo(info);
    return track;
}

const std::vector<std::unique_ptr<TrackRecord>>& FixedTracks() {
    static const auto tracks = [] {
        std::vector<std::unique_ptr<TrackRecord>> t;
        t.push_back(Track("/music/Jazz/Take Five.mp3",
                          {{FrameId::LeadArtist, "Dave Brubeck"},
                           {FrameId::ContentType, "Acid Jazz"},
                           {FrameId::Year, "1959"},
                           {FrameId::TrackNum, "3/12"},
                           {FrameId::Composer, "Paul Desmond"}},
                          299'900, 4'800'000));
        t.push_back(Track("/music/Blues/Mannish Boy.mp3", {{FrameId::ContentType, "(0)"}, {FrameId::Year, "1977"}},
                          300'000, 7'000'000));
        t.push_back(Track("noise", {}, 0, 0));
        return t;
    }();
    return tracks;
}

void Check(const TrackRecord& track, std::string_view text, const CompiledExpression& compiled) {
    if (EvaluateExpression(track, text) != compiled.Matches(track)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = input.find('\xFF');
    const std::string_view text = input.substr(0, split);

    const CompiledExpression compiled(text);
    for (const auto& track : FixedTracks()) Check(*track, text, compiled);

    if (split != std::string_view::npos) {
        std::vector<std::pair<FrameId, std::string>> frames;
        std::string_view rest = input.substr(split + 1);
        for (FrameId id : {FrameId::LeadArtist, FrameId::ContentType, FrameId::Year}) {
            const std::size_t end = rest.find('\xFF');
            frames.emplace_back(id, std::string(rest.substr(0, end)));
            if (end == std::string_view::npos) break;
            rest.remove_prefix(end + 1);
        }
        const auto track = Track("/fuzz/dir/body.ext", frames, static_cast<std::uint32_t>(size) * 997u,
                                 static_cast<std::uint32_t>(size));
        Check(*track, text, compiled);
    }
    return 0;
}
