#pragma once
// Answers the modal windows that open while it lives (message boxes, file choosers, the
// URL prompt, the dialogs) as a user would, from a timer, and remembers what they said.
#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>

namespace verdin::test {

class ModalWatcher {
public:
    // answer: what to do with a modal window other than a message box; it returns false
    // to leave the window open (it is offered again on the next tick). Without an answer
    // such a window is closed. Message boxes are answered with the first of button, OK.
    using Answer = std::function<bool(QWidget& modal)>;
    explicit ModalWatcher(Answer answer = {}, QMessageBox::StandardButton button = QMessageBox::Yes);

    // Title and text of each message box answered, as "title: text".
    const QStringList& Boxes() const { return boxes_; }
    // Window titles of the other modal windows answered.
    const QStringList& Dialogs() const { return dialogs_; }

private:
    void Tick();

    Answer answer_;
    QMessageBox::StandardButton button_;
    QTimer timer_;
    QStringList boxes_;
    QStringList dialogs_;
};

// Answers for the toolkit's file dialog: choose these files (or this directory) and
// accept; an empty list cancels.
ModalWatcher::Answer ChooseFiles(const QStringList& files);
// The URL prompt: type the address and accept.
ModalWatcher::Answer TypeUrl(const QString& url);
// A dialog other than a file dialog: act on it, then accept or reject.
ModalWatcher::Answer Close(const std::function<void(QWidget& dialog)>& act = {}, bool accept = false);

}  // namespace verdin::test
