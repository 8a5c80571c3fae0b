#pragma once
// The order in which rows are played, and moving on from one to the next.
//
// In row order (shuffle off) the next row is simply the following playable row. With
// shuffle on, a shuffled list of the playable rows is played through; it is built by
// inserting each playable row, in increasing order, at a position drawn from the process
// generator modulo the list's length, so every row after the first goes before an
// existing one and the first playable row always ends up last. That quirk is kept.
#include <cstddef>
#include <vector>

namespace verdin {

class Playlist;

class PlayOrder {
public:
    // Builds a new shuffled order of the playable rows and puts the cursor at its start.
    void Rebuild(const Playlist& main);
    const std::vector<int>& Rows() const { return rows_; }
    // The position of the current row in the order.
    size_t Cursor() const { return cursor_; }
    // Puts the cursor on a row (when it is in the order).
    void SetCursorToRow(int row);
    // The first row of the order, or -1 when it is empty.
    int First() const { return rows_.empty() ? -1 : rows_.front(); }

    // What happens when the track at `current` has ended.
    struct Move {
        int row = -1;             // the new current row
        bool keepPlaying = false; // start it, or stop with it current
        bool wrapped = false;     // a pass through the list ended (random entries were reset)
    };
    // Shuffle on: the next element of the order; when the order is used up it is rebuilt,
    // the random entries are reset, and its first element becomes current (playing on only
    // in loop mode). Shuffle off: the next playable row; past the last row the random
    // entries are reset and row 0 becomes current (playing on only in loop mode). Nested
    // playlists' own rows are passed over.
    Move MoveOn(Playlist& main, int current, bool shuffle, bool loop);
    // The row that would follow current, without moving anything (-1 when playback would
    // stop there): for preparing the next track in advance.
    int Following(const Playlist& main, int current, bool shuffle, bool loop) const;
    // The row before current for the "previous track" command: the previous element of
    // the shuffled order, or the previous playable row; at the start, the last one in
    // loop mode, else current stays.
    int Previous(const Playlist& main, int current, bool shuffle, bool loop);

    // Rows first..first+count-1 were deleted: they leave the order and later rows move up.
    // When the current row itself goes, the row that followed it in the order comes next.
    void RowsRemoved(int first, int count);
    // count rows were inserted at row first: later rows move down (the new rows join the
    // order when it is next rebuilt).
    void RowsInserted(int first, int count);

private:
    // The position after which the next row is taken, honouring a removed current row.
    size_t NextPosition() const { return currentGone_ ? cursor_ : cursor_ + 1; }

    std::vector<int> rows_;
    size_t cursor_ = 0;
    // The current row was deleted: cursor_ already names the row that followed it.
    bool currentGone_ = false;
};

// The first playable row at or after row, or -1.
int NextPlayableRow(const Playlist& main, int row);
// The last playable row at or before row, or -1.
int PreviousPlayableRow(const Playlist& main, int row);

}  // namespace verdin
