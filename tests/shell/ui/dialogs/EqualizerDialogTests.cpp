// "Graphic Equalizer": sliders and labels, the preset rules end to end (save, delete,
// default, link, import, export), OK storing and saving, and a changed slider reaching
// the equalizer of a stream that plays on the ALSA null device.
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/equalizer/BandSlider.h"
#include "shell/ui/dialogs/equalizer/EqualizerDialog.h"

#include "engine/stream/Stream.h"
#include "settings/store/SettingsStore.h"

#include "DialogTestKit.h"
#include "Files.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QtTest>
#include <algorithm>
#include <cstdlib>

using namespace verdin;

namespace {

QPushButton* ButtonOf(const QWidget& dialog, const char* name) {
    auto* button = dialog.findChild<QPushButton*>(QLatin1String(name));
    if (!button) qFatal("no button %s", name);
    return button;
}

QStringList Items(const QListWidget* list) {
    QStringList items;
    for (int i = 0; i < list->count(); ++i) items << list->item(i)->text();
    return items;
}

std::array<int32_t, 16> Gains(std::initializer_list<int32_t> first) {
    std::array<int32_t, 16> gains{};
    std::copy(first.begin(), first.end(), gains.begin());
    return gains;
}

// The loudest waveform value the listener hears now (both channels).
int32_t Loudness(Stream& stream) {
    stream.TakeAnalyzerSnapshot();
    int32_t loudest = 0;
    for (int channel = 0; channel < 2; ++channel)
        for (int i = 0; i < 576; ++i) loudest = std::max(loudest, std::abs(stream.GetWaveformValue(channel, i) >> 16));
    return loudest;
}

}  // namespace

class EqualizerDialogTests : public QObject {
    Q_OBJECT

private slots:
    void init() { fixture_ = std::make_unique<test::CoreFixture>(); }
    void cleanup() { fixture_.reset(); }

    void slidersShowTheStoredGainsWithTheirLabels() {
        Settings& settings = fixture_->settings;
        settings.equalizerValues = Gains({10, -10, 3, 0, -4});
        settings.preAmp = -7;
        settings.equalize = 1;
        settings.loudness = 1;
        EqualizerDialog dialog(nullptr, *fixture_->core);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Graphic Equalizer"));
        const int expectedPositions[] = {0, 20, 7, 10, 14};
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(dialog.Band(i)->Gain(), settings.equalizerValues[static_cast<size_t>(i)]);
            QCOMPARE(dialog.Band(i)->Position(), expectedPositions[i]);  // 10 - gain: the top is +10 dB
        }
        QCOMPARE(dialog.Band(0)->Label(), QStringLiteral("10dB"));
        QCOMPARE(dialog.Band(1)->Label(), QStringLiteral("-10dB"));
        QCOMPARE(dialog.PreAmp()->Label(), QStringLiteral("-7dB"));
        QVERIFY(dialog.EnableBox()->isChecked());
        QVERIFY(dialog.LoudnessBox()->isChecked());
        QVERIFY(!dialog.PresetLinksBox()->isChecked());
        QCOMPARE(dialog.EnableBox()->text(), QStringLiteral("Enable equalizer"));
        QCOMPARE(dialog.PresetLinksBox()->text(), QStringLiteral("Use preset links"));
        QCOMPARE(dialog.LoudnessBox()->text(), QStringLiteral("Loudness"));

        dialog.Band(15)->SetPosition(13);
        QCOMPARE(dialog.Band(15)->Gain(), -3);
        // Dragged by the user: the slider's own value moves the gain the same way.
        dialog.Band(14)->Slider()->triggerAction(QAbstractSlider::SliderToMaximum);
        QCOMPARE(dialog.Band(14)->Gain(), 10);
        QCOMPARE(dialog.Band(14)->Label(), QStringLiteral("10dB"));
        QCOMPARE(dialog.Band(15)->Label(), QStringLiteral("-3dB"));
        dialog.Band(2)->SetGain(42);
        QCOMPARE(dialog.Band(2)->Gain(), 10);

