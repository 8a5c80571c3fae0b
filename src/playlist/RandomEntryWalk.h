#pragma once
// Walks over the random entries of a playlist tree.
namespace verdin {

class Playlist;

// Whether the tree holds any random entry (depth first).
bool ContainsRandomEntry(const Playlist& playlist);
// Clears `picked` on every random entry of the tree, so that each picks anew.
void ResetRandomEntries(Playlist& playlist);

}  // namespace verdin
