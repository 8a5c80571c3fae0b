#include "shell/ui/dialogs/options/ReplayGainBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>

namespace verdin {

namespace {

QDoubleSpinBox* DecibelBox(const QString& name, QWidget* parent) {
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(name);
    box->setRange(ReplayGainSettings::kMinDb, ReplayGainSettings::kMaxDb);
    box->setDecimals(1);
    box->setSingleStep(0.5);
    box->setSuffix(QStringLiteral(" dB"));
    return box;
}

}  // namespace

ReplayGainBox::ReplayGainBox(QWidget* parent) : QGroupBox(QStringLiteral("ReplayGain"), parent) {
    auto* form = new QFormLayout(this);
    mode_ = new QComboBox(this);
    mode_->setObjectName(QStringLiteral("replayGainMode"));
    // In the order of ReplayGainMode.
    mode_->addItems({QStringLiteral("Off"), QStringLiteral("Track gain"),
                     QStringLiteral("Album gain (track gain where there is none)")});
    form->addRow(QStringLiteral("Apply:"), mode_);
    preAmp_ = DecibelBox(QStringLiteral("replayGainPreAmp"), this);
    form->addRow(QStringLiteral("Pre-amp for tagged tracks:"), preAmp_);
    untagged_ = DecibelBox(QStringLiteral("replayGainUntagged"), this);
    form->addRow(QStringLiteral("Gain for untagged tracks:"), untagged_);
    preventClipping_ = new QCheckBox(QStringLiteral("Prevent clipping (by the tagged peak)"), this);
    preventClipping_->setObjectName(QStringLiteral("replayGainPreventClipping"));
    form->addRow(preventClipping_);
}

void ReplayGainBox::Load(const ReplayGainSettings& settings) {
    mode_->setCurrentIndex(static_cast<int>(settings.mode));
    preAmp_->setValue(settings.preAmpDb);
    untagged_->setValue(settings.untaggedGainDb);
    preventClipping_->setChecked(settings.preventClipping);
}

ReplayGainSettings ReplayGainBox::Values() const {
    ReplayGainSettings settings;
    settings.mode = static_cast<ReplayGainMode>(mode_->currentIndex());
    settings.preAmpDb = preAmp_->value();
    settings.untaggedGainDb = untagged_->value();
    settings.preventClipping = preventClipping_->isChecked();
    return settings;
}

}  // namespace verdin
