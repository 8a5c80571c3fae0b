#pragma once
// Fixtures for the playlist tests: track records made in memory (a name, tag frames and
// what an input module would have reported), the bundled input plug-ins, and trees
// written as one line, "a P[ b Q[ c ] ] ?x d": a track /m/a.mp3 (shown by its body), a
// nested playlist /lists/P.vdp holding what stands between the brackets, a random entry.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/TrackRecord.h"
#include "tags/FrameId.h"

#include <cstring>
#include <sstream>
#include <stdexcept>

namespace verdin::test {

struct TrackSpec {
    std::string name;  // full name: "/music/Jazz/Take Five.mp3"
    std::vector<std::pair<FrameId, std::string>> frames;
    uint32_t durationMs = 0, fileSize = 0;
    std::string suggestedTitle;
};

inline std::unique_ptr<TrackRecord> MakeTrack(const TrackSpec& spec) {
    auto track = std::make_unique<TrackRecord>(spec.name);
    for (const auto& [id, text] : spec.frames) track->MutableTag().AddText(id, text);
    TrackInfo info = track->Info();
    info.duration = spec.durationMs, info.fileSize = spec.fileSize;
    std::strncpy(info.suggestedTitle, spec.suggestedTitle.c_str(), sizeof info.suggestedTitle - 1);
    track->SetInfo(info);
    return track;
}

// The input plug-ins the player ships, loaded once.
inline const InputModuleList& BundledModules() {
    static const InputModuleList* modules = [] { auto* list = new InputModuleList; return list->LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr), list; }();
    return *modules;
}

inline std::string Label(const PlaylistItem& item) { return item.Kind() == ItemKind::kRandomEntry ? "?" + static_cast<const RandomEntry&>(item).Expression() : item.Body(); }

// The tree described; no playlist in it has unsaved changes afterwards.
inline std::unique_ptr<Playlist> BuildTree(std::string_view text) {
    auto main = std::make_unique<Playlist>();
    std::vector<Playlist*> open{main.get()};
    std::istringstream tokens{std::string(text)};
    for (std::string token; tokens >> token;) {
        if (token == "]") {
            open.pop_back();
        } else if (token.back() == '[') {
            auto nested = std::make_unique<Playlist>("/lists/" + token.substr(0, token.size() - 1) + ".vdp");
            open.push_back(nested.get());
            open[open.size() - 2]->AppendItem(std::move(nested));
        } else {
            open.back()->AppendItem(token.front() == '?' ? std::unique_ptr<PlaylistItem>(std::make_unique<RandomEntry>(token.substr(1)))
                                                         : std::make_unique<TrackItem>("/m/" + token + ".mp3"));
        }
        if (open.empty()) throw std::invalid_argument("unbalanced ] in " + std::string(text));
    }
    if (open.size() != 1) throw std::invalid_argument("unclosed [ in " + std::string(text));
    for (int row = 0; row < main->RowCount(); ++row)
        if (main->ItemAtRow(row).item->Kind() == ItemKind::kPlaylist) static_cast<Playlist*>(main->ItemAtRow(row).item)->SetModified(false);
    main->SetModified(false);
    return main;
}

// The playlist's items in the same notation.
inline std::string DescribeTree(const Playlist& playlist) {
    std::string out;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        const std::string inner = item.Kind() == ItemKind::kPlaylist ? DescribeTree(static_cast<const Playlist&>(item)) + " ]" : "";
        out += (out.empty() ? "" : " ") + Label(item) + (inner.empty() ? "" : inner == " ]" ? "[ ]" : "[ " + inner);
    }
    return out;
}

// The labels of the rows in row order, found through ItemAtRow.
inline std::vector<std::string> RowLabels(const Playlist& main) {
    std::vector<std::string> labels;
    for (int row = 0; row < main.RowCount(); ++row) labels.push_back(main.ItemAtRow(row) ? Label(*main.ItemAtRow(row).item) : "-");
    return labels;
}

}  // namespace verdin::test
