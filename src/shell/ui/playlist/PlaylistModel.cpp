#include "PlaylistModel.h"

#include "playlist/Playlist.h"
#include "shell/Player.h"
#include "shell/ui/playlist/RowSnapshot.h"

#include <QFont>
#include <QMimeData>
#include <algorithm>
#include <unordered_map>

namespace verdin {

namespace {

// Bounded, so a long scroll through the list does not keep every row's texts.
constexpr size_t kCachedRows = 512;

std::vector<const PlaylistItem*> RowsOrEmptyLine(const Playlist& main) {
    std::vector<const PlaylistItem*> rows = RowItems(main);
    if (rows.empty()) rows.push_back(nullptr);
    return rows;
}

bool RightAligned(int column) {
    // "No", "Duration", "Bitrate", "Sample rate", "File size": numbers line up right.
    return column == 1 || column == 2 || column == 3 || column == 4 || column == 6;
}

}  // namespace

PlaylistModel::PlaylistModel(const Player& player, QObject* parent)
    : QAbstractItemModel(parent), player_(player), rows_(RowsOrEmptyLine(player.List())) {}

void PlaylistModel::SetIcons(QIcon playlistIcon, QIcon trackIcon) {
    icons_[0] = std::move(playlistIcon);
    icons_[1] = std::move(trackIcon);
}

void PlaylistModel::Resync() {
    std::vector<const PlaylistItem*> now = RowsOrEmptyLine(player_.List());
    const RowChange change = CompareRows(rows_, now);
    ClearCache();
    const bool emptyLineBefore = ShowsEmptyLine();
    switch (change.kind) {
        case RowChange::Kind::kSame: break;
        case RowChange::Kind::kReordered: {
            std::unordered_map<const PlaylistItem*, int> newRow;
            for (int row = change.first; row < change.first + change.inserted; ++row)
                newRow[now[static_cast<size_t>(row)]] = row;
            mapping_ = true;
            goneFrom_ = goneTo_ = change.first;
            shift_ = 0;
            moved_.clear();
            for (int row = change.first; row < change.first + change.removed; ++row)
                moved_.push_back(newRow.at(rows_[static_cast<size_t>(row)]));
            emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
            const QModelIndexList persistent = persistentIndexList();
            QModelIndexList movedIndexes;
            movedIndexes.reserve(persistent.size());
            for (const QModelIndex& index : persistent) movedIndexes.push_back(createIndex(TreeRow(index.row()), index.column()));
            rows_ = std::move(now);
            mapping_ = false;
            moved_.clear();
            changePersistentIndexList(persistent, movedIndexes);
            emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
            break;
        }
        case RowChange::Kind::kReplaced: {
            mapping_ = true;
            if (change.removed > 0) {
                goneFrom_ = change.first;
                goneTo_ = change.first + change.removed;
                shift_ = change.inserted - change.removed;
                beginRemoveRows({}, change.first, change.first + change.removed - 1);
                rows_.erase(rows_.begin() + change.first, rows_.begin() + change.first + change.removed);
                goneFrom_ = goneTo_ = change.first;
                shift_ = change.inserted;
                ClearCache();
                endRemoveRows();
            }
            if (change.inserted > 0) {
                goneFrom_ = goneTo_ = change.first;
                shift_ = change.inserted;
                beginInsertRows({}, change.first, change.first + change.inserted - 1);
                rows_ = std::move(now);
                mapping_ = false;
                ClearCache();
                endInsertRows();
            }
            mapping_ = false;
            break;
        }
    }
    // Numbers, totals and "modified" marks of other rows may have changed with the tree.
    AnnounceTexts();
    if (emptyLineBefore != ShowsEmptyLine()) boldRow_ = -1;
    CurrentRowMoved();
}

int PlaylistModel::TreeRow(int row) const {
    if (!mapping_ || row < goneFrom_) return row;
    if (row - goneFrom_ < static_cast<int>(moved_.size())) return moved_[static_cast<size_t>(row - goneFrom_)];
    if (row < goneTo_) return -1;
    return row + shift_;
}

void PlaylistModel::TextsChanged() { AnnounceTexts(); }

void PlaylistModel::AnnounceTexts() {
    ClearCache();
    const int count = static_cast<int>(rows_.size());
    if (count == 0) return;
    auto [first, last] = shownRows_ ? shownRows_() : std::pair<int, int>{0, count - 1};
    first = std::clamp(first, 0, count - 1);
    last = std::clamp(last, first, count - 1);
    emit dataChanged(index(first, 0), index(last, kPlaylistColumns - 1));
}

void PlaylistModel::CurrentRowMoved() {
    const int current = ShowsEmptyLine() ? -1 : player_.CurrentRow();
    if (current == boldRow_) return;
    const int old = boldRow_;
    boldRow_ = current;
    for (int row : {old, current})
        if (row >= 0 && row < static_cast<int>(rows_.size()))
            emit dataChanged(index(row, 0), index(row, kPlaylistColumns - 1), {Qt::FontRole});
}

const RowCells& PlaylistModel::CellsAt(int row) const {
    static const RowCells kNone{};
    const int treeRow = TreeRow(row);
    if (treeRow < 0) return kNone;
    auto found = cells_.find(treeRow);
    if (found != cells_.end()) return found->second;
    if (cells_.size() >= kCachedRows) cells_.clear();
    return cells_.emplace(treeRow, player_.CellsOfRow(treeRow)).first->second;
}

QModelIndex PlaylistModel::index(int row, int column, const QModelIndex& parent) const {
    if (parent.isValid() || row < 0 || column < 0 || row >= rowCount() || column >= kPlaylistColumns) return {};
    return createIndex(row, column);
}

QModelIndex PlaylistModel::parent(const QModelIndex&) const { return {}; }

int PlaylistModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int PlaylistModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kPlaylistColumns; }

