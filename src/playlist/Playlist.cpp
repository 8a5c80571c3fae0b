#include "Playlist.h"

#include <algorithm>
#include <utility>

namespace verdin {

Playlist::Playlist(std::string_view fileName) : name_(SplitTrackName(fileName)) {}

Playlist::~Playlist() = default;

uint32_t Playlist::Duration() const {
    uint32_t sum = 0;
    for (const auto& item : items_) sum += item->Duration();
    return sum;
}

uint32_t Playlist::FileSize() const {
    uint32_t sum = 0;
    for (const auto& item : items_) sum += item->FileSize();
    return sum;
}

void Playlist::Changed() {
    modified_ = true;
    for (const Playlist* p = this; p; p = p->parent_) p->rowsValid_ = false;
}

void Playlist::Adopt(PlaylistItem& item) {
    if (item.Kind() == ItemKind::kPlaylist) static_cast<Playlist&>(item).parent_ = this;
}

void Playlist::AppendItem(std::unique_ptr<PlaylistItem> item) {
    if (!item) return;
    Adopt(*item);
    items_.push_back(std::move(item));
    Changed();
}

void Playlist::InsertItem(size_t index, std::unique_ptr<PlaylistItem> item) {
    if (!item) return;
    Adopt(*item);
    index = std::min(index, items_.size());
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
    Changed();
}

void Playlist::Disown(PlaylistItem& item) {
    if (item.Kind() == ItemKind::kPlaylist) static_cast<Playlist&>(item).parent_ = nullptr;
}

std::unique_ptr<PlaylistItem> Playlist::TakeItem(size_t index) {
    if (index >= items_.size()) return nullptr;
    std::unique_ptr<PlaylistItem> item = std::move(items_[index]);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    Disown(*item);
    Changed();
    return item;
}

void Playlist::InsertItems(size_t index, std::vector<std::unique_ptr<PlaylistItem>> items) {
    std::erase(items, nullptr);
    if (items.empty()) return;
    for (auto& item : items) Adopt(*item);
    index = std::min(index, items_.size());
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::make_move_iterator(items.begin()),
                  std::make_move_iterator(items.end()));
    Changed();
}

std::vector<std::unique_ptr<PlaylistItem>> Playlist::TakeItems(const std::vector<size_t>& increasingIndices) {
    std::vector<std::unique_ptr<PlaylistItem>> taken;
    auto next = increasingIndices.begin();
    size_t kept = 0;
    for (size_t i = 0; i < items_.size(); ++i) {
        while (next != increasingIndices.end() && *next < i) ++next;
        if (next != increasingIndices.end() && *next == i) {
            Disown(*items_[i]);
            taken.push_back(std::move(items_[i]));
        } else {
            items_[kept++] = std::move(items_[i]);
        }
    }
    items_.resize(kept);
    if (!taken.empty()) Changed();
    return taken;
}

std::vector<std::unique_ptr<PlaylistItem>> Playlist::TakeAllItems() {
    std::vector<std::unique_ptr<PlaylistItem>> taken = std::move(items_);
    items_.clear();
    for (auto& item : taken) Disown(*item);
    if (!taken.empty()) Changed();
    return taken;
}

void Playlist::RemoveItem(size_t index) { TakeItem(index); }

void Playlist::Clear() {
    if (items_.empty()) return;
    items_.clear();
    Changed();
}

int Playlist::IndexOf(const PlaylistItem* item) const {
    for (size_t i = 0; i < items_.size(); ++i)
        if (items_[i].get() == item) return static_cast<int>(i);
    return -1;
}

void Playlist::EnsureRows() const {
    if (rowsValid_) return;
    rowStart_.resize(items_.size() + 1);
    int row = 0;
    int playable = 0;
    for (size_t i = 0; i < items_.size(); ++i) {
        rowStart_[i] = row;
        ++row;
        if (items_[i]->Kind() == ItemKind::kPlaylist) {
            const auto& nested = static_cast<const Playlist&>(*items_[i]);
            row += nested.RowCount();
            playable += nested.PlayableCount();
        } else {
            ++playable;
        }
    }
    rowStart_[items_.size()] = row;
    playable_ = playable;
    rowsValid_ = true;
}

int Playlist::RowCount() const {
    EnsureRows();
    return rowStart_.back();
}

int Playlist::PlayableCount() const {
    EnsureRows();
    return playable_;
}

ConstRowRef Playlist::ItemAtRow(int row) const {
    const Playlist* p = this;
    for (;;) {
        p->EnsureRows();
        if (row < 0 || row >= p->rowStart_.back()) return {};
        // The last item whose first row is not after `row`.
        const auto it = std::upper_bound(p->rowStart_.begin(), p->rowStart_.end() - 1, row) - 1;
        const auto index = static_cast<size_t>(it - p->rowStart_.begin());
        const int offset = row - *it;
        const PlaylistItem* item = p->items_[index].get();
        if (offset == 0) return ConstRowRef{item, p, index};
        p = static_cast<const Playlist*>(item);
        row = offset - 1;
    }
}

RowRef Playlist::ItemAtRow(int row) {
    // The same walk; this tree is not const, so neither is what it holds.
    const ConstRowRef ref = std::as_const(*this).ItemAtRow(row);
    return RowRef{const_cast<PlaylistItem*>(ref.item), const_cast<Playlist*>(ref.holder), ref.index};
}

int Playlist::RowOf(const Playlist* holder, size_t index) const {
    if (!holder) return -1;
    holder->EnsureRows();
    if (index >= holder->items_.size()) return -1;
    int row = holder->rowStart_[index];
    // Climb to this playlist, adding the row of each playlist within its parent.
    for (const Playlist* p = holder; p != this; p = p->parent_) {
        const Playlist* parent = p->parent_;
        if (!parent) return -1;
        const int at = parent->IndexOf(p);
        parent->EnsureRows();
        row += parent->rowStart_[static_cast<size_t>(at)] + 1;
    }
    return row;
}

bool IsPlaylistRow(const Playlist& main, int row) {
    const ConstRowRef ref = main.ItemAtRow(row);
    return !ref || ref.item->Kind() == ItemKind::kPlaylist;
}

bool IsRandomEntryRow(const Playlist& main, int row) {
    const ConstRowRef ref = main.ItemAtRow(row);
    return ref && ref.item->Kind() == ItemKind::kRandomEntry;
}

bool IsPlayableRow(const Playlist& main, int row) {
    const ConstRowRef ref = main.ItemAtRow(row);
    return ref && ref.item->IsPlayable();
}

bool HasUnsavedPlaylists(const Playlist& main) {
    for (size_t i = 0; i < main.ItemCount(); ++i) {
        const PlaylistItem* item = main.ItemAt(i);
        if (item->Kind() != ItemKind::kPlaylist) continue;
        const auto& nested = static_cast<const Playlist&>(*item);
        if (nested.Modified() || HasUnsavedPlaylists(nested)) return true;
    }
    return false;
}

void InsertItemAtRow(Playlist& main, int row, std::unique_ptr<PlaylistItem> item) {
    if (const RowRef ref = main.ItemAtRow(row)) ref.holder->InsertItem(ref.index, std::move(item));
    else main.AppendItem(std::move(item));
}

}  // namespace verdin
