// "Graphic Equalizer": the sliders, the presets (save, delete, default, links, import,
// export), OK storing and saving, and the sliders reaching a playing stream at once with
// Cancel taking them back.
#include "shell/ui/dialogs/equalizer/BandSlider.h"
#include "shell/ui/dialogs/equalizer/EqualizerDialog.h"

#include "playlist/TrackRecord.h"
#include "settings/store/SettingsStore.h"

#include "DialogTestKit.h"
#include "Files.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

using namespace verdin;

namespace {

std::array<int32_t, 16> Gains(std::initializer_list<int32_t> first) {
    std::array<int32_t, 16> gains{};
    std::copy(first.begin(), first.end(), gains.begin());
    return gains;
}

}  // namespace

class EqualizerDialogTests : public test::CoreTests {
    Q_OBJECT

private slots:
    // Save replaces a preset of the same name by a new one at the end, without links;
    // selecting moves the sliders; Default marks; Delete removes; all of it is saved.
    void savingDeletingAndMarkingPresets() {
        const EqualizerPresetList& presets = player().GetSettings().presets;
        EqualizerDialog dialog(nullptr, player());
        QCOMPARE(test::Texts(dialog.PresetList()), QStringList{"All zeroes"});  // made when there is no preset file
        QCOMPARE(dialog.LinkButton()->text(), QStringLiteral("No tracks playing"));
        dialog.Band(0)->SetGain(5);
        dialog.PresetName()->setText(QStringLiteral("Mine"));
        test::Click(dialog, "savePreset");
        QCOMPARE(test::Texts(dialog.PresetList()), (QStringList{"All zeroes", "Mine"}));
        QCOMPARE(presets.At(1).bands, Gains({5}));
        QCOMPARE(dialog.LinkedTracksCaption(), QStringLiteral("Tracks linked to Mine"));
        QVERIFY(!dialog.LinkButton()->isEnabled());  // nothing plays

        player().ChangeSettings([](Settings& s) { s.presets.At(1).links = {"/music/kept.mp3"}; });
        dialog.PresetList()->setCurrentRow(0);
        QCOMPARE(dialog.Gains(), Gains({}));
        dialog.Band(3)->SetGain(-6);
        dialog.PresetName()->setText(QStringLiteral("Mine"));
        test::Click(dialog, "savePreset");
        QCOMPARE(presets.Count(), size_t{2});
        QCOMPARE(presets.At(1).bands, Gains({0, 0, 0, -6}));
        QVERIFY(presets.At(1).links.empty());

        test::Click(dialog, "defaultPreset");  // the saved preset is selected
        dialog.PresetList()->setCurrentRow(0);
        test::Click(dialog, "deletePreset");
        QCOMPARE(dialog.LinkedTracksCaption(), QStringLiteral("Select preset"));
        dialog.PresetName()->clear();
        test::Click(dialog, "savePreset");  // a preset needs a name
        EqualizerPresetList saved;
        saved.LoadFile(PresetFilePath(fixture->environment));
        QCOMPARE(saved.Count(), size_t{1});
        QCOMPARE(saved.At(0).name + (saved.At(0).isDefault ? " (default)" : ""), std::string("Mine (default)"));
    }

    // Import appends the presets of the chosen file (its rules are the preset list's);
    // Export writes the selected preset into the file chosen, named with ".eq".
    void importingExportingAndDeletingLinks() {
        test::WriteFile(fixture->dir.file("more.eq"), "[Rock]\nBand1=4\nLink1=/a.mp3\n[All zeroes]\nBand2=7\n");
        EqualizerDialog dialog(nullptr, player());
        QString title;
        test::AnswerModals({test::Chooser(QString::fromStdString(fixture->dir.file("more.eq")), &title)});
        test::Click(dialog, "importPresets");
        QCOMPARE(title, QStringLiteral("Import Equalizer Preset"));
        QCOMPARE(test::Texts(dialog.PresetList()), (QStringList{"All zeroes", "Rock"}));
        dialog.PresetList()->setCurrentRow(1);
        QCOMPARE(dialog.Gains(), Gains({4}));
        test::AnswerModals({test::Chooser(QString::fromStdString(fixture->dir.file("mine")), &title)});
        test::Click(dialog, "exportPreset");
        QCOMPARE(title, QStringLiteral("Export Equalizer Preset"));
        EqualizerPresetList exported;
        exported.LoadFile(fixture->dir.file("mine.eq"));
        QCOMPARE(exported.Count(), size_t{1});
        QCOMPARE(exported.At(0).links, std::vector<std::string>{"/a.mp3"});

        QCOMPARE(test::Texts(dialog.LinkedTracks()), QStringList{"/a.mp3"});
        dialog.LinkedTracks()->setCurrentRow(0);
        test::Click(dialog, "deleteLink");
        QCOMPARE(dialog.LinkedTracks()->count(), 0);
        EqualizerPresetList saved;
        saved.LoadFile(PresetFilePath(fixture->environment));
        QCOMPARE(saved.FindByName("Rock"), 1);
        QVERIFY(saved.At(1).links.empty());
    }