QVariant PlaylistModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const int row = index.row();
    const int column = index.column();
    if (ShowsEmptyLine()) {
        if (role == Qt::DisplayRole && column == 0) return QString::fromLatin1(kEmptyPlaylistText);
        return {};
    }
    switch (role) {
        case Qt::DisplayRole: return QString::fromStdString(CellsAt(row)[static_cast<size_t>(column)]);
        case Qt::DecorationRole: {
            if (column != 0) return {};
            // Looked up in the tree as it is now: the row's item as last seen may be gone.
            const ConstRowRef ref = player_.List().ItemAtRow(TreeRow(row));
            if (!ref) return {};
            return icons_[ref.item->Kind() == ItemKind::kPlaylist ? 0 : 1];
        }
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(Qt::Alignment((RightAligned(column) ? Qt::AlignRight : Qt::AlignLeft) |
                                                     Qt::AlignVCenter));
        case Qt::FontRole: {
            if (row != boldRow_) return {};
            QFont font;
            font.setBold(true);
            return font;
        }
        default: return {};
    }
}

QVariant PlaylistModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kPlaylistColumns)
        return {};
    return QString::fromLatin1(kPlaylistColumnHeaders[static_cast<size_t>(section)]);
}

Qt::ItemFlags PlaylistModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::ItemIsDropEnabled;
    if (ShowsEmptyLine()) return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList PlaylistModel::mimeTypes() const { return {QString::fromLatin1(kRowsMimeType)}; }

QMimeData* PlaylistModel::mimeData(const QModelIndexList& indexes) const {
    std::vector<int> rows;
    for (const QModelIndex& index : indexes)
        if (index.isValid() && index.column() == 0 && !ShowsEmptyLine()) rows.push_back(index.row());
    if (rows.empty()) return nullptr;
    QByteArray text;
    for (int row : rows) text += QByteArray::number(row) + ' ';
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(kRowsMimeType), text);
    return data;
}

Qt::DropActions PlaylistModel::supportedDragActions() const { return Qt::MoveAction; }

Qt::DropActions PlaylistModel::supportedDropActions() const { return Qt::MoveAction; }

bool PlaylistModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int, const QModelIndex&) const {
    return data && action == Qt::MoveAction && data->hasFormat(QString::fromLatin1(kRowsMimeType));
}

bool PlaylistModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                 const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) return false;
    std::vector<int> rows;
    for (const QByteArray& number : data->data(QString::fromLatin1(kRowsMimeType)).split(' ')) {
        bool ok = false;
        const int value = number.toInt(&ok);
        if (ok) rows.push_back(value);
    }
    // Onto a row: before it; between rows: at that row; below the last: at the end.
    int beforeRow = parent.isValid() ? parent.row() : row;
    if (beforeRow < 0 || ShowsEmptyLine()) beforeRow = PlaylistRowCount();
    emit MoveRequested(rows, beforeRow);
    // The move is done; nothing is left for the view to remove.
    return true;
}

}  // namespace verdin
