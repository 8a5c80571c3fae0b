#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

#include "playlist/TrackRecord.h"
#include "engine/input/InputModuleList.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/properties/GeneralPageText.h"
#include "shell/ui/dialogs/common/KeptRow.h"
#include "shell/ui/dialogs/properties/TagPage.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace verdin {
namespace {

InputModule* ModuleOf(const Player& player, const TrackRecord& track) {
    if (track.IsNullTrack()) return nullptr;
    return player.Modules().FindModuleFor(track.FullName(), track.AudioStart());
}

}  // namespace

TrackPropertiesDialog::TrackPropertiesDialog(QWidget* parent, Player& player, KeptRow& kept, const TrackRecord& track)
    : QDialog(parent), player_(player), kept_(kept), track_(track) {
    kept_.Guard(*this);
    setObjectName(QStringLiteral("Track Properties"));
    setWindowTitle(QStringLiteral("Track Properties"));
    auto* layout = new QVBoxLayout(this);
    tabs_ = new QTabWidget(this);

    general_ = new QLabel(tabs_);
    general_->setObjectName(QStringLiteral("generalText"));
    general_->setTextFormat(Qt::PlainText);
    general_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    general_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    general_->setMargin(8);
    general_->setText(QString::fromStdString(GeneralPageText(track_)));
    tabs_->addTab(general_, QStringLiteral("General"));

    if (!track_.IsUrl() && !track_.IsNullTrack()) {
        tags_ = new TagPage(track_.FullName(), tabs_);
        connect(tags_, &TagPage::TagWritten, this, &TrackPropertiesDialog::TagWritten);
        tabs_->addTab(tags_, QStringLiteral("ID3 Tag"));
    }
    layout->addWidget(tabs_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    fileInfo_ = buttons->addButton(QStringLiteral("File Info..."), QDialogButtonBox::ActionRole);
    fileInfo_->setObjectName(QStringLiteral("fileInfo"));
    InputModule* module = ModuleOf(player_, track_);
    fileInfo_->setEnabled(module && module->ops && module->ops->ShowFileInfo);
    connect(fileInfo_, &QPushButton::clicked, this, &TrackPropertiesDialog::ShowModuleFileInfo);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(560, 480);
}

QString TrackPropertiesDialog::GeneralText() const { return general_->text(); }

bool TrackPropertiesDialog::ShowModuleFileInfo() {
    InputModule* module = ModuleOf(player_, track_);
    if (!module || !module->ops || !module->ops->ShowFileInfo) return false;
    module->ops->ShowFileInfo(module, track_.FullName().c_str(), track_.AudioStart());
    return true;
}

void TrackPropertiesDialog::TagWritten() {
    // The tag's size decides where the audio starts, and its frames make the title.
    if (kept_.Row() < 0) return;
    player_.RereadTrack(kept_.Row());
    general_->setText(QString::fromStdString(GeneralPageText(track_)));
}

}  // namespace verdin
