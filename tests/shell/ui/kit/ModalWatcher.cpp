#include "ModalWatcher.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

namespace verdin::test {

ModalWatcher::ModalWatcher(Answer answer, QMessageBox::StandardButton button)
    : answer_(std::move(answer)), button_(button) {
    timer_.setInterval(10);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Tick(); });
    timer_.start();
}

void ModalWatcher::Tick() {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) return;
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        boxes_.push_back(box->windowTitle() + QStringLiteral(": ") + box->text());
        QAbstractButton* button = box->button(button_);
        if (!button) button = box->button(QMessageBox::Ok);
        if (button) button->click();
        else box->reject();
        return;
    }
    const QString title = modal->windowTitle();
    if (answer_ ? answer_(*modal) : modal->close()) dialogs_.push_back(title);
}

ModalWatcher::Answer ChooseFiles(const QStringList& files) {
    return [files](QWidget& modal) {
        auto* dialog = qobject_cast<QFileDialog*>(&modal);
        if (!dialog) return false;
        if (files.isEmpty()) {
            dialog->reject();
            return true;
        }
        // Typed into the file name field, as a user would: selectFile() leaves the field
        // alone once it has the focus.
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (!name) return false;
        if (dialog->fileMode() == QFileDialog::Directory) {
            dialog->setDirectory(files.front());
            name->setText(files.front());
        } else {
            QStringList quoted;
            for (const QString& file : files) quoted.push_back(QLatin1Char('"') + file + QLatin1Char('"'));
            name->setText(files.size() == 1 ? files.front() : quoted.join(QLatin1Char(' ')));
        }
        // The dialog's own accept checks the choice, as the OK button does.
        static_cast<QDialog*>(dialog)->accept();
        return true;
    };
}

ModalWatcher::Answer TypeUrl(const QString& url) {
    return Close([url](QWidget& dialog) {
        if (auto* edit = dialog.findChild<QLineEdit*>()) edit->setText(url);
    }, true);
}

ModalWatcher::Answer Close(const std::function<void(QWidget& dialog)>& act, bool accept) {
    return [act, accept](QWidget& modal) {
        auto* dialog = qobject_cast<QDialog*>(&modal);
        if (!dialog || qobject_cast<QFileDialog*>(&modal)) return false;
        if (act) act(modal);
        dialog->done(accept ? QDialog::Accepted : QDialog::Rejected);
        return true;
    };
}

}  // namespace verdin::test
