#pragma once
// The tool bands of the main window: toolbars in the top area that the user can drag
// into another order or onto other lines, laid out and read back as "rebarBandArray".
// A band's stored width is the width it asks for; 999 (or more) makes it flexible: as
// wide as its line allows. No band asks for more than leaves its line mates what they
// ask for (a flexible one: its natural width), so no band's buttons disappear behind a
// chevron while there is room; the last band of a line takes whatever is left.
#include "shell/ui/window/BandLayout.h"

#include <QToolBar>
#include <limits>
#include <vector>

class QMainWindow;

namespace verdin {

class ToolBand final : public QToolBar {
    Q_OBJECT
public:
    ToolBand(int32_t id, const QString& title, QWidget* parent = nullptr);
    static constexpr int kFlexibleWidth = 999;
    static constexpr int kNoCap = std::numeric_limits<int>::max();  // alone on its line

    int32_t Id() const { return id_; }
    void SetStoredWidth(int width);
    // The most this band may ask for on its line now.
    void SetLineCap(int cap);
    int StoredWidth() const { return storedWidth_; }
    bool Flexible() const { return storedWidth_ >= kFlexibleWidth; }
    int NaturalWidth() const { return QToolBar::sizeHint().width(); }
    // What the band's line mates must leave it.
    int WantedWidth() const;
    // The width to keep for the next start.
    int WidthToStore(bool lastOnLine) const;
    QSize sizeHint() const override;

private:
    int32_t id_;
    int storedWidth_ = 0;
    int lineCap_ = kNoCap;
};

class ToolBands {
public:
    explicit ToolBands(QMainWindow& window) : window_(window) {}

    void Add(ToolBand* band) { bands_.push_back(band); }
    ToolBand* Band(int32_t id) const;
    const std::vector<ToolBand*>& Bands() const { return bands_; }

    // Puts the bands in the stored order, on the stored lines, at the stored widths.
    // Bands the array does not name go last.
    void Apply(const BandArray& layout);
    // The layout as the user now sees it; before: the layout last applied or stored.
    BandArray Read(const BandArray& before) const;
    // Caps the widths bands ask for by what the others of their line need, for a window
    // this wide.
    void FitLines(int width);

private:
    QMainWindow& window_;
    std::vector<ToolBand*> bands_;
};

}  // namespace verdin
