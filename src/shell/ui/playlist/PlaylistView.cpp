#include "PlaylistView.h"

#include "shell/ui/playlist/PlaylistModel.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMimeData>
#include <algorithm>

namespace verdin {

namespace {

// A drag from another program: files, never rows of this view.
bool IsOutsideDrop(const QDropEvent* event, const QWidget* view) {
    return event->source() != view && event->mimeData()->hasUrls();
}

}  // namespace

PlaylistView::PlaylistView(QWidget* parent) : QTreeView(parent) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDragDropOverwriteMode(false);
    setDefaultDropAction(Qt::MoveAction);
    setTextElideMode(Qt::ElideRight);
    header()->setSectionsMovable(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Interactive);
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        const auto* playlist = qobject_cast<const PlaylistModel*>(model());
        if (index.isValid() && playlist && !playlist->ShowsEmptyLine()) emit PlayRowRequested(index.row());
    });
}

std::vector<int> PlaylistView::SelectedRows() const {
    std::vector<int> rows;
    if (!selectionModel()) return rows;
    // Ranges rather than indexes: selecting 100,000 rows makes one range, not 800,000 indexes.
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void PlaylistView::SelectRows(const std::vector<int>& rows) {
    if (!selectionModel() || !model()) return;
    QItemSelection selection;
    for (int row : rows) {
        const QModelIndex index = model()->index(row, 0);
        if (index.isValid() && (model()->flags(index) & Qt::ItemIsSelectable)) selection.select(index, index);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (!rows.empty()) {
        const QModelIndex first = model()->index(rows.front(), 0);
        selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        scrollTo(first);
    }
}

int PlaylistView::FirstSelectedRow() const {
    int first = -1;
    if (!selectionModel()) return first;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        if (first < 0 || range.top() < first) first = range.top();
    return first;
}

std::pair<int, int> PlaylistView::ShownRows() const {
    const int rows = model() ? model()->rowCount() : 0;
    // A hidden view paints everything afresh when it is shown.
    if (!isVisible()) return {0, 0};
    const QModelIndex top = indexAt(QPoint(0, 0));
    const QModelIndex bottom = indexAt(QPoint(0, viewport()->height() - 1));
    return {top.isValid() ? top.row() : 0, bottom.isValid() ? bottom.row() : rows - 1};
}

void PlaylistView::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        emit PlaySelectedRequested();
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void PlaylistView::contextMenuEvent(QContextMenuEvent* event) {
    const auto* playlist = qobject_cast<const PlaylistModel*>(model());
    int row = -1;
    if (event->reason() == QContextMenuEvent::Mouse) {
        const QModelIndex index = indexAt(event->pos());
        if (index.isValid()) row = index.row();
    } else {
        row = currentIndex().isValid() ? currentIndex().row() : -1;
    }
    if (playlist && playlist->ShowsEmptyLine()) row = -1;
    emit ContextMenuRequested(row, event->globalPos());
    event->accept();
}

void PlaylistView::dragEnterEvent(QDragEnterEvent* event) {
    if (IsOutsideDrop(event, this)) {
        // A copy, never a move: the file manager must not delete what was dropped here.
        event->setDropAction(Qt::CopyAction);
        event->accept();
        return;
    }
    QTreeView::dragEnterEvent(event);
}

void PlaylistView::dragMoveEvent(QDragMoveEvent* event) {
    if (IsOutsideDrop(event, this)) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
        return;
    }
    QTreeView::dragMoveEvent(event);
}

void PlaylistView::dropEvent(QDropEvent* event) {
    if (IsOutsideDrop(event, this)) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
        emit FilesDropped(event->mimeData()->urls());
        return;
    }
    QTreeView::dropEvent(event);
}

}  // namespace verdin
