#pragma once
// The entries of an M3U file, one per line, read the way the player always read them:
//
//   - a line ends at LF; one CR right before the LF is dropped;
//   - a line of no characters at all (a bare LF) ends the reading: what follows it is
//     not read (a lone CR line is merely an empty entry);
//   - an entry holds at most kM3uLineLength characters: a longer line is cut there and
//     its rest is read as the following entries;
//   - an entry ends at a NUL byte, as the C string it always was.
//
// An ".m3u8" file is the same in UTF-8, which is the player's text encoding on this
// system anyway; the one difference is that a byte-order mark at its start is skipped
// (in a plain ".m3u" those bytes are part of the first entry, as they always were).
#include <cstddef>
#include <istream>
#include <optional>
#include <string>

namespace verdin {

inline constexpr size_t kM3uLineLength = 256;

class M3uReader {
public:
    M3uReader(std::istream& in, bool utf8);

    // The next entry (possibly empty), or nothing when the reading has ended.
    std::optional<std::string> Next();

private:
    std::istream& in_;
    std::string line_;   // the line being handed out in pieces
    size_t taken_ = 0;   // how much of line_ is handed out
    bool ended_ = false;
};

}  // namespace verdin
