#include "ScopeWindow.h"

#include <QImage>
#include <QPaintEvent>
#include <QPainter>

namespace verdin {

ScopeWindow::ScopeWindow(const QString& name, QWidget* parent) : QFrame(parent) {
    setObjectName(name);
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setLineWidth(2);
    setFixedSize(204, 20);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ScopeWindow::paintEvent(QPaintEvent* event) {
    if (painter_) painter_(pixels_);
    // The buffer's rows go bottom-up; the image's top-down.
    for (int row = 0; row < kScopeHeight; ++row)
        std::copy_n(&pixels_[static_cast<size_t>(row * kScopeWidth)], kScopeWidth,
                    reinterpret_cast<uint32_t*>(image_.scanLine(kScopeHeight - 1 - row)));
    {
        QPainter painter(this);
        // One copy, pixel for pixel, inside the 2-pixel edge.
        painter.drawImage(PictureRect().topLeft(), image_);
    }
    if (!PictureRect().contains(event->rect())) QFrame::paintEvent(event);
}

QRect ScopeWindow::PictureRect() const {
    return {QPoint((width() - kScopeWidth) / 2, (height() - kScopeHeight) / 2), QSize(kScopeWidth, kScopeHeight)};
}

ScopeColours MakeScopeColours(const QPalette& palette) {
    ScopeColours colours;
    const QColor accent = palette.color(QPalette::Highlight);
    const QColor background = palette.color(QPalette::Base);
    colours.background = background.rgb();
    for (int i = 0; i < 128; ++i) {
        auto mix = [i](int from, int to) { return from + (to - from) * i / 128; };
        colours.ramp[static_cast<size_t>(i)] =
            qRgb(mix(accent.red(), background.red()), mix(accent.green(), background.green()),
                 mix(accent.blue(), background.blue()));
    }
    return colours;
}

}  // namespace verdin