    // Cancel stores nothing; OK stores and saves what the dialog shows, and a new dialog
    // shows it again. A slider's top is +10 dB.
    void okStoresAndSavesCancelKeeps() {
        EqualizerDialog cancelled(nullptr, player());
        cancelled.Band(0)->SetGain(-9);
        cancelled.EnableBox()->setChecked(true);
        cancelled.reject();
        QCOMPARE(player().GetSettings().equalizerValues, Gains({}));
        QCOMPARE(player().GetSettings().equalize, 0);

        EqualizerDialog dialog(nullptr, player());
        dialog.EnableBox()->setChecked(true);
        dialog.LoudnessBox()->setChecked(true);
        dialog.Band(0)->SetPosition(13);
        dialog.Band(1)->Slider()->triggerAction(QAbstractSlider::SliderToMaximum);  // dragged by the user
        dialog.Band(2)->SetGain(42);
        dialog.PreAmp()->SetGain(-4);
        dialog.accept();
        Settings stored;
        LoadUserSettings(stored, fixture->environment);
        QCOMPARE(stored.equalizerValues, Gains({-3, 10, 10}));
        QCOMPARE(stored.preAmp, -4);
        QCOMPARE(stored.equalize + stored.loudness + stored.usePresetLinks, 2);
        EqualizerDialog again(nullptr, player());
        QCOMPARE(again.Gains(), Gains({-3, 10, 10}));
        QCOMPARE(again.Band(0)->Position(), 13);
        QCOMPARE(again.PreAmp()->Label(), QStringLiteral("-4dB"));
        QVERIFY(again.EnableBox()->isChecked() && again.LoudnessBox()->isChecked() && !again.PresetLinksBox()->isChecked());
    }

    // A track plays on the ALSA null device: the link button names it, and the sliders
    // reach the stream at once; Cancel gives it the stored values back.
    void withATrackPlaying() {
        if (!test::CoreFixture::NullDevice()) QSKIP("ALSA lists no null device here");
        QVERIFY(fixture->PlayTone());
        const std::string path = player().LoadedTrack()->FullName();
        EqualizerDialog dialog(nullptr, player());
        QCOMPARE(dialog.LinkButton()->text(), QString::fromStdString("Add link for " + path));
        QVERIFY(!dialog.LinkButton()->isEnabled());  // no preset chosen yet
        dialog.PresetList()->setCurrentRow(0);
        test::Click(dialog, "linkTrack");
        test::Click(dialog, "linkTrack");
        QCOMPARE(player().GetSettings().presets.At(0).links, std::vector<std::string>{path});  // once only

        const int32_t before = fixture->Loudness();
        QVERIFY2(before > 10000, "the tone is heard at about half scale");
        dialog.EnableBox()->setChecked(true);  // -10 dB on every band and of pre-amp: a tenth
        for (int i = 0; i < 16; ++i) dialog.Band(i)->SetGain(-10);
        dialog.PreAmp()->SetGain(-10);
        QVERIFY(fixture->WaitUntilHeard());
        const int32_t quieter = fixture->Loudness();
        QVERIFY2(quieter < before / 5 && quieter > before / 20, qPrintable(QStringLiteral("%1 of %2").arg(quieter).arg(before)));
        QCOMPARE(player().GetSettings().equalize, 0);  // the settings change only with OK
        dialog.reject();
        QVERIFY(fixture->WaitUntilHeard());
        QVERIFY2(fixture->Loudness() > before * 8 / 10, "Cancel gives the stream the stored values");
    }
};

[[maybe_unused]] static const bool registered = test::Register<EqualizerDialogTests>();
#include "EqualizerDialogTests.moc"
