#pragma once
// The filters of the file dialogs. The open dialogs' list is built on each use from the
// loaded input modules:
//   1. "All supported files": every module's patterns, then the playlist patterns;
//   2. "Playlist files (*.M3U;*.PLS;*.VDP)";
//   3. one entry per module file type, in loading order: "<description> (<patterns>)";
//   4. "All files (*.*)".
// The save dialog offers the three playlist formats, in format-number order.
//
// Qt's dialogs read the patterns from the last pair of parentheses of each entry and show
// the text before them when told to hide the details; QtFilter() writes an entry so that
// the visible text is exactly the display text and the patterns still match.
#include "engine/input/InputFileTypes.h"

#include <string>
#include <vector>

namespace verdin {

struct DialogFilter {
    std::string display;   // what the user reads
    std::string patterns;  // ";"-separated wildcards
    bool operator==(const DialogFilter&) const = default;
};

std::vector<DialogFilter> OpenFileFilters(const std::vector<FileTypeFilter>& moduleFilters);
std::vector<DialogFilter> SavePlaylistFilters();

// "<display> (<patterns separated by blanks>)"; "*.*" becomes "*", since on Linux a name
// need not have a dot to be a file.
std::string QtFilter(const DialogFilter& filter);

}  // namespace verdin
