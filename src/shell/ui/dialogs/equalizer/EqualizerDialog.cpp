#include "shell/ui/dialogs/equalizer/EqualizerDialog.h"

#include "engine/stream/Stream.h"
#include "playlist/TrackRecord.h"
#include "settings/EqualizerRecord.h"
#include "settings/store/SettingsStore.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/common/FileChooser.h"
#include "shell/ui/dialogs/equalizer/BandSlider.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace verdin {

const std::array<const char*, kEqualizerBands> kBandLabels{
    "50Hz",  "130Hz",  "220Hz",  "300Hz",  "430Hz",  "600Hz", "820Hz", "1.2kHz",
    "1.7kHz", "2.4kHz", "3.3kHz", "4.7kHz", "6.7kHz", "9.4kHz", "13kHz", "19kHz",
};

namespace {

QString Text(const std::string& text) { return QString::fromStdString(text); }

QPushButton* Button(const QString& text, const char* name, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

// The path of the track the player plays, or empty.
std::string PlayingTrackPath(const Player& player) {
    const TrackRecord* track = player.LoadedTrack();
    return track && !track->IsNullTrack() ? track->FullName() : std::string();
}

}  // namespace

EqualizerDialog::EqualizerDialog(QWidget* parent, Player& player) : QDialog(parent), player_(player) {
    setObjectName(QStringLiteral("Graphic Equalizer"));
    setWindowTitle(QStringLiteral("Graphic Equalizer"));
    const Settings& settings = player_.GetSettings();
    auto* layout = new QVBoxLayout(this);

    // The sliders: pre-amp apart on the left, then the bands.
    auto* sliders = new QHBoxLayout;
    preAmp_ = new BandSlider(QStringLiteral("Pre-amp"), this);
    preAmp_->setObjectName(QStringLiteral("preAmp"));
    sliders->addWidget(preAmp_);
    sliders->addSpacing(12);
    for (int i = 0; i < kEqualizerBands; ++i) {
        auto* band = new BandSlider(QLatin1String(kBandLabels[static_cast<size_t>(i)]), this);
        band->setObjectName(QStringLiteral("band%1").arg(i));
        bands_[static_cast<size_t>(i)] = band;
        sliders->addWidget(band);
    }
    layout->addLayout(sliders);

    auto* switches = new QHBoxLayout;
    enable_ = new QCheckBox(QStringLiteral("Enable equalizer"), this);
    presetLinks_ = new QCheckBox(QStringLiteral("Use preset links"), this);
    loudness_ = new QCheckBox(QStringLiteral("Loudness"), this);
    switches->addWidget(enable_);
    switches->addWidget(presetLinks_);
    switches->addWidget(loudness_);
    switches->addStretch();
    layout->addLayout(switches);

    auto* lists = new QHBoxLayout;
    auto* presetBox = new QGroupBox(QStringLiteral("Presets (double-click to apply)"), this);
    auto* presetLayout = new QGridLayout(presetBox);
    presetList_ = new QListWidget(presetBox);
    presetList_->setObjectName(QStringLiteral("presets"));
    presetLayout->addWidget(presetList_, 0, 0, 1, 3);
    presetName_ = new QLineEdit(presetBox);
    presetName_->setObjectName(QStringLiteral("presetName"));
    presetName_->setMaxLength(255);
    presetName_->setPlaceholderText(QStringLiteral("Preset name"));
    presetLayout->addWidget(presetName_, 1, 0, 1, 2);
    auto* savePreset = Button(QStringLiteral("Save"), "savePreset", presetBox);
    presetLayout->addWidget(savePreset, 1, 2);
    deletePreset_ = Button(QStringLiteral("Delete"), "deletePreset", presetBox);
    defaultPreset_ = Button(QStringLiteral("Default"), "defaultPreset", presetBox);
    auto* importPresets = Button(QStringLiteral("Import..."), "importPresets", presetBox);
    exportPreset_ = Button(QStringLiteral("Export..."), "exportPreset", presetBox);
    presetLayout->addWidget(deletePreset_, 2, 0);
    presetLayout->addWidget(defaultPreset_, 2, 1);
    auto* fileButtons = new QHBoxLayout;
    fileButtons->addWidget(importPresets);
    fileButtons->addWidget(exportPreset_);
    presetLayout->addLayout(fileButtons, 3, 0, 1, 3);
    lists->addWidget(presetBox, 1);

    auto* linkBox = new QGroupBox(this);
    auto* linkLayout = new QVBoxLayout(linkBox);
    linkedCaption_ = new QLabel(linkBox);
    linkedCaption_->setObjectName(QStringLiteral("linkedCaption"));
    linkLayout->addWidget(linkedCaption_);
    linkedList_ = new QListWidget(linkBox);
    linkedList_->setObjectName(QStringLiteral("linkedTracks"));
    linkLayout->addWidget(linkedList_, 1);
    linkButton_ = Button(QString(), "linkTrack", linkBox);
    deleteLink_ = Button(QStringLiteral("Delete"), "deleteLink", linkBox);
    auto* linkButtons = new QHBoxLayout;
    linkButtons->addWidget(linkButton_, 1);
    linkButtons->addWidget(deleteLink_);
    linkLayout->addLayout(linkButtons);
    lists->addWidget(linkBox, 1);
    layout->addLayout(lists);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    // The stored state first, then the connections, so filling sends nothing.
    SetSliders(settings.equalizerValues, settings.preAmp);
    enable_->setChecked(settings.equalize != 0);
    presetLinks_->setChecked(settings.usePresetLinks != 0);
    loudness_->setChecked(settings.loudness != 0);
    FillPresets(-1);

    for (BandSlider* band : bands_) connect(band, &BandSlider::GainChanged, this, &EqualizerDialog::SendToStreams);
    connect(preAmp_, &BandSlider::GainChanged, this, &EqualizerDialog::SendToStreams);
    connect(enable_, &QCheckBox::toggled, this, &EqualizerDialog::SendToStreams);
    connect(loudness_, &QCheckBox::toggled, this, &EqualizerDialog::SendToStreams);
    connect(presetList_, &QListWidget::currentRowChanged, this, &EqualizerDialog::PresetSelected);
    connect(presetList_, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        const int row = presetList_->row(item);
        player_.ChangeSettings([row](Settings& changed) { changed.presets.SetCurrent(row); });
        PresetSelected(row);
    });
    connect(savePreset, &QPushButton::clicked, this, &EqualizerDialog::SavePreset);
    connect(deletePreset_, &QPushButton::clicked, this, &EqualizerDialog::DeletePreset);
    connect(defaultPreset_, &QPushButton::clicked, this, &EqualizerDialog::SetDefaultPreset);
    connect(importPresets, &QPushButton::clicked, this, &EqualizerDialog::ImportPresets);
    connect(exportPreset_, &QPushButton::clicked, this, &EqualizerDialog::ExportPreset);
    connect(linkButton_, &QPushButton::clicked, this, &EqualizerDialog::LinkCurrentTrack);
    connect(deleteLink_, &QPushButton::clicked, this, &EqualizerDialog::DeleteLink);
    connect(linkedList_, &QListWidget::currentRowChanged, this,
            [this](int row) { deleteLink_->setEnabled(row >= 0); });

