#include "PlaylistViewText.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace verdin {

const std::array<const char*, kPlaylistColumns> kPlaylistColumnHeaders = {
    "Title", "No", "Duration", "Bitrate", "Sample rate", "Bit resolution", "File size", "ID3 Tag"};

namespace {

template <typename... Args>
std::string Format(const char* format, Args... args) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, args...);
    return buffer;
}

int PlayableIn(const PlaylistItem& item) {
    if (item.Kind() != ItemKind::kPlaylist) return 1;
    return static_cast<const Playlist&>(item).PlayableCount();
}

std::string TrackCountText(int tracks) {
    if (tracks == 0) return "no tracks";
    if (tracks == 1) return "one track";
    return Format("%d tracks", tracks);
}

}  // namespace

std::string FormatFileSize(uint32_t bytes) {
    if (bytes < 10485760u) return Format("%d KB", static_cast<int>(bytes >> 10));
    return Format("%d MB", static_cast<int>(bytes >> 20));
}

RowCells CellsOfItem(const PlaylistItem& item, int number, const TrackTitleFunction& titleOf) {
    RowCells cells;
    const std::string duration = FormatDuration(item.Duration() / 1000);
    const std::string size = FormatFileSize(item.FileSize());
    switch (item.Kind()) {
        case ItemKind::kPlaylist: {
            const auto& playlist = static_cast<const Playlist&>(item);
            cells[0] = playlist.Modified() ? playlist.Body() + " *" : playlist.Body();
            cells[2] = duration;
            cells[6] = size;
            break;
        }
        case ItemKind::kRandomEntry:
            cells[0] = item.Body() + ": " + static_cast<const RandomEntry&>(item).Expression();
            cells[1] = Format("%d.", number);
            cells[2] = duration;
            cells[6] = size;
            break;
        case ItemKind::kTrack: {
            const TrackRecord& track = static_cast<const TrackItem&>(item).Track();
            cells[0] = titleOf ? titleOf(track) : track.Body();
            cells[1] = Format("%d.", number);
            cells[2] = duration;
            cells[6] = size;
            if (track.InfoRetrieved()) {
                cells[3] = Format("%d kb/s", std::abs(track.Bitrate()) / 1000);
                cells[4] = Format("%d Hz", track.SampleRate());
                cells[5] = Format(track.Channels() == 2 ? "%d bit stereo" : "%d bit mono", track.BitsPerSample());
                const TagVersion v = track.GetTagVersion();
                cells[7] = v.version == 0 ? std::string("N/A") : Format("v%d.%d.%d", v.version, v.revision, v.subRevision);
            }
            break;
        }
    }
    return cells;
}

RowCells CellsOfRow(const Playlist& main, int row, const TrackTitleFunction& titleOf) {
    const ConstRowRef ref = main.ItemAtRow(row);
    return ref ? CellsOfItem(*ref.item, row + 1, titleOf) : RowCells{};
}

std::string ListSummary(const Playlist& main) {
    const int tracks = main.PlayableCount();
    if (tracks == 0) return "No tracks";
    const std::string total = FormatDuration(main.Duration() / 1000);
    if (tracks == 1) return "One track (" + total + ")";
    return Format("%d tracks", tracks) + " (" + total + ")";
}

std::string SelectionSummary(const Playlist& main, const std::vector<int>& selectedRows) {
    std::vector<int> rows = selectedRows;
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    int items = 0;
    int tracks = 0;
    uint32_t milliseconds = 0;
    std::vector<const Playlist*> chosen;
    for (int row : rows) {
        const ConstRowRef ref = main.ItemAtRow(row);
        if (!ref) continue;
        bool inside = false;
        for (const Playlist* p = ref.holder; p && !inside; p = p->Parent())
            inside = std::find(chosen.begin(), chosen.end(), p) != chosen.end();
        if (inside) continue;
        ++items;
        tracks += PlayableIn(*ref.item);
        milliseconds += ref.item->Duration();
        if (ref.item->Kind() == ItemKind::kPlaylist) chosen.push_back(static_cast<const Playlist*>(ref.item));
    }
    if (items == 0) return "No items selected";
    const std::string head = items == 1 ? std::string("One distinct item") : Format("%d distinct items", items);
    return head + " (" + TrackCountText(tracks) + ") selected (" + FormatDuration(milliseconds / 1000) + ")";
}

}  // namespace verdin
