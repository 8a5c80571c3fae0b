#include "ToolBands.h"

#include <QMainWindow>
#include <algorithm>
#include <map>

namespace verdin {

ToolBand::ToolBand(int32_t id, const QString& title, QWidget* parent) : QToolBar(title, parent), id_(id) {
    setObjectName(QStringLiteral("band-%1").arg(id));
    setMovable(true);
    setFloatable(false);
    setAllowedAreas(Qt::TopToolBarArea);
}

void ToolBand::SetStoredWidth(int width) {
    storedWidth_ = width;
    updateGeometry();
}

void ToolBand::SetLineCap(int cap) {
    if (cap == lineCap_) return;
    lineCap_ = cap;
    updateGeometry();
}

int ToolBand::WantedWidth() const {
    const int natural = NaturalWidth();
    return Flexible() ? natural : std::max(storedWidth_, natural);
}

QSize ToolBand::sizeHint() const {
    QSize hint = QToolBar::sizeHint();
    if (storedWidth_ <= 0) return hint;
    int width = std::max(storedWidth_, hint.width());
    width = std::max(std::min(width, lineCap_), hint.width());
    hint.setWidth(width);
    return hint;
}

int ToolBand::WidthToStore(bool lastOnLine) const {
    // The last band of a line (or the only one) is as wide as what is left, whatever it
    // asked for: it keeps what it asked for. A flexible band that still takes all the room
    // its line mates leave stays flexible; otherwise the width the user gave it counts.
    if (lastOnLine || lineCap_ == kNoCap) return storedWidth_;
    if (Flexible() && width() >= lineCap_) return kFlexibleWidth;
    return width();
}

ToolBand* ToolBands::Band(int32_t id) const {
    for (ToolBand* band : bands_)
        if (band->Id() == id) return band;
    return nullptr;
}

void ToolBands::Apply(const BandArray& layout) {
    std::vector<ToolBand*> order;
    std::vector<bool> breaks;
    for (const RebarBand& stored : layout) {
        ToolBand* band = Band(stored.id);
        if (!band || std::find(order.begin(), order.end(), band) != order.end()) continue;
        band->SetStoredWidth(stored.width);
        order.push_back(band);
        breaks.push_back(stored.lineBreak != 0);
    }
    for (ToolBand* band : bands_) {
        if (std::find(order.begin(), order.end(), band) != order.end()) continue;
        order.push_back(band);
        breaks.push_back(true);
    }
    for (ToolBand* band : order) {
        const bool hidden = band->isHidden();
        // Removing every band also removes the lines (and so the breaks) they made.
        window_.removeToolBar(band);
        band->setProperty("verdinHidden", hidden);
    }
    for (size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && breaks[i]) window_.addToolBarBreak(Qt::TopToolBarArea);
        window_.addToolBar(Qt::TopToolBarArea, order[i]);
        // removeToolBar hides a band; it keeps the visibility it had.
        order[i]->setVisible(!order[i]->property("verdinHidden").toBool());
    }
}

BandArray ToolBands::Read(const BandArray& before) const {
    std::map<int, int> lineEnds;  // line top -> left edge of its last band
    for (const ToolBand* band : bands_)
        if (!band->isHidden()) lineEnds[band->geometry().top()] = std::max(lineEnds[band->geometry().top()], band->geometry().left());
    std::vector<BandOnScreen> screen;
    for (const ToolBand* band : bands_) {
        const QRect geometry = band->geometry();
        const bool last = !band->isHidden() && lineEnds[geometry.top()] == geometry.left();
        screen.push_back({band->Id(), !band->isHidden(), geometry.top(), geometry.left(), band->WidthToStore(last)});
    }
    return BandsFromScreen(before, screen);
}

void ToolBands::FitLines(int width) {
    std::map<int, std::vector<ToolBand*>> lines;
    for (ToolBand* band : bands_)
        if (!band->isHidden()) lines[band->geometry().top()].push_back(band);
    for (auto& [top, line] : lines) {
        int wanted = 0;
        for (ToolBand* band : line) wanted += band->WantedWidth();
        for (ToolBand* band : line)
            band->SetLineCap(line.size() > 1 ? std::max(width - (wanted - band->WantedWidth()), 1) : ToolBand::kNoCap);
    }
}

}  // namespace verdin
