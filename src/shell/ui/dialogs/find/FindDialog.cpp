#include "shell/ui/dialogs/find/FindDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace verdin {

// The main window keeps the last text in a buffer of 256 characters.
constexpr int kMaximumFindText = 255;

FindDialog::FindDialog(QWidget* parent, const FindRequest& last) : QDialog(parent) {
    setObjectName(QStringLiteral("Find"));
    setWindowTitle(QStringLiteral("Find"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    text_ = new QLineEdit(QString::fromStdString(last.text), this);
    text_->setObjectName(QStringLiteral("findText"));
    text_->setMaxLength(kMaximumFindText);
    text_->selectAll();
    form->addRow(QStringLiteral("Find what:"), text_);
    layout->addLayout(form);
    caseSensitive_ = new QCheckBox(QStringLiteral("Case sensitive"), this);
    caseSensitive_->setChecked(last.caseSensitive);
    layout->addWidget(caseSensitive_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Find"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

FindRequest FindDialog::Request() const { return {text_->text().toStdString(), caseSensitive_->isChecked()}; }

std::optional<FindRequest> AskFind(QWidget* parent, const FindRequest& last) {
    FindDialog dialog(parent, last);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.Request();
}

}  // namespace verdin