    // The track changes while the dialog is open; the link button follows it.
    trackTimer_ = new QTimer(this);
    trackTimer_->setInterval(500);
    connect(trackTimer_, &QTimer::timeout, this, &EqualizerDialog::UpdateLinkButton);
    trackTimer_->start();
    UpdateLinkButton();
}

EqualizerDialog::~EqualizerDialog() = default;

std::array<int32_t, 16> EqualizerDialog::Gains() const {
    std::array<int32_t, 16> gains{};
    for (size_t i = 0; i < gains.size(); ++i) gains[i] = bands_[i]->Gain();
    return gains;
}

QString EqualizerDialog::LinkedTracksCaption() const { return linkedCaption_->text(); }

int EqualizerDialog::SelectedPreset() const {
    const int row = presetList_->currentRow();
    return row >= 0 && static_cast<size_t>(row) < player_.GetSettings().presets.Count() ? row : -1;
}

const EqualizerPreset* EqualizerDialog::Selected() const {
    const int row = SelectedPreset();
    return row < 0 ? nullptr : &player_.GetSettings().presets.At(static_cast<size_t>(row));
}

void EqualizerDialog::ChangeSelected(const std::function<void(EqualizerPreset&)>& change) {
    const int row = SelectedPreset();
    if (row < 0) return;
    player_.ChangeSettings([&](Settings& settings) { change(settings.presets.At(static_cast<size_t>(row))); });
}

void EqualizerDialog::SetSliders(const std::array<int32_t, 16>& bands, int32_t preAmp) {
    moving_ = true;
    for (size_t i = 0; i < bands.size(); ++i) bands_[i]->SetGain(bands[i]);
    preAmp_->SetGain(preAmp);
    moving_ = false;
}

void EqualizerDialog::SendToStreams() {
    if (moving_) return;
    player_.PreviewEqualizer(enable_->isChecked(), MakeEqualizerRecord(Gains(), preAmp_->Gain(), loudness_->isChecked()));
}

void EqualizerDialog::SendStoredToStreams() {
    const Settings& settings = player_.GetSettings();
    player_.PreviewEqualizer(settings.equalize != 0, EqualizerRecordOf(settings));
}

void EqualizerDialog::FillPresets(int select) {
    const QSignalBlocker quiet(presetList_);
    presetList_->clear();
    for (const EqualizerPreset& preset : player_.GetSettings().presets.Presets()) presetList_->addItem(Text(preset.name));
    presetList_->setCurrentRow(select);
    // Without a selection there is nothing to apply; with one, its gains are shown.
    PresetSelected(SelectedPreset());
}

