// verdin-dialog-screenshots OUTDIR: shows the graphic equalizer and every page of the
// options dialog on the X display (Xvfb) with sample settings, and saves each window as a
// PNG: equalizer.png and options-<page>.png.
#include "shell/ui/dialogs/equalizer/BandSlider.h"
#include "shell/ui/dialogs/equalizer/EqualizerDialog.h"
#include "shell/ui/dialogs/options/OptionsDialog.h"
#include "shell/ui/dialogs/options/OutputPage.h"

#include "plugins/dsp/DspPluginsText.h"

#include "DialogTestKit.h"
#include "Files.h"

#include <QApplication>
#include <QCheckBox>
#include <QListWidget>
#include <QScreen>
#include <QTimer>
#include <cstdio>

using namespace verdin;

namespace {

// Shows the window, lets it settle and saves what the screen shows of it.
bool Shoot(QWidget& window, const QString& file) {
    window.show();
    window.raise();
    QTimer settle;
    settle.setSingleShot(true);
    QEventLoop loop;
    QObject::connect(&settle, &QTimer::timeout, &loop, &QEventLoop::quit);
    settle.start(400);
    loop.exec();
    const QPixmap shot = window.screen()->grabWindow(window.winId());
    window.hide();
    if (!shot.save(file, "PNG")) {
        std::fprintf(stderr, "cannot save %s\n", qPrintable(file));
        return false;
    }
    std::printf("%s %dx%d\n", qPrintable(file), shot.width(), shot.height());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTDIR\n", argv[0]);
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    test::CoreFixture fixture;
    Settings& settings = fixture.settings;
    test::WriteFile(fixture.dir.file("presets.eq"),
                    "[Rock]\nBand1=5\nBand2=4\nBand3=2\nBand6=-2\nBand7=-3\nBand12=2\nBand14=4\nBand15=5\nBand16=5\n"
                    "PreAmp=-2\nLink1=/home/ann/Music/Live/Highway.mp3\nLink2=/home/ann/Music/Live/Thunder.flac\n"
                    "[Voice]\nBand1=-6\nBand2=-4\nBand8=3\nBand9=4\nBand10=3\nPreAmp=0\nDefault=1\n"
                    "[Late night]\nBand1=3\nBand2=2\nBand15=-2\nBand16=-3\nPreAmp=-4\n");
    settings.presets.LoadFile(fixture.dir.file("presets.eq"));
    settings.equalize = 1;
    settings.usePresetLinks = 1;
    const std::vector<DspModuleRef> active{{std::string(VERDIN_TEST_PLUGIN_DIR) + "/DSP_Verdin.so", 0}};
    fixture.core->ApplyDspModules(settings.dspPluginsSearchPath, active);

    bool ok = true;
    {
        EqualizerDialog equalizer(nullptr, *fixture.core);
        equalizer.PresetList()->setCurrentRow(1);
        ok &= Shoot(equalizer, out + "/equalizer.png");
    }
    const struct {
        const char* page;
        const char* file;
    } pages[] = {
        {"General", "options-general.png"},   {"Player", "options-player.png"},
        {"Output", "options-output.png"},     {"Playlist", "options-playlist.png"},
        {"Strings", "options-strings.png"},   {"Input", "options-input.png"},
        {"Visualization", "options-visualization.png"},
        {"Digital Signal Processing (DSP)", "options-dsp.png"},
        {"General Purpose", "options-general-purpose.png"},
        {"Internet", "options-internet.png"}, {"Appearance", "options-appearance.png"},
    };
    settings.visualizationPluginsSearchPath = std::string(VERDIN_PROBE_DIR) + ";";
    settings.visualizationPlugins = std::string(VERDIN_PROBE_DIR) + "/probe_vis.so,0;";
    settings.generalPurposePluginsSearchPath = std::string(VERDIN_PROBE_DIR) + ";";
    for (const auto& shot : pages) {
        OptionsDialog options(nullptr, *fixture.core, QString::fromLatin1(shot.page));
        ok &= Shoot(options, out + QLatin1Char('/') + QLatin1String(shot.file));
    }
    return ok ? 0 : 1;
}
