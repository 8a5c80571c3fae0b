#include "shell/ui/dialogs/options/OutputPage.h"

#include "engine/output/AlsaDeviceList.h"
#include "engine/output/PulseConnection.h"
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/common/FileChooser.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace verdin {
namespace {

constexpr std::array<NamedValue, 3> kCooperativeLevels{{{"Normal", 1}, {"Priority", 2}, {"Exclusive", 3}}};

constexpr int kSoundCard = 0;
constexpr int kWavFiles = 1;
constexpr int kSoundServer = 2;
constexpr int kDirectoryLength = 255;

// The entry a stored device number stands for; an entry the list lacks is added so that
// the number is shown and kept.
void SelectDevice(QComboBox* combo, int index) {
    if (index < 0 || index >= combo->count()) {
        combo->addItem(QStringLiteral("Device %1 (not available)").arg(index), index);
        combo->setCurrentIndex(combo->count() - 1);
        return;
    }
    combo->setCurrentIndex(index);
}

// The first sound card entry (device -1, ALSA's "default" PCM) keeps the player's name
// for "whatever the system chooses".
const QString kWaveMapper = QStringLiteral("Wave Mapper");

void FillDevices(QComboBox* combo, const std::vector<OutputDeviceEntry>& entries, const QString& whenEmpty) {
    combo->clear();
    // Without a list (no sound server answers) the first entry still stands for the
    // default device.
    if (entries.empty()) combo->addItem(whenEmpty, 0);
    for (size_t i = 0; i < entries.size(); ++i) {
        const OutputDeviceEntry& entry = entries[i];
        const QString text = entry.description.empty() || entry.description == entry.name
                                 ? QString::fromStdString(entry.name)
                                 : QString::fromStdString(entry.description + " (" + entry.name + ")");
        combo->addItem(text, static_cast<int>(i));
    }
}

}  // namespace

std::span<const NamedValue> CooperativeLevelChoices() { return kCooperativeLevels; }

OutputPage::OutputPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("Output"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    kindGroup_ = new QButtonGroup(this);

    auto* card = new QGroupBox(this);
    auto* cardLayout = new QFormLayout(card);
    kinds_[kSoundCard] = new QRadioButton(QStringLiteral("Sound card (ALSA)"), card);
    cardLayout->addRow(kinds_[kSoundCard]);
    alsaDevices_ = new QComboBox(card);
    alsaDevices_->setObjectName(QStringLiteral("waveOutDevice"));
    cardLayout->addRow(QStringLiteral("Device:"), alsaDevices_);
    layout->addWidget(card);

    auto* files = new QGroupBox(this);
    auto* filesLayout = new QFormLayout(files);
    kinds_[kWavFiles] = new QRadioButton(QStringLiteral("Decode to .WAV file without playback"), files);
    filesLayout->addRow(kinds_[kWavFiles]);
    auto* directoryRow = new QHBoxLayout;
    decodeDirectory_ = new QLineEdit(files);
    decodeDirectory_->setObjectName(QStringLiteral("decodeDirectory"));
    decodeDirectory_->setMaxLength(kDirectoryLength);
    auto* browse = new QPushButton(QStringLiteral("Browse"), files);
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString chosen = ChooseDirectory(this, QStringLiteral("Select directory for decoded files"),
                                               decodeDirectory_->text());
        if (!chosen.isEmpty()) decodeDirectory_->setText(chosen);
    });
    directoryRow->addWidget(decodeDirectory_, 1);
    directoryRow->addWidget(browse);
    filesLayout->addRow(QStringLiteral("Directory:"), directoryRow);
    layout->addWidget(files);

    auto* server = new QGroupBox(this);
    auto* serverLayout = new QFormLayout(server);
    kinds_[kSoundServer] = new QRadioButton(QStringLiteral("PulseAudio"), server);
    serverLayout->addRow(kinds_[kSoundServer]);
    pulseSinks_ = new QComboBox(server);
    pulseSinks_->setObjectName(QStringLiteral("directSoundDevice"));
    serverLayout->addRow(QStringLiteral("Device:"), pulseSinks_);
    level_ = new QComboBox(server);
    level_->setObjectName(QStringLiteral("directSoundCooperativeLevel"));
    serverLayout->addRow(QStringLiteral("Cooperative level:"), level_);
    auto* note = new QLabel(QLatin1String(kPulseAudioPrefillNote), server);
    note->setWordWrap(true);
    serverLayout->addRow(note);
    layout->addWidget(server);
    layout->addStretch();

    for (int kind = 0; kind < 3; ++kind) kindGroup_->addButton(kinds_[static_cast<size_t>(kind)], kind);
    Load();
}

