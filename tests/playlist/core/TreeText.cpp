#include "TreeText.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"

#include <sstream>
#include <stdexcept>

namespace verdin::test {

namespace {

void ClearModified(Playlist& playlist) {
    playlist.SetModified(false);
    for (size_t i = 0; i < playlist.ItemCount(); ++i)
        if (playlist.ItemAt(i)->Kind() == ItemKind::kPlaylist) ClearModified(static_cast<Playlist&>(*playlist.ItemAt(i)));
}

// Walks the items themselves, counting rows as the definition says.
bool FindLabel(const Playlist& playlist, std::string_view label, int& row) {
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        if (Label(item) == label) return true;
        ++row;
        if (item.Kind() == ItemKind::kPlaylist && FindLabel(static_cast<const Playlist&>(item), label, row))
            return true;
    }
    return false;
}

}  // namespace

std::unique_ptr<Playlist> BuildTree(std::string_view text) {
    auto main = std::make_unique<Playlist>();
    std::vector<Playlist*> open{main.get()};
    std::istringstream tokens{std::string(text)};
    std::string token;
    while (tokens >> token) {
        if (token == "]") {
            if (open.size() < 2) throw std::invalid_argument("unbalanced ] in " + std::string(text));
            open.pop_back();
        } else if (token.back() == '[') {
            auto nested = std::make_unique<Playlist>("/lists/" + token.substr(0, token.size() - 1) + ".vdp");
            Playlist* p = nested.get();
            open.back()->AppendItem(std::move(nested));
            open.push_back(p);
        } else if (token.front() == '?') {
            open.back()->AppendItem(std::make_unique<RandomEntry>(token.substr(1)));
        } else {
            open.back()->AppendItem(std::make_unique<TrackItem>("/m/" + token + ".mp3"));
        }
    }
    if (open.size() != 1) throw std::invalid_argument("unclosed [ in " + std::string(text));
    ClearModified(*main);
    return main;
}

std::string Label(const PlaylistItem& item) {
    if (item.Kind() == ItemKind::kRandomEntry) return "?" + static_cast<const RandomEntry&>(item).Expression();
    return item.Body();
}

std::string DescribeTree(const Playlist& playlist) {
    std::string out;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        if (!out.empty()) out += ' ';
        out += Label(item);
        if (item.Kind() == ItemKind::kPlaylist) {
            const std::string inner = DescribeTree(static_cast<const Playlist&>(item));
            out += inner.empty() ? "[ ]" : "[ " + inner + " ]";
        }
    }
    return out;
}

std::vector<std::string> RowLabels(const Playlist& main) {
    std::vector<std::string> labels;
    for (int row = 0; row < main.RowCount(); ++row) {
        const RowRef ref = main.ItemAtRow(row);
        labels.push_back(ref ? Label(*ref.item) : "(none)");
    }
    return labels;
}

int RowOfLabel(const Playlist& main, std::string_view label) {
    int row = 0;
    return FindLabel(main, label, row) ? row : -1;
}

}  // namespace verdin::test
