#include "playlist/titles/FindRow.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "base/Text.h"

namespace verdin {
namespace {

class RowMatcher {
public:
    RowMatcher(std::string_view text, bool caseSensitive)
        : caseSensitive_(caseSensitive), text_(caseSensitive ? std::string(text) : ToUpper(text)) {}

    bool Contains(std::string_view candidate) const {
        if (caseSensitive_) return candidate.find(text_) != std::string_view::npos;
        return ToUpper(candidate).find(text_) != std::string::npos;
    }

    bool Matches(const PlaylistItem& item, const RowTitleFunction& titleOf) const {
        if (titleOf && Contains(titleOf(item))) return true;
        if (item.Kind() == ItemKind::kRandomEntry)
            return Contains(static_cast<const RandomEntry&>(item).Expression());
        return Contains(item.Body() + item.Extension());
    }

private:
    bool caseSensitive_;
    std::string text_;
};

}  // namespace

int FirstRowToSearch(int focusedRow, int rowCount) {
    return focusedRow < 0 || focusedRow + 1 >= rowCount ? 0 : focusedRow + 1;
}

int FindRow(const Playlist& main, int firstRow, std::string_view text, bool caseSensitive,
            const RowTitleFunction& titleOf) {
    const int rows = main.RowCount();
    if (rows == 0) return -1;
    if (firstRow < 0 || firstRow >= rows) firstRow = 0;
    const RowMatcher matcher(text, caseSensitive);
    for (int step = 0; step < rows; ++step) {
        const int row = (firstRow + step) % rows;
        const ConstRowRef ref = main.ItemAtRow(row);
        if (ref && matcher.Matches(*ref.item, titleOf)) return row;
    }
    return -1;
}

std::string CannotFindMessage(std::string_view text) {
    return "Cannot find the string \"" + std::string(text) + "\".";
}

}  // namespace verdin
