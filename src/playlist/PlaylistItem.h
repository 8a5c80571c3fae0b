#pragma once
// Everything a playlist holds is a playlist item, of one of three kinds. The kind numbers
// are fixed: every walker of the tree (count, search, save, view) uses them.
#include <cstdint>
#include <string>

namespace verdin {

enum class ItemKind : int { kPlaylist = 0, kTrack = 1, kRandomEntry = 2 };

class PlaylistItem {
public:
    virtual ~PlaylistItem() = default;
    // Milliseconds (a nested playlist: the sum over its direct items, which sum
    // recursively; 32-bit like everything the view shows).
    virtual uint32_t Duration() const = 0;
    // Bytes (a nested playlist: the sum over its direct items).
    virtual uint32_t FileSize() const = 0;
    virtual ItemKind Kind() const = 0;
    // The directory part (ending in "/"), the body and the extension (with its ".").
    virtual std::string Path() const = 0;
    virtual std::string Body() const = 0;
    virtual std::string Extension() const = 0;

    bool IsPlayable() const { return Kind() != ItemKind::kPlaylist; }
};

}  // namespace verdin