        QStringList bands;
        for (int i = 0; i < 16; ++i) bands << QLatin1String(kBandLabels[static_cast<size_t>(i)]);
        QCOMPARE(bands.join(QLatin1Char(' ')), QStringLiteral("50Hz 130Hz 220Hz 300Hz 430Hz 600Hz 820Hz 1.2kHz 1.7kHz "
                                                              "2.4kHz 3.3kHz 4.7kHz 6.7kHz 9.4kHz 13kHz 19kHz"));
    }

    // Save replaces a preset of the same name by a new one at the end (without links),
    // Delete removes the selection, Default marks it; selecting moves the sliders.
    void savingDeletingAndMarkingPresets() {
        EqualizerPresetList& presets = fixture_->settings.presets;
        QCOMPARE(presets.Count(), size_t{1});  // "All zeroes", made when there is no preset file
        EqualizerDialog dialog(nullptr, *fixture_->core);
        QCOMPARE(Items(dialog.PresetList()), QStringList{QStringLiteral("All zeroes")});
        QCOMPARE(dialog.LinkedTracksCaption(), QStringLiteral("Select preset"));

        dialog.Band(0)->SetGain(5);
        dialog.PreAmp()->SetGain(-2);
        dialog.PresetName()->setText(QStringLiteral("Mine"));
        QTest::mouseClick(ButtonOf(dialog, "savePreset"), Qt::LeftButton);
        QCOMPARE(Items(dialog.PresetList()), (QStringList{QStringLiteral("All zeroes"), QStringLiteral("Mine")}));
        QCOMPARE(presets.At(1).bands[0], 5);
        QCOMPARE(presets.At(1).preAmp, -2);
        QCOMPARE(dialog.LinkedTracksCaption(), QStringLiteral("Tracks linked to Mine"));

        presets.At(1).links.push_back("/music/kept.mp3");
        dialog.PresetList()->setCurrentRow(0);
        QCOMPARE(dialog.Band(0)->Gain(), 0);  // selecting moves the sliders to the preset
        QCOMPARE(dialog.PreAmp()->Gain(), 0);
        QCOMPARE(dialog.LinkedTracksCaption(), QStringLiteral("Tracks linked to All zeroes"));
        dialog.Band(3)->SetGain(-6);
        dialog.PresetName()->setText(QStringLiteral("Mine"));
        QTest::mouseClick(ButtonOf(dialog, "savePreset"), Qt::LeftButton);
        QCOMPARE(presets.Count(), size_t{2});
        QCOMPARE(presets.At(1).name, std::string("Mine"));
        QCOMPARE(presets.At(1).bands, Gains({0, 0, 0, -6}));
        QVERIFY(presets.At(1).links.empty());  // the replacing preset starts without links

        dialog.PresetList()->setCurrentRow(1);
        QTest::mouseClick(ButtonOf(dialog, "defaultPreset"), Qt::LeftButton);
        QVERIFY(presets.At(1).isDefault);
        QVERIFY(!presets.At(0).isDefault);

        dialog.PresetList()->setCurrentRow(0);
        QTest::mouseClick(ButtonOf(dialog, "deletePreset"), Qt::LeftButton);
        QCOMPARE(Items(dialog.PresetList()), QStringList{QStringLiteral("Mine")});
        QCOMPARE(dialog.LinkedTracksCaption(), QStringLiteral("Select preset"));
        QVERIFY(!ButtonOf(dialog, "deletePreset")->isEnabled());

        dialog.PresetName()->clear();
        QTest::mouseClick(ButtonOf(dialog, "savePreset"), Qt::LeftButton);
        QCOMPARE(presets.Count(), size_t{1});  // a preset needs a name
    }

    void importingAppendsNewNamesOnly() {
        const std::string file = fixture_->dir.file("more.eq");
        test::WriteFile(file,
                        "[Rock]\nBand1=4\nBand16=2\nPreAmp=-1\nLink1=/a.mp3\nLink3=/c.mp3\n"
                        "[Rock]\nBand1=9\nPreAmp=0\n"
                        "[All zeroes]\nBand2=7\nPreAmp=0\n"
                        "[Soft]\nPreAmp=-5\nDefault=1\n");
        EqualizerDialog dialog(nullptr, *fixture_->core);
        QString title;
        test::ChooseInNextFileDialog(QString::fromStdString(file), &title);
        QTest::mouseClick(ButtonOf(dialog, "importPresets"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("Import Equalizer Preset"));
        QCOMPARE(Items(dialog.PresetList()),
                 (QStringList{QStringLiteral("All zeroes"), QStringLiteral("Rock"), QStringLiteral("Soft")}));
        const EqualizerPresetList& presets = fixture_->settings.presets;
        QCOMPARE(presets.At(0).bands[1], 0);  // the preset already there wins
        QCOMPARE(presets.At(1).bands[0], 4);  // the first section of a name wins
        QCOMPARE(presets.At(1).bands[15], 2);
        QCOMPARE(presets.At(1).links, std::vector<std::string>{"/a.mp3"});  // links stop at the first gap
        QVERIFY(presets.At(2).isDefault);

        dialog.PresetList()->setCurrentRow(1);
        QCOMPARE(Items(dialog.LinkedTracks()), QStringList{QStringLiteral("/a.mp3")});
        dialog.LinkedTracks()->setCurrentRow(0);
        QTest::mouseClick(ButtonOf(dialog, "deleteLink"), Qt::LeftButton);
        QVERIFY(presets.At(1).links.empty());
        QCOMPARE(dialog.LinkedTracks()->count(), 0);
    }

    // The exported file gets ".eq" unless its name already ends so (in any case); the
    // other sections of an existing file stay.
    void exportingNamesTheFileAndKeepsOtherSections() {
        EqualizerPresetList& presets = fixture_->settings.presets;
        presets.At(0).bands[4] = 3;
        presets.At(0).links = {"/x.mp3"};
        EqualizerDialog dialog(nullptr, *fixture_->core);
        dialog.PresetList()->setCurrentRow(0);
        const std::string upper = fixture_->dir.file("mine.EQ");
        test::WriteFile(upper, "[Other]\nPreAmp=2\n");
        const struct {
            std::string chosen;
            std::string written;
        } cases[] = {
            {fixture_->dir.file("mine.txt"), fixture_->dir.file("mine.txt.eq")},
            {fixture_->dir.file("plain"), fixture_->dir.file("plain.eq")},
            {upper, upper},
        };
        for (const auto& c : cases) {
            QString title;
            test::ChooseInNextFileDialog(QString::fromStdString(c.chosen), &title);
            QTest::mouseClick(ButtonOf(dialog, "exportPreset"), Qt::LeftButton);
            QCOMPARE(title, QStringLiteral("Export Equalizer Preset"));
            QVERIFY2(test::FileExists(c.written), c.written.c_str());
            EqualizerPresetList read;
            read.LoadFile(c.written);
            const int index = read.FindByName("All zeroes");
            QVERIFY2(index >= 0, c.written.c_str());
            QCOMPARE(read.At(static_cast<size_t>(index)).bands[4], 3);
            QCOMPARE(read.At(static_cast<size_t>(index)).links, std::vector<std::string>{"/x.mp3"});
        }
        QVERIFY(!test::FileExists(fixture_->dir.file("mine.txt")));
        EqualizerPresetList kept;
        kept.LoadFile(upper);
        QCOMPARE(kept.FindByName("Other"), 0);
    }

    void okStoresTheDialogAndSavesTheSettings() {
        EqualizerDialog dialog(nullptr, *fixture_->core);
        dialog.EnableBox()->setChecked(true);
        dialog.PresetLinksBox()->setChecked(true);
        dialog.LoudnessBox()->setChecked(true);
        for (int i = 0; i < 16; ++i) dialog.Band(i)->SetGain(i % 7 - 3);
        dialog.PreAmp()->SetGain(4);
        dialog.PresetName()->setText(QStringLiteral("Saved"));
        dialog.SavePreset();
        dialog.accept();

        Settings stored;
        LoadUserSettings(stored, fixture_->environment);
        QCOMPARE(stored.equalize, 1);
        QCOMPARE(stored.usePresetLinks, 1);
        QCOMPARE(stored.loudness, 1);
        QCOMPARE(stored.preAmp, 4);
        for (size_t i = 0; i < 16; ++i) QCOMPARE(stored.equalizerValues[i], static_cast<int32_t>(i % 7) - 3);
        QVERIFY(stored.presets.FindByName("Saved") >= 0);  // the preset file was written too
    }

    void cancelKeepsTheStoredValues() {
        fixture_->settings.equalizerValues = Gains({1, 2, 3});
        EqualizerDialog dialog(nullptr, *fixture_->core);
        dialog.Band(0)->SetGain(-9);
        dialog.EnableBox()->setChecked(true);
        dialog.reject();
        QCOMPARE(fixture_->settings.equalizerValues, Gains({1, 2, 3}));
        QCOMPARE(fixture_->settings.equalize, 0);
    }

    void withoutATrackThereIsNothingToLink() {
        EqualizerDialog dialog(nullptr, *fixture_->core);
        dialog.PresetList()->setCurrentRow(0);
        QCOMPARE(dialog.LinkButton()->text(), QStringLiteral("No tracks playing"));
        QVERIFY(!dialog.LinkButton()->isEnabled());
    }

    // A track plays on the ALSA null device: the link button names it, and a slider's
    // change reaches the stream's equalizer at once (Cancel takes it back).
    void withATrackPlaying() {
        const int nullDevice = test::CoreFixture::AlsaNullDevice();
        if (nullDevice < -1) QSKIP("ALSA lists no null device here");
        Settings& settings = fixture_->settings;
        settings.outputType = 0;
        settings.waveOutDevice = nullDevice;
        settings.bufferSize = 102400;
        settings.bufferPrefill = 10;
        PlayerCore& core = *fixture_->core;
        const std::string path = fixture_->Tone("playing.wav", 10.0, 0.5);
        core.AddPaths({path}, -1);
        core.Play();
        Stream* stream = core.CurrentStream();
        QVERIFY(stream);
        QTRY_VERIFY_WITH_TIMEOUT(stream->PlayedMilliseconds() >= 200, 5000);

        EqualizerDialog dialog(nullptr, core);
        QCOMPARE(dialog.LinkButton()->text(), QString::fromStdString("Add link for " + path));
        QVERIFY(!dialog.LinkButton()->isEnabled());  // no preset chosen yet
        dialog.PresetList()->setCurrentRow(0);
        QVERIFY(dialog.LinkButton()->isEnabled());
        QTest::mouseClick(dialog.LinkButton(), Qt::LeftButton);
        QTest::mouseClick(dialog.LinkButton(), Qt::LeftButton);
        QCOMPARE(settings.presets.At(0).links, std::vector<std::string>{path});  // once only
        QCOMPARE(Items(dialog.LinkedTracks()), QStringList{QString::fromStdString(path)});

        const int32_t before = Loudness(*stream);
        QVERIFY2(before > 10000, "the tone is heard at about half scale");
        // -10 dB on every band and -10 dB of pre-amp: a tenth of the amplitude.
        dialog.EnableBox()->setChecked(true);
        for (int i = 0; i < 16; ++i) dialog.Band(i)->SetGain(-10);
        dialog.PreAmp()->SetGain(-10);
        WaitUntilHeard(*stream, stream->FramesWritten());
        if (QTest::currentTestFailed()) return;
        const int32_t quieter = Loudness(*stream);
        QVERIFY2(quieter < before / 5 && quieter > before / 20,
                 qPrintable(QStringLiteral("%1 after the change, %2 before").arg(quieter).arg(before)));
        QCOMPARE(settings.equalize, 0);  // the settings change only with OK

        dialog.reject();  // the stored values go back to the stream
        WaitUntilHeard(*stream, stream->FramesWritten());
        if (QTest::currentTestFailed()) return;
        const int32_t restored = Loudness(*stream);
        QVERIFY2(restored > before * 8 / 10, qPrintable(QStringLiteral("%1 after Cancel").arg(restored)));
        core.Stop();
    }

private:
    // Waits until what the stream makes from now on is heard: the frames written by now,
    // then a block it may have made already and holds until there is room (up to the
    // work buffer of 25,602 frames), and the equalizer's delay of up to 511 frames.
    static void WaitUntilHeard(Stream& stream, int64_t written) {
        const int64_t target = written + 25602 + 512;
        QTRY_VERIFY_WITH_TIMEOUT(static_cast<int64_t>(stream.PlayedMilliseconds()) * 44100 / 1000 >= target, 10000);
    }

    std::unique_ptr<test::CoreFixture> fixture_;
};

QTEST_MAIN(EqualizerDialogTests)
#include "EqualizerDialogTests.moc"
