#include "PlayOrder.h"

#include "playlist/Playlist.h"
#include "playlist/ProcessRandom.h"
#include "playlist/RandomEntryWalk.h"

#include <algorithm>

namespace verdin {

int NextPlayableRow(const Playlist& main, int row) {
    const int count = main.RowCount();
    for (row = std::max(row, 0); row < count; ++row)
        if (IsPlayableRow(main, row)) return row;
    return -1;
}

int PreviousPlayableRow(const Playlist& main, int row) {
    for (row = std::min(row, main.RowCount() - 1); row >= 0; --row)
        if (IsPlayableRow(main, row)) return row;
    return -1;
}

void PlayOrder::Rebuild(const Playlist& main) {
    rows_.clear();
    cursor_ = 0;
    currentGone_ = false;
    const int count = main.RowCount();
    for (int row = 0; row < count; ++row) {
        if (!IsPlayableRow(main, row)) continue;
        if (rows_.empty()) {
            rows_.push_back(row);
        } else {
            const size_t k = NextProcessRandom() % rows_.size();
            rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(k), row);
        }
    }
}

void PlayOrder::SetCursorToRow(int row) {
    const auto it = std::find(rows_.begin(), rows_.end(), row);
    if (it == rows_.end()) return;
    cursor_ = static_cast<size_t>(it - rows_.begin());
    currentGone_ = false;
}

PlayOrder::Move PlayOrder::MoveOn(Playlist& main, int current, bool shuffle, bool loop) {
    Move move;
    if (shuffle) {
        if (NextPosition() < rows_.size()) {
            cursor_ = NextPosition();
            currentGone_ = false;
            move.row = rows_[cursor_];
            move.keepPlaying = true;
            return move;
        }
        Rebuild(main);
        ResetRandomEntries(main);
        move.row = First();
        move.keepPlaying = loop && move.row >= 0;
        move.wrapped = true;
        return move;
    }
    const int next = NextPlayableRow(main, current + 1);
    if (next >= 0) {
        move.row = next;
        move.keepPlaying = true;
        return move;
    }
    ResetRandomEntries(main);
    move.row = main.RowCount() > 0 ? 0 : -1;
    const int first = NextPlayableRow(main, 0);
    if (loop && first >= 0) move.row = first;
    move.keepPlaying = loop && first >= 0;
    move.wrapped = true;
    return move;
}

int PlayOrder::Following(const Playlist& main, int current, bool shuffle, bool loop) const {
    if (shuffle) {
        if (NextPosition() < rows_.size()) return rows_[NextPosition()];
        // The order will be rebuilt; the row that follows is not known yet.
        return -1;
    }
    const int next = NextPlayableRow(main, current + 1);
    if (next >= 0) return next;
    return loop ? NextPlayableRow(main, 0) : -1;
}

int PlayOrder::Previous(const Playlist& main, int current, bool shuffle, bool loop) {
    if (shuffle) {
        if (cursor_ > 0 && cursor_ <= rows_.size()) {
            currentGone_ = false;
            return rows_[--cursor_];
        }
        if (loop && !rows_.empty()) {
            currentGone_ = false;
            cursor_ = rows_.size() - 1;
            return rows_[cursor_];
        }
        return current;
    }
    const int previous = PreviousPlayableRow(main, current - 1);
    if (previous >= 0) return previous;
    if (loop) {
        const int last = PreviousPlayableRow(main, main.RowCount() - 1);
        if (last >= 0) return last;
    }
    return current;
}

void PlayOrder::RowsRemoved(int first, int count) {
    if (count <= 0) return;
    size_t kept = 0;
    size_t cursor = cursor_;
    for (size_t i = 0; i < rows_.size(); ++i) {
        const int row = rows_[i];
        if (row >= first && row < first + count) {
            // Elements before the cursor leave: it moves back with its row. The current
            // element leaves: the cursor stays, naming the one that followed.
            if (i < cursor_) --cursor;
            else if (i == cursor_) currentGone_ = true;
            continue;
        }
        rows_[kept++] = row >= first + count ? row - count : row;
    }
    rows_.resize(kept);
    cursor_ = std::min(cursor, rows_.size());
}

void PlayOrder::RowsInserted(int first, int count) {
    for (int& row : rows_)
        if (row >= first) row += count;
}

}  // namespace verdin