QRadioButton* OutputPage::KindButton(int outputType) const {
    return outputType >= 0 && outputType < 3 ? kinds_[static_cast<size_t>(outputType)] : nullptr;
}

void OutputPage::Load() {
    const Settings& s = CurrentSettings();
    // An unknown kind shows none of the three and is kept until one is chosen.
    kindGroup_->setExclusive(false);  // an exclusive group cannot be left without a choice
    for (QRadioButton* kind : kinds_) kind->setChecked(false);
    kindGroup_->setExclusive(true);
    if (QRadioButton* kind = KindButton(s.outputType)) kind->setChecked(true);
    decodeDirectory_->setText(QString::fromStdString(s.decodeDirectory));
    FillChoices(level_, kCooperativeLevels, s.directSoundCooperativeLevel);
    SelectDevices();
}

void OutputPage::SelectDevices() {
    const Settings& s = CurrentSettings();
    if (!listed_) {
        // Not listed yet: one entry standing for the stored choice.
        alsaDevices_->clear();
        alsaDevices_->addItem(s.waveOutDevice < 0 ? kWaveMapper : QStringLiteral("Device %1").arg(s.waveOutDevice),
                              s.waveOutDevice + 1);
        pulseSinks_->clear();
        pulseSinks_->addItem(s.directSoundDevice == 0 ? QStringLiteral("Default sink")
                                                      : QStringLiteral("Device %1").arg(s.directSoundDevice),
                             s.directSoundDevice);
        return;
    }
    SelectDevice(alsaDevices_, s.waveOutDevice + 1);
    SelectDevice(pulseSinks_, s.directSoundDevice);
}

void OutputPage::FillDeviceLists(const std::vector<OutputDeviceEntry>& alsa, const std::vector<OutputDeviceEntry>& pulse) {
    // What the user chose before the lists came is what they select now.
    const int alsaChoice = alsaDevices_->currentData().toInt();
    const int pulseChoice = pulseSinks_->currentData().toInt();
    FillDevices(alsaDevices_, alsa, kWaveMapper);
    alsaDevices_->setItemText(0, kWaveMapper);  // -1, ALSA's "default" PCM
    FillDevices(pulseSinks_, pulse, QStringLiteral("Default sink"));
    listed_ = true;
    SelectDevice(alsaDevices_, alsaChoice);
    SelectDevice(pulseSinks_, pulseChoice);
}

void OutputPage::showEvent(QShowEvent* event) {
    OptionsPage::showEvent(event);
    if (!listed_) FillDeviceLists(ListAlsaDevices(), ListPulseDevices());
}

void OutputPage::Apply(Settings& s) {
    for (int kind = 0; kind < 3; ++kind)
        if (kinds_[static_cast<size_t>(kind)]->isChecked()) s.outputType = kind;
    s.decodeDirectory = decodeDirectory_->text().toStdString();
    s.waveOutDevice = alsaDevices_->currentData().toInt() - 1;
    s.directSoundDevice = pulseSinks_->currentData().toInt();
    s.directSoundCooperativeLevel = ChosenValue(level_);
}

}  // namespace verdin
