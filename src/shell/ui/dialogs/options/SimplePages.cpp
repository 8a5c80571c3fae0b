#include "shell/ui/dialogs/options/SimplePages.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/common/FileChooser.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace verdin {

// The stored texts' sizes, less their terminating zero.
constexpr int kProxyTextLength = 1023;
constexpr int kPathTextLength = 255;

GeneralPage::GeneralPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("General"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(AddFlag(QStringLiteral("Show the splash window at start-up"), &Settings::showSplash));
    layout->addWidget(AddFlag(QStringLiteral("Start playing at start-up"), &Settings::autoPlayAtStartup));
    layout->addWidget(AddFlag(QStringLiteral("Show an icon in the notification area"), &Settings::useTrayIcon));
    layout->addWidget(AddFlag(QStringLiteral("Do not read ID3 tags"), &Settings::ignoreID3Tags));
    layout->addStretch();
    Load();
}

void GeneralPage::Load() { LoadBindings(); }
void GeneralPage::Apply(Settings& s) { ApplyBindings(s); }

InternetPage::InternetPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("Internet"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* proxy = new QGroupBox(QStringLiteral("Proxy"), this);
    auto* form = new QFormLayout(proxy);
    form->addRow(AddFlag(QStringLiteral("Use a proxy server"), &Settings::useProxy, proxy));
    QLineEdit* address = AddText(&Settings::proxyURL, kProxyTextLength, proxy);
    address->setObjectName(QStringLiteral("proxyURL"));
    form->addRow(QStringLiteral("Proxy address:"), address);
    QLineEdit* bypass = AddText(&Settings::proxyByPass, kProxyTextLength, proxy);
    bypass->setObjectName(QStringLiteral("proxyByPass"));
    form->addRow(QStringLiteral("Do not use the proxy for:"), bypass);
    layout->addWidget(proxy);
    layout->addStretch();
    Load();
}

void InternetPage::Load() { LoadBindings(); }
void InternetPage::Apply(Settings& s) { ApplyBindings(s); }

AppearancePage::AppearancePage(Player& player, QWidget* parent)
    : OptionsPage(QStringLiteral("Appearance"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(AddFlag(QStringLiteral("Show the playlist"), &Settings::showPlaylist));
    layout->addWidget(AddFlag(QStringLiteral("Show the volume control"), &Settings::showVolumeControl));
    layout->addWidget(AddFlag(QStringLiteral("Show the window title template in the caption"), &Settings::customizedCaption));
    layout->addWidget(AddFlag(QStringLiteral("Keep the main window on top"), &Settings::normalWindowAlwaysOnTop));
    layout->addWidget(AddFlag(QStringLiteral("Show the position in the mini window"), &Settings::miniWindowShowPosition));

    auto* background = new QGroupBox(QStringLiteral("Tool bands"), this);
    auto* form = new QFormLayout(background);
    form->addRow(AddFlag(QStringLiteral("Draw a bitmap behind the tool bands"), &Settings::useRebarBitmap, background));
    auto* bitmapRow = new QHBoxLayout;
    bitmap_ = AddText(&Settings::rebarBitmap, kPathTextLength, background);
    bitmap_->setObjectName(QStringLiteral("rebarBitmap"));
    auto* browse = new QPushButton(QStringLiteral("Browse"), background);
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString chosen = ChooseFileToOpen(this, QStringLiteral("Select the bitmap"),
                                                QStringLiteral("Bitmaps|*.bmp;*.png;*.jpg|All files|*.*|"));
        if (!chosen.isEmpty()) bitmap_->setText(chosen);
    });
    bitmapRow->addWidget(bitmap_, 1);
    bitmapRow->addWidget(browse);
    form->addRow(QStringLiteral("Bitmap:"), bitmapRow);
    intensity_ = new LabelledSlider(QStringLiteral("Brightness: %1%"), 0, 100, QStringLiteral("0%"),
                                    QStringLiteral("100%"), background);
    form->addRow(intensity_);
    layout->addWidget(background);
    layout->addStretch();
    Load();
}

void AppearancePage::Load() {
    LoadBindings();
    intensity_->SetValue(CurrentSettings().rebarBitmapIntensity);
}

void AppearancePage::Apply(Settings& s) {
    ApplyBindings(s);
    Settings& settings = s;
    // A stored brightness outside the slider's range stays until the slider is moved.
    if (intensity_->Value() != std::clamp(settings.rebarBitmapIntensity, 0, 100))
        settings.rebarBitmapIntensity = intensity_->Value();
}

}  // namespace verdin
