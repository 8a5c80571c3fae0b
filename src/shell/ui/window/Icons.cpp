#include "Icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QWidget>
#include <cmath>
#include <functional>

namespace verdin {

namespace {

// Glyphs are drawn on a 64 x 64 canvas; QIcon scales the pixmap for the screen.
constexpr int kCanvas = 64;

using Glyph = std::function<void(QPainter&)>;

QIcon Drawn(const QWidget& owner, const Glyph& glyph) {
    QPixmap pixmap(kCanvas, kCanvas);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(owner.palette().color(QPalette::WindowText), 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    glyph(painter);
    return QIcon(pixmap);
}

void Arrowhead(QPainter& p, QPointF tip, double angle) {
    const double length = 14;
    QPainterPath head;
    head.moveTo(tip + QPointF(std::cos(angle + 2.5) * length, std::sin(angle + 2.5) * length));
    head.lineTo(tip);
    head.lineTo(tip + QPointF(std::cos(angle - 2.5) * length, std::sin(angle - 2.5) * length));
    p.drawPath(head);
}

void Loop(QPainter& p) {
    p.drawArc(QRectF(10, 14, 44, 36), 30 * 16, 300 * 16);
    Arrowhead(p, QPointF(51, 23), -1.2);
}

void Shuffle(QPainter& p) {
    QPainterPath a, b;
    a.moveTo(8, 18);
    a.cubicTo(30, 18, 30, 46, 54, 46);
    b.moveTo(8, 46);
    b.cubicTo(30, 46, 30, 18, 54, 18);
    p.drawPath(a);
    p.drawPath(b);
    Arrowhead(p, QPointF(56, 18), 0);
    Arrowhead(p, QPointF(56, 46), 0);
}

void Bars(QPainter& p) {
    const int heights[] = {20, 40, 28, 48};
    for (int i = 0; i < 4; ++i) p.drawLine(QPointF(14 + i * 12, 56), QPointF(14 + i * 12, 56 - heights[i]));
}

void Wave(QPainter& p) {
    QPainterPath wave;
    wave.moveTo(6, 32);
    for (int x = 6; x <= 58; ++x) wave.lineTo(x, 32 - 18 * std::sin((x - 6) * 2 * M_PI / 26));
    p.drawPath(wave);
}

void Sparkle(QPainter& p) {
    QPainterPath star;
    star.moveTo(32, 6);
    star.quadTo(36, 28, 58, 32);
    star.quadTo(36, 36, 32, 58);
    star.quadTo(28, 36, 6, 32);
    star.quadTo(28, 28, 32, 6);
    p.drawPath(star);
}

void List(QPainter& p) {
    for (int i = 0; i < 3; ++i) {
        const double y = 16 + i * 16;
        p.drawPoint(QPointF(12, y));
        p.drawLine(QPointF(24, y), QPointF(56, y));
    }
}

void MiniWindow(QPainter& p) {
    p.drawRect(QRectF(8, 12, 48, 40));
    p.drawLine(QPointF(8, 24), QPointF(56, 24));
}

void Minimize(QPainter& p) { p.drawLine(QPointF(14, 48), QPointF(50, 48)); }

void Power(QPainter& p) {
    p.drawArc(QRectF(12, 14, 40, 40), 120 * 16, 300 * 16);
    p.drawLine(QPointF(32, 8), QPointF(32, 32));
}

void Folder(QPainter& p) {
    QPainterPath folder;
    folder.moveTo(8, 52);
    folder.lineTo(8, 14);
    folder.lineTo(26, 14);
    folder.lineTo(32, 22);
    folder.lineTo(56, 22);
    folder.lineTo(56, 52);
    folder.closeSubpath();
    p.drawPath(folder);
}

void Sliders(QPainter& p) {
    for (int i = 0; i < 3; ++i) {
        const double y = 16 + i * 16;
        p.drawLine(QPointF(8, y), QPointF(56, y));
        const double knob = i == 1 ? 40 : (i == 0 ? 20 : 30);
        p.drawEllipse(QPointF(knob, y), 5, 5);
    }
}

void Note(QPainter& p) {
    p.setBrush(p.pen().color());
    p.drawEllipse(QPointF(22, 48), 9, 7);
    p.setBrush(Qt::NoBrush);
    p.drawLine(QPointF(30, 47), QPointF(30, 10));
    p.drawLine(QPointF(30, 10), QPointF(48, 18));
}

// A button's theme icon name and the glyph drawn without a theme.
struct ButtonLook {
    uint32_t button;
    const char* themeName;
    QStyle::StandardPixmap standard;  // SP_CustomBase: none
    Glyph glyph;
};

const std::vector<ButtonLook>& ButtonLooks() {
    static const std::vector<ButtonLook> looks = {
        {104, "media-skip-backward", QStyle::SP_MediaSkipBackward, nullptr},
        {106, "media-playback-stop", QStyle::SP_MediaStop, nullptr},
        {107, "media-playback-pause", QStyle::SP_MediaPause, nullptr},
        {108, "media-playback-start", QStyle::SP_MediaPlay, nullptr},
        {110, "media-skip-forward", QStyle::SP_MediaSkipForward, nullptr},
        {112, "document-open", QStyle::SP_CustomBase, Folder},
        {113, "configure", QStyle::SP_CustomBase, Sliders},
        {114, "media-playlist-repeat", QStyle::SP_CustomBase, Loop},
        {118, "view-statistics", QStyle::SP_CustomBase, Bars},
        {119, "media-playlist-shuffle", QStyle::SP_CustomBase, Shuffle},
        {121, "view-media-playlist", QStyle::SP_CustomBase, List},
        {122, "view-restore", QStyle::SP_CustomBase, MiniWindow},
        {123, "view-fullscreen", QStyle::SP_CustomBase, MiniWindow},
        {124, "application-exit", QStyle::SP_CustomBase, Power},
        {125, "window-minimize", QStyle::SP_CustomBase, Minimize},
        {128, "view-object-histogram-linear", QStyle::SP_CustomBase, Wave},
        {131, "applications-graphics", QStyle::SP_CustomBase, Sparkle},
    };
    return looks;
}

}  // namespace

QIcon ButtonIcon(uint32_t buttonId, const QWidget& owner) {
    for (const ButtonLook& look : ButtonLooks()) {
        if (look.button != buttonId) continue;
        const QIcon themed = QIcon::fromTheme(QString::fromLatin1(look.themeName));
        if (!themed.isNull()) return themed;
        if (look.standard != QStyle::SP_CustomBase) return owner.style()->standardIcon(look.standard, nullptr, &owner);
        return Drawn(owner, look.glyph);
    }
    return {};
}

QIcon PlaylistRowIcon(const QWidget& owner) {
    const QIcon themed = QIcon::fromTheme(QStringLiteral("view-media-playlist"));
    return themed.isNull() ? Drawn(owner, List) : themed;
}

QIcon TrackRowIcon(const QWidget& owner) {
    const QIcon themed = QIcon::fromTheme(QStringLiteral("audio-x-generic"));
    return themed.isNull() ? Drawn(owner, Note) : themed;
}

}  // namespace verdin
