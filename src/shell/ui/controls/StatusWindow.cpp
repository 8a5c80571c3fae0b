#include "StatusWindow.h"

#include <QPainter>

namespace verdin {

StatusWindow::StatusWindow(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Verdin - Status Window"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StatusWindow::SetText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    update();
}

QSize StatusWindow::sizeHint() const { return {250, fontMetrics().height() + 6}; }

QSize StatusWindow::minimumSizeHint() const { return {60, fontMetrics().height() + 6}; }

void StatusWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect area = rect().adjusted(4, 0, -4, 0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(text_, Qt::ElideRight, area.width()));
}

}  // namespace verdin
