#include "MessageBoxes.h"

#include <QMessageBox>

namespace verdin {

namespace {

QMessageBox::Icon BoxIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::kWarning: return QMessageBox::Warning;
        case MessageIcon::kError: return QMessageBox::Critical;
        case MessageIcon::kQuestion: return QMessageBox::Question;
        default: return QMessageBox::Information;
    }
}

int RunBox(QWidget* owner, std::string_view text, MessageIcon icon, QMessageBox::StandardButtons buttons) {
    QMessageBox box(BoxIcon(icon), QStringLiteral("Verdin"),
                    QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), buttons, owner);
    return box.exec();
}

}  // namespace

void ShowMessageBox(QWidget* owner, std::string_view text, MessageIcon icon) {
    RunBox(owner, text, icon, QMessageBox::Ok);
}

bool AskYesNoBox(QWidget* owner, std::string_view text, MessageIcon icon) {
    return RunBox(owner, text, icon, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace verdin
