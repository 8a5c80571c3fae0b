#pragma once
// The playlist view: a report list with full-row selection over PlaylistModel. Enter
// plays the selected entry, a double click plays the row clicked, rows are reordered by
// dragging, and files dragged in from outside are handed to the window (drops always
// append, wherever they land).
#include <QList>
#include <QTreeView>
#include <QUrl>
#include <utility>
#include <vector>

namespace verdin {

class PlaylistView final : public QTreeView {
    Q_OBJECT
public:
    explicit PlaylistView(QWidget* parent = nullptr);

    // The selected rows, in increasing order.
    std::vector<int> SelectedRows() const;
    // Selects exactly these rows and makes the first of them current and visible.
    void SelectRows(const std::vector<int>& rows);
    // The first selected row, or -1.
    int FirstSelectedRow() const;
    // The first and last row on screen (the last row of the model when the view is not
    // filled to its bottom).
    std::pair<int, int> ShownRows() const;

signals:
    void PlaySelectedRequested();
    void PlayRowRequested(int row);
    // A context menu over a row (-1: over no row), at a global position.
    void ContextMenuRequested(int row, const QPoint& globalPosition);
    void FilesDropped(const QList<QUrl>& urls);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
};

}  // namespace verdin
