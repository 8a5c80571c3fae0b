// Arbitrary text as a random-entry expression, against a few fixed tracks and one whose
// frames come from the input (after a 0xFF byte: LEADARTIST, CONTENTTYPE and YEAR,
// separated by further 0xFF bytes). Nothing may crash, hang or read out of bounds; an
// answer must not change when asked again (the scratch buffers are reused), nor when
// whatever follows a NUL is left out (an expression is a C text), nor when the values
// come from a sample space's columns.
#include "playlist/TrackRecord.h"
#include "playlist/random/CompiledExpression.h"

#include <cstdint>
#include <cstdlib>
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto fixed = [] {
        std::vector<std::unique_ptr<TrackRecord>> t;
        t.push_back(Track("/music/Jazz/Take Five.mp3",
                          {{FrameId::LeadArtist, "Dave Brubeck"}, {FrameId::ContentType, "Acid Jazz"}, {FrameId::Year, "1959"},
                           {FrameId::TrackNum, "3/12"}, {FrameId::Composer, "Paul Desmond"}},
                          299'900, 4'800'000));
        t.push_back(Track("/music/Blues/Mannish Boy.mp3", {{FrameId::ContentType, "(0)"}, {FrameId::Year, "1977"}}, 300'000, 7'000'000));
        t.push_back(Track("noise", {}, 0, 0));
        return t;
    }();
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view text = input.substr(0, input.find('\xFF'));
    std::vector<const TrackRecord*> tracks;
    for (const auto& track : fixed) tracks.push_back(track.get());
    std::unique_ptr<TrackRecord> fromInput;
    if (text.size() < input.size()) {
        std::vector<std::pair<FrameId, std::string>> frames;
        std::string_view rest = input.substr(text.size() + 1);
        for (FrameId id : {FrameId::LeadArtist, FrameId::ContentType, FrameId::Year}) {
            frames.emplace_back(id, std::string(rest.substr(0, rest.find('\xFF'))));
            if (rest.find('\xFF') == std::string_view::npos) break;
            rest.remove_prefix(rest.find('\xFF') + 1);
        }
        fromInput = Track("/fuzz/dir/body.ext", frames, static_cast<std::uint32_t>(size) * 997u, static_cast<std::uint32_t>(size));
        tracks.push_back(fromInput.get());
    }
    const CompiledExpression compiled(text);
    const CompiledExpression untilNul(text.substr(0, text.find('\0')));
    VariableColumns columns;  // a sample space's kept values must give the same answers
    for (std::size_t row = 0; row < tracks.size(); ++row) {
        const TrackRecord& track = *tracks[row];
        const bool answer = compiled.Matches(track);
        if (compiled.Matches(track) != answer || untilNul.Matches(track) != answer) std::abort();
        if (compiled.Matches(track, row, tracks.size(), columns) != answer) std::abort();
    }
    return 0;
}
