#include "shell/ui/dialogs/Dialogs.h"

#include <QMessageBox>

namespace verdin {

void ShowAbout(QWidget* parent) {
    QMessageBox::about(parent, QStringLiteral("About Verdin"),
                       QStringLiteral("<b>Verdin</b> %1<br>A desktop audio player.").arg(QStringLiteral(VERDIN_VERSION)));
}

}  // namespace verdin
