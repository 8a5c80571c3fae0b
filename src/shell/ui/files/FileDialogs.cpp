#include "FileDialogs.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace verdin {

namespace {

QStringList QtFilters(const std::vector<DialogFilter>& filters) {
    QStringList list;
    for (const DialogFilter& filter : filters) list.push_back(QString::fromStdString(QtFilter(filter)));
    return list;
}

// The toolkit's own dialog; the filters show their display texts, not Qt's pattern lists.
void Prepare(QFileDialog& dialog, const char* title, const std::string& initialDirectory) {
    dialog.setWindowTitle(QString::fromLatin1(title));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    if (!initialDirectory.empty()) dialog.setDirectory(QString::fromStdString(initialDirectory));
}

void RememberDirectory(const QFileDialog& dialog, std::string& initialDirectory) {
    initialDirectory = dialog.directory().absolutePath().toStdString();
}

}  // namespace

std::vector<std::string> AskFiles(QWidget* parent, const char* title, const std::vector<DialogFilter>& filters,
                                  std::string& initialDirectory) {
    QFileDialog dialog(parent);
    Prepare(dialog, title, initialDirectory);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setNameFilters(QtFilters(filters));
    std::vector<std::string> files;
    if (dialog.exec() != QDialog::Accepted) return files;
    RememberDirectory(dialog, initialDirectory);
    for (const QString& file : dialog.selectedFiles()) files.push_back(file.toStdString());
    return files;
}

std::optional<std::string> AskDirectory(QWidget* parent, const char* title, std::string& initialDirectory) {
    QFileDialog dialog(parent);
    Prepare(dialog, title, initialDirectory);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    const std::string chosen = dialog.selectedFiles().front().toStdString();
    initialDirectory = chosen;
    return chosen;
}

std::optional<PlaylistSaveChoice> AskPlaylistFile(QWidget* parent, std::string& initialDirectory) {
    QFileDialog dialog(parent);
    Prepare(dialog, "Save Playlist As", initialDirectory);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(QtFilters(SavePlaylistFilters()));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    RememberDirectory(dialog, initialDirectory);
    // The dialog names the chosen filter by the text it shows.
    const std::vector<DialogFilter> choices = SavePlaylistFilters();
    const std::string chosen = dialog.selectedNameFilter().toStdString();
    int format = 1;
    for (size_t i = 0; i < choices.size(); ++i)
        if (chosen == choices[i].display || chosen == QtFilter(choices[i])) format = static_cast<int>(i) + 1;
    return PlaylistSaveChoice{dialog.selectedFiles().front().toStdString(), format};
}

std::optional<std::string> AskUrl(QWidget* parent, const char* caption) {
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("Get URL Dialog"));
    dialog.setWindowTitle(QString::fromLatin1(caption));
    auto* layout = new QVBoxLayout(&dialog);
    auto* label = new QLabel(QStringLiteral("Enter URL (e.g. %1)").arg(QLatin1String(kUrlExample)), &dialog);
    auto* edit = new QLineEdit(&dialog);
    edit->setMinimumWidth(360);
    label->setBuddy(edit);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(label);
    layout->addWidget(edit);
    layout->addWidget(buttons);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const std::string url = edit->text().trimmed().toStdString();
    if (url.empty()) return std::nullopt;
    return url;
}

}  // namespace verdin
