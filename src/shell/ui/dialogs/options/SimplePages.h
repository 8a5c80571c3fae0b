#pragma once
// The pages that are check boxes and text fields only: "General", "Internet" and
// "Appearance".
#include "shell/ui/dialogs/options/OptionsPage.h"

class QLineEdit;
class QSlider;

namespace verdin {

class LabelledSlider;

// Start-up and tags: "showSplash", "autoPlayAtStartup", "useTrayIcon", "ignoreID3Tags".
class GeneralPage : public OptionsPage {
    Q_OBJECT
public:
    explicit GeneralPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;
};

// The network reader's proxy: "useProxy", "proxyURL", "proxyByPass".
class InternetPage : public OptionsPage {
    Q_OBJECT
public:
    explicit InternetPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;
};

// What the windows show: "showPlaylist", "showVolumeControl", "customizedCaption",
// "normalWindowAlwaysOnTop", "miniWindowShowPosition", "useRebarBitmap", "rebarBitmap",
// "rebarBitmapIntensity".
class AppearancePage : public OptionsPage {
    Q_OBJECT
public:
    explicit AppearancePage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;

private:
    QLineEdit* bitmap_ = nullptr;
    LabelledSlider* intensity_ = nullptr;
};

}  // namespace verdin
