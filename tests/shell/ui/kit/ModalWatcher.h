#pragma once
// Answers the modal windows a command opens (message boxes, file dialogs, the URL
// prompt) as a user would, from a timer, and remembers what they said.
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>

class QWidget;

namespace verdin::test {

class ModalWatcher {
public:
    // answer: what to do with a modal window other than a message box; return false to
    // leave it open (it is offered again on the next tick). Message boxes are answered
    // with the first of Yes, OK.
    using Answer = std::function<bool(QWidget& modal)>;
    explicit ModalWatcher(Answer answer = {});
    ~ModalWatcher();

    // Title and text of each message box answered, as "title: text".
    const QStringList& Boxes() const { return boxes_; }
    // Window titles of the other modal windows answered.
    const QStringList& Dialogs() const { return dialogs_; }

private:
    void Tick();

    Answer answer_;
    QTimer timer_;
    QStringList boxes_;
    QStringList dialogs_;
};

// Answers for the toolkit's file dialog: choose these files (or this directory) and
// accept; an empty list cancels.
ModalWatcher::Answer ChooseFiles(const QStringList& files);
// The URL prompt: type the address and accept.
ModalWatcher::Answer TypeUrl(const QString& url);

}  // namespace verdin::test
