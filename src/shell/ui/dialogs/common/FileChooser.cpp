#include "shell/ui/dialogs/common/FileChooser.h"

#include <QFileDialog>
#include <QStringList>

namespace verdin {
namespace {

QString Run(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted) return {};
    const QStringList files = dialog.selectedFiles();
    return files.isEmpty() ? QString() : files.first();
}

}  // namespace

QString QtFileFilter(const QString& playerFilter) {
    const QStringList pieces = playerFilter.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        if (pieces[i].isEmpty() || pieces[i + 1].isEmpty()) continue;  // half a pair names nothing
        QString patterns = pieces[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        // "*.*" means every file on the system the filters were written for.
        if (patterns == QLatin1String("*.*")) patterns = QStringLiteral("*");
        filters << pieces[i] + QStringLiteral(" (") + patterns + QLatin1Char(')');
    }
    return filters.join(QStringLiteral(";;"));
}

QString ChooseFileToOpen(QWidget* parent, const QString& title, const QString& playerFilter, const QString& directory) {
    QFileDialog dialog(parent, title, directory, QtFileFilter(playerFilter));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return Run(dialog);
}

QString ChooseFileToSave(QWidget* parent, const QString& title, const QString& playerFilter, const QString& suggested,
                         bool confirmOverwrite) {
    QFileDialog dialog(parent, title, QString(), QtFileFilter(playerFilter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !confirmOverwrite);
    if (!suggested.isEmpty()) dialog.selectFile(suggested);
    return Run(dialog);
}

QString ChooseDirectory(QWidget* parent, const QString& title, const QString& start) {
    QFileDialog dialog(parent, title, start);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
    return Run(dialog);
}

}  // namespace verdin