void EqualizerDialog::PresetSelected(int row) {
    const bool selected = row >= 0 && static_cast<size_t>(row) < player_.GetSettings().presets.Count();
    deletePreset_->setEnabled(selected);
    defaultPreset_->setEnabled(selected);
    exportPreset_->setEnabled(selected);
    if (selected) {
        const EqualizerPreset& preset = player_.GetSettings().presets.At(static_cast<size_t>(row));
        SetSliders(preset.bands, preset.preAmp);
        presetName_->setText(Text(preset.name));
        linkedCaption_->setText(QStringLiteral("Tracks linked to %1").arg(Text(preset.name)));
        SendToStreams();
    } else {
        linkedCaption_->setText(QStringLiteral("Select preset"));
    }
    FillLinks();
    UpdateLinkButton();
}

void EqualizerDialog::FillLinks() {
    linkedList_->clear();
    if (const EqualizerPreset* preset = Selected())
        for (const std::string& link : preset->links) linkedList_->addItem(Text(link));
    deleteLink_->setEnabled(linkedList_->currentRow() >= 0);
}

void EqualizerDialog::UpdateLinkButton() {
    const std::string path = PlayingTrackPath(player_);
    linkButton_->setText(path.empty() ? QStringLiteral("No tracks playing")
                                      : QStringLiteral("Add link for %1").arg(Text(path)));
    linkButton_->setEnabled(!path.empty() && SelectedPreset() >= 0);
}

void EqualizerDialog::SavePreset() {
    const std::string name = presetName_->text().toStdString();
    if (name.empty()) return;
    EqualizerPreset preset;
    preset.name = name;
    preset.bands = Gains();
    preset.preAmp = preAmp_->Gain();
    player_.ChangeSettings([&](Settings& settings) {
        EqualizerPresetList& presets = settings.presets;
        if (const int existing = presets.FindByName(name); existing >= 0) presets.Remove(static_cast<size_t>(existing));
        presets.Append(std::move(preset));
    });
    FillPresets(static_cast<int>(player_.GetSettings().presets.Count()) - 1);
}

void EqualizerDialog::DeletePreset() {
    const int row = SelectedPreset();
    if (row < 0) return;
    player_.ChangeSettings([row](Settings& settings) { settings.presets.Remove(static_cast<size_t>(row)); });
    FillPresets(-1);
}

void EqualizerDialog::SetDefaultPreset() {
    ChangeSelected([](EqualizerPreset& preset) { preset.isDefault = true; });
}

void EqualizerDialog::LinkCurrentTrack() {
    const std::string path = PlayingTrackPath(player_);
    if (path.empty()) return;
    ChangeSelected([&](EqualizerPreset& preset) {
        if (preset.FindLink(path) < 0) preset.links.push_back(path);
    });
    FillLinks();
}

void EqualizerDialog::DeleteLink() {
    const int row = linkedList_->currentRow();
    const EqualizerPreset* preset = Selected();
    if (!preset || row < 0 || static_cast<size_t>(row) >= preset->links.size()) return;
    ChangeSelected([row](EqualizerPreset& changed) { changed.links.erase(changed.links.begin() + row); });
    FillLinks();
}

void EqualizerDialog::ImportPresets() {
    const QString chosen =
        ChooseFileToOpen(this, QStringLiteral("Import Equalizer Preset"), QLatin1String(kPresetFileFilter));
    if (chosen.isEmpty()) return;
    player_.ChangeSettings([&](Settings& settings) { settings.presets.LoadFile(chosen.toStdString()); });
    FillPresets(-1);
}

void EqualizerDialog::ExportPreset() {
    const EqualizerPreset* preset = Selected();
    if (!preset) return;
    const QString chosen = ChooseFileToSave(this, QStringLiteral("Export Equalizer Preset"),
                                            QLatin1String(kPresetFileFilter), Text(preset->name) + ".eq", false);
    if (chosen.isEmpty()) return;
    // Writing errors are not reported: the file simply does not get the preset.
    EqualizerPresetList::WritePreset(ExportFileName(chosen.toStdString()), *preset);
}

void EqualizerDialog::accept() {
    player_.ChangeSettings([this](Settings& settings) {
        settings.equalize = enable_->isChecked() ? 1 : 0;
        settings.usePresetLinks = presetLinks_->isChecked() ? 1 : 0;
        settings.loudness = loudness_->isChecked() ? 1 : 0;
        settings.equalizerValues = Gains();
        settings.preAmp = preAmp_->Gain();
    });
    QDialog::accept();
}

void EqualizerDialog::reject() {
    SendStoredToStreams();
    QDialog::reject();
}

void ShowEqualizer(QWidget* parent, Player& player) {
    // One at a time: a second command brings the open one forward.
    static QPointer<EqualizerDialog> open;
    if (!open) {
        open = new EqualizerDialog(parent, player);
        open->setAttribute(Qt::WA_DeleteOnClose);
    }
    open->show();
    open->raise();
    open->activateWindow();
}

}  // namespace verdin
