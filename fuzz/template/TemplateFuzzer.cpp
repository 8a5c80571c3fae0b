// Arbitrary templates and player state: the first byte picks the state (the current row,
// whether its track is loaded, the player status, the position), the rest is split at
// 0xFF bytes into the track title, window title and status string templates. Every
// expansion stays within its buffer. Nothing may crash or hang.
#include "playlist/titles/StatusLine.h"
#include "playlist/titles/TemplateExpansion.h"
#include "playlist/titles/TrackTitle.h"
#include "playlist/titles/WindowTitle.h"
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace verdin;

std::unique_ptr<TrackItem> Track(const char* name, const char* artist, const char* title, std::uint32_t durationMs) {
    auto track = std::make_unique<TrackRecord>(name);
    if (artist) track->MutableTag().AddText(FrameId::LeadArtist, artist);
    if (title) track->MutableTag().AddText(FrameId::Title, title);
    TrackInfo info = track->Info();
    info.duration = durationMs;
    std::snprintf(info.suggestedTitle, sizeof info.suggestedTitle, "%s", "100% suggested");
    track->SetInfo(info);
    return std::make_unique<TrackItem>(std::move(track));
}

void CheckLength(const std::string& text) {
    if (text.size() > kTemplateResultLimit) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Row 0 a track, row 1 a playlist holding row 2 (a track) and row 3 (a random entry), row 4 a track.
    static const auto main = [] {
        auto p = std::make_unique<Playlist>();
        p->AppendItem(Track("/m/a%b.mp3", "Ann %time%", "Alpha", 125'700));
        auto nested = std::make_unique<Playlist>("/lists/mix.m3u");
        nested->AppendItem(Track("/m/Beta.mp3", "Bob", "Beta", 3'599'500));
        nested->AppendItem(std::make_unique<RandomEntry>("(YEAR < 1970)"));
        p->AppendItem(std::move(nested));
        p->AppendItem(Track("/m/Delta.wav", nullptr, nullptr, 3'600'000));
        return p;
    }();
    if (size < 1) return 0;
    const std::uint8_t selector = data[0];
    std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
    std::string_view pieces[3];
    for (auto& piece : pieces) {
        piece = rest.substr(0, rest.find('\xFF'));
        rest.remove_prefix(std::min(rest.size(), piece.size() + 1));
    }
    const TitleTemplates templates{pieces[0], pieces[1], pieces[2]};
    const int row = selector % 7 - 1;  // -1..5: none, each row, one past the end
    const RowRef ref = main->ItemAtRow(row);
    const TrackRecord* track = (selector & 0x08) && ref && ref.item->Kind() == ItemKind::kTrack
                                   ? &static_cast<const TrackItem*>(ref.item)->Track() : nullptr;
    const TitleState state = MakeTitleState(*main, row, track, selector * 40'000u, static_cast<PlayerStatus>((selector >> 4) % 3), templates);
    if (track) CheckLength(ExpandTrackTitle(*track, templates.trackTitle));
    CheckLength(ExpandWindowTitle(state));
    const std::string statusTemplate = ExpandStatusTemplate(state);
    CheckLength(statusTemplate);
    CheckLength(ComposeStatusText(selector % 5, {(selector & 0x40) != 0, selector}, statusTemplate, state));
    CheckLength(ExpandStatusString(state));
    return 0;
}
