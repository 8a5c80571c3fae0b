#pragma once
// "Verdin - Status Window": one line of status text, drawn on the band's own background.
#include <QWidget>

namespace verdin {

class StatusWindow final : public QWidget {
    Q_OBJECT
public:
    explicit StatusWindow(QWidget* parent = nullptr);
    void SetText(const QString& text);
    const QString& Text() const { return text_; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
};

}  // namespace verdin
