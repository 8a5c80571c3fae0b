#include "shell/ui/dialogs/options/PlaylistPage.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

namespace verdin {

constexpr int kSearchPathLength = 4095;
constexpr int kLongestHistory = 1000000;

PlaylistPage::PlaylistPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("Playlist"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* skip = new QGroupBox(QStringLiteral("Do NOT retrieve file information for..."), this);
    auto* skipLayout = new QVBoxLayout(skip);
    skipLayout->addWidget(AddFlag(QStringLiteral("Any files when added to the playlist"), &Settings::skipInfoForAnyFile, skip));
    skipLayout->addWidget(AddFlag(QStringLiteral("URLs when added to the playlist"), &Settings::skipInfoForURL, skip));
    skipLayout->addWidget(
        AddFlag(QStringLiteral("Files on a CD-ROM when added to the playlist"), &Settings::skipInfoForCDROM, skip));
    layout->addWidget(skip);
    layout->addWidget(AddFlag(QStringLiteral("Delete tracks from the playlist after playing"),
                              &Settings::deleteTracksAfterPlaying));
    layout->addWidget(AddFlag(QStringLiteral("Perform Open/Add/Insert Directory recursively"),
                              &Settings::recursiveAddDirectory));

    auto* space = new QGroupBox(QStringLiteral("Sample space for random entries"), this);
    auto* spaceLayout = new QVBoxLayout(space);
    sampleSpace_ = new SearchPathField(QStringLiteral("Select directory for the sample space"),
                                       QLatin1String(kSampleSpaceNote), kSearchPathLength, space);
    sampleSpace_->Edit()->setObjectName(QStringLiteral("sampleSpaceSearchPath"));
    spaceLayout->addWidget(sampleSpace_);
    spaceLayout->addWidget(
        AddFlag(QStringLiteral("Recurse subdirectories"), &Settings::recurseSampleSpaceSearchPath, space));
    spaceLayout->addWidget(new QLabel(QStringLiteral("When picking a random entry, pick one that has not been"), space));
    auto* historyRow = new QHBoxLayout;
    historyRow->addWidget(new QLabel(QStringLiteral("picked among the last"), space));
    history_ = new QSpinBox(space);
    history_->setObjectName(QStringLiteral("vdpHistory"));
    history_->setRange(0, kLongestHistory);
    historyRow->addWidget(history_);
    historyRow->addWidget(new QLabel(QStringLiteral("random entry events."), space));
    historyRow->addStretch();
    spaceLayout->addLayout(historyRow);
    layout->addWidget(space);
    layout->addStretch();
    Load();
}

void PlaylistPage::Load() {
    LoadBindings();
    const Settings& s = CurrentSettings();
    sampleSpace_->SetText(QString::fromStdString(s.sampleSpaceSearchPath));
    history_->setValue(s.vdpHistory);
}

void PlaylistPage::Apply(Settings& s) {
    ApplyBindings(s);
    s.sampleSpaceSearchPath = sampleSpace_->Text().toStdString();
    // A stored history outside the field's range (negative) stays until it is edited.
    if (history_->value() != std::clamp(s.vdpHistory, 0, kLongestHistory)) s.vdpHistory = history_->value();
}

}  // namespace verdin
