#pragma once
// "Verdin - Frequency Analyzer" and "Verdin - Oscilloscope": 204 x 20 pixels with a sunken
// edge around a 200 x 16 picture. Each paint fills the picture through its painter and
// copies it to the screen in one go. The display tick repaints the picture alone; the
// edge is drawn only when the toolkit asks for more (shown, uncovered, restyled).
#include "shell/ui/analyzer/ScopeDrawing.h"

#include <QFrame>
#include <QImage>
#include <functional>

namespace verdin {

class ScopeWindow final : public QFrame {
    Q_OBJECT
public:
    using Painter = std::function<void(ScopePixels&)>;
    ScopeWindow(const QString& name, QWidget* parent = nullptr);

    void SetPainter(Painter painter) { painter_ = std::move(painter); }
    // Invalidates the picture without erasing: the next paint fills it anew.
    void Refresh() { update(PictureRect()); }
    // The picture as last painted (row 0 the bottom line).
    const ScopePixels& Pixels() const { return pixels_; }
    QSize sizeHint() const override { return {204, 20}; }
    QSize minimumSizeHint() const override { return {204, 20}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect PictureRect() const;

    Painter painter_;
    ScopePixels pixels_{};
    QImage image_{kScopeWidth, kScopeHeight, QImage::Format_RGB32};
};

// The ramp fades from the palette's highlight (entry 0) to the background (entry 128, one
// past the last), the background is the palette's base: the windows follow the desktop's
// colours, light or dark.
ScopeColours MakeScopeColours(const QPalette& palette);

}  // namespace verdin
