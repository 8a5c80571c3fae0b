#pragma once
// Fixtures for the playlist tests: track records made in memory (a name, tag frames and
// what an input module would have reported), tone files, and trees written as one line:
//   a          a track /m/a.mp3 (shown by its body)
//   ?expr      a random entry with the expression expr
//   P[ ... ]   a nested playlist /lists/P.vdp holding what stands between the brackets
// Tokens are separated by blanks: "a P[ b Q[ c ] ] ?x d".
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/TrackRecord.h"
#include "tags/FrameId.h"

#include "PcmFixtures.h"
#include "Process.h"

#include <cstdio>
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
    info.duration = spec.durationMs;
    info.fileSize = spec.fileSize;
    std::strncpy(info.suggestedTitle, spec.suggestedTitle.c_str(), sizeof info.suggestedTitle - 1);
    track->SetInfo(info);
    return track;
}

// 16-bit stereo at 44.1 kHz.
inline void WriteToneWav(const std::string& path, int milliseconds) {
    WriteWav(path, 2, 44100, 16, Bytes16(Sine16(44100 * milliseconds / 1000, 2, 44100, {440.0, 660.0})));
}

// An MP3 made by lame from a tone, with lame's options ("--tt", "Title"); throws when lame fails.
inline void EncodeMp3(const std::string& path, int milliseconds, std::vector<std::string> lameOptions) {
    WriteToneWav(path + ".wav", milliseconds);
    lameOptions.insert(lameOptions.begin(), {"lame", "--quiet", "--noreplaygain"});
    lameOptions.insert(lameOptions.end(), {path + ".wav", path});
    const CommandResult result = RunCommand(lameOptions);
    std::remove((path + ".wav").c_str());
    if (result.exitCode != 0) throw std::runtime_error("lame failed for " + path + ": " + result.output);
}

inline std::string Label(const PlaylistItem& item) {
    return item.Kind() == ItemKind::kRandomEntry ? "?" + static_cast<const RandomEntry&>(item).Expression() : item.Body();
}

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
        } else if (token.front() == '?') {
            open.back()->AppendItem(std::make_unique<RandomEntry>(token.substr(1)));
        } else {
            open.back()->AppendItem(std::make_unique<TrackItem>("/m/" + token + ".mp3"));
        }
        if (open.empty()) throw std::invalid_argument("unbalanced ] in " + std::string(text));
    }
    if (open.size() != 1) throw std::invalid_argument("unclosed [ in " + std::string(text));
    const auto clear = [](auto& self, Playlist& playlist) -> void {
        playlist.SetModified(false);
        for (size_t i = 0; i < playlist.ItemCount(); ++i)
            if (playlist.ItemAt(i)->Kind() == ItemKind::kPlaylist) self(self, static_cast<Playlist&>(*playlist.ItemAt(i)));
    };
    clear(clear, *main);
    return main;
}

// The playlist's items in the same notation.
inline std::string DescribeTree(const Playlist& playlist) {
    std::string out;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        out += (out.empty() ? "" : " ") + Label(item);
        if (item.Kind() == ItemKind::kPlaylist) {
            const std::string inner = DescribeTree(static_cast<const Playlist&>(item));
            out += inner.empty() ? "[ ]" : "[ " + inner + " ]";
        }
    }
    return out;
}

// The labels of the rows in row order, found through ItemAtRow.
inline std::vector<std::string> RowLabels(const Playlist& main) {
    std::vector<std::string> labels;
    for (int row = 0; row < main.RowCount(); ++row) labels.push_back(main.ItemAtRow(row) ? Label(*main.ItemAtRow(row).item) : "-");
    return labels;
}

// The row of the first item with that label, counted by walking the items themselves
// (not the row caches); -1 when there is none.
inline int RowOfLabel(const Playlist& playlist, std::string_view label, int* row = nullptr) {
    int counted = 0;
    if (!row) row = &counted;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        if (Label(item) == label) return *row;
        ++*row;
        if (item.Kind() == ItemKind::kPlaylist && RowOfLabel(static_cast<const Playlist&>(item), label, row) >= 0) return *row;
    }
    return -1;
}

}  // namespace verdin::test
