#include "shell/ui/dialogs/options/FileTypesBox.h"

#include "shell/FileTypes.h"
#include "shell/ui/MessageBoxes.h"

#include <QCheckBox>
#include <QListWidget>
#include <QVBoxLayout>

namespace verdin {

FileTypesBox::FileTypesBox(const InputModuleList& modules, QWidget* parent)
    : QGroupBox(QStringLiteral("File types opened with Verdin"), parent),
      associations_(UserAssociations()),
      extensions_(AssociableExtensions(modules)) {
    auto* layout = new QVBoxLayout(this);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("fileTypes"));
    list_->setFlow(QListView::LeftToRight);
    list_->setWrapping(true);
    list_->setMaximumHeight(96);
    for (const std::string& extension : extensions_) {
        auto* item = new QListWidgetItem(QString::fromStdString(extension), list_);
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    }
    layout->addWidget(list_);
    folders_ = new QCheckBox(
        QStringLiteral("Offer \"Play with Verdin\" and \"Add to Verdin main playlist\" for folders"), this);
    layout->addWidget(folders_);
}

void FileTypesBox::Load() {
    for (int row = 0; row < list_->count(); ++row) {
        const bool ours = associations_.State(extensions_[static_cast<size_t>(row)]) == AssociationState::kYes;
        list_->item(row)->setCheckState(ours ? Qt::Checked : Qt::Unchecked);
    }
    folders_->setChecked(associations_.FolderVerbsPresent());
}

bool FileTypesBox::Apply() {
    QStringList failed;
    if (!associations_.RegisterClasses(extensions_)) failed << QStringLiteral("the file classes");
    for (int row = 0; row < list_->count(); ++row) {
        const std::string& extension = extensions_[static_cast<size_t>(row)];
        const bool ok = list_->item(row)->checkState() == Qt::Checked ? associations_.Associate(extension)
                                                                       : associations_.Unassociate(extension);
        if (!ok) failed << QString::fromStdString(extension);
    }
    if (!associations_.SetFolderVerbs(folders_->isChecked())) failed << QStringLiteral("the folder commands");
    if (failed.isEmpty()) return true;
    const QString text = QStringLiteral("The desktop's file types could not be changed for: %1");
    ShowMessageBox(this, text.arg(failed.join(QStringLiteral(", "))).toStdString(), MessageIcon::kWarning);
    return false;
}

}  // namespace verdin
