#pragma once
// The playlist view's model: one row per row of the main playlist tree, eight columns,
// the texts of PlaylistViewText.h, and the single line "Empty playlist" when the tree is
// empty.
//
// The model keeps the item of each row as the view last saw it. After a change of the
// tree, Resync() compares that with the tree and tells the view only what changed (rows
// inserted or removed in one place, or a reordering, with the selection following its
// items), so a list of 100,000 rows is never reset for a change of a few. Cell texts are
// read from the tree when the view asks and cached for the rows on screen.
//
// Texts change far from where rows change (every later row's number, the totals of the
// playlists above a row). Item views keep no texts of their own, so the rows a view shows
// are the only ones whose change must be announced: with a shown-rows function set, only
// those are; without one, every row is.
#include "playlist/view/PlaylistViewText.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <QList>
#include <QUrl>
#include <functional>
#include <utility>
#include <unordered_map>
#include <vector>

namespace verdin {

class Player;
class PlaylistItem;

class PlaylistModel final : public QAbstractItemModel {
    Q_OBJECT
public:
    // Rows dragged inside the view: their numbers, as text.
    static constexpr const char* kRowsMimeType = "application/x-verdin-playlist-rows";

    explicit PlaylistModel(const Player& player, QObject* parent = nullptr);

    // Icon 0 for a nested playlist's row, icon 1 for a track or random entry.
    void SetIcons(QIcon playlistIcon, QIcon trackIcon);
    // The first and last row the view shows now.
    using ShownRows = std::function<std::pair<int, int>()>;
    void SetShownRows(ShownRows shownRows) { shownRows_ = std::move(shownRows); }

    // The tree changed: rows added, removed, moved or their texts changed.
    void Resync();
    // Texts changed without rows coming or going (information arrived: the tracks' rows
    // and the totals of the playlists holding them).
    void TextsChanged();
    // The current row is shown in bold; call when it may have moved.
    void CurrentRowMoved();

    // Whether the model shows the "Empty playlist" line.
    bool ShowsEmptyLine() const { return rows_.size() == 1 && rows_.front() == nullptr; }
    int PlaylistRowCount() const { return ShowsEmptyLine() ? 0 : static_cast<int>(rows_.size()); }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

signals:
    // Rows dragged inside the view were dropped before beforeRow (the row count: at the
    // end). The window moves them; the model learns of it by Resync().
    void MoveRequested(const std::vector<int>& rows, int beforeRow);

private:
    // The tree has already changed when Resync tells the view; until the view has heard
    // all of it, a row of the model is not yet the same row of the tree.
    int TreeRow(int row) const;
    const RowCells& CellsAt(int row) const;
    void ClearCache() const { cells_.clear(); }
    void AnnounceTexts();

    const Player& player_;
    QIcon icons_[2];
    ShownRows shownRows_;
    std::vector<const PlaylistItem*> rows_;  // as the view knows them; never dereferenced
    int boldRow_ = -1;
    // While Resync reports a change: model rows in [goneFrom_, goneTo_) have left the tree,
    // rows from goneTo_ on are `shift_` rows further down in it; moved_ maps the rows of a
    // reordered block (from goneFrom_) to their rows in the tree.
    int goneFrom_ = 0;
    int goneTo_ = 0;
    int shift_ = 0;
    std::vector<int> moved_;
    bool mapping_ = false;
    // Cells of recently shown rows; emptied whenever texts may have changed.
    mutable std::unordered_map<int, RowCells> cells_;
};

}  // namespace verdin
