// The dialogs on the windowed player, driven as a user drives them: the options pages
// into the settings and back, the DSP list and the equalizer heard on a playing stream,
// the presets, track properties and writing a tag, and random entries. (Find is driven
// from the main window.)
#include "WindowKit.h"

#include "engine/stream/Stream.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/equalizer/BandSlider.h"
#include "shell/ui/dialogs/equalizer/EqualizerDialog.h"
#include "shell/ui/dialogs/options/FileTypesBox.h"
#include "shell/ui/dialogs/options/InputPage.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"
#include "shell/ui/dialogs/options/OptionsDialog.h"
#include "shell/ui/dialogs/options/OutputPage.h"
#include "shell/ui/dialogs/options/PlayerPage.h"
#include "shell/ui/dialogs/options/ReplayGainBox.h"
#include "shell/ui/dialogs/options/PluginPages.h"
#include "shell/ui/dialogs/properties/GeneralPageText.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TagPage.h"
#include "shell/ui/dialogs/common/KeptRow.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include "Files.h"
#include "Process.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <variant>

using namespace verdin;
using namespace verdin::test;

namespace {

// The windowed player on a private home seeded with change; the dialogs get its player
// and its main window as their owner. Tracks are read as they are added, so that a
// dialog finds what the window's workers would have read by then.
struct Started {
    explicit Started(const std::function<void(Settings&)>& change = {}) : seeded((home.Seed(change), true)) {
        player.SetDeferredRetrieval(false);
    }
    WindowHome home;
    bool seeded;
    WindowRun run;
    Player& player = run.Core();
    QWidget* owner = &run.Window();
};

const TrackRecord& Track(const Player& player, int row) {
    return static_cast<const TrackItem*>(player.List().ItemAtRow(row).item)->Track();
}

QStringList Texts(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) texts << list->item(i)->text();
    return texts;
}

void Click(const QWidget& parent, const char* button) {
    QTest::mouseClick(parent.findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
}

// The action of a menu or its submenus with this text.
QAction* FindAction(const QMenu* menu, const QString& text) {
    for (QAction* action : menu->findChildren<QAction*>())
        if (action->text() == text) return action;
    return nullptr;
}

// The loudest waveform value heard now.
int32_t Loudness(Player& player) {
    player.TakeAnalyzerSnapshot();
    int32_t loudest = 0;
    for (int channel = 0; channel < 2; ++channel)
        for (int i = 0; i < 576; ++i)
            loudest = std::max(loudest, std::abs(player.CurrentStream()->GetWaveformValue(channel, i) >> 16));
    return loudest;
}

// Waits until what the stream makes from now on is heard: the frames written by now, a
// block it may have made already and holds until there is room (up to its work buffer of
// 25,602 frames), and the equalizer's delay.
bool WaitUntilHeard(const Player& player) {
    const Stream* stream = player.CurrentStream();
    const int64_t target = stream->FramesWritten() + 25602 + 512;
    return WaitUntil([&] { return int64_t{stream->PlayedMilliseconds()} * 44100 / 1000 >= target; });
}

using Bands = std::array<int32_t, 16>;

// The options pages: a settings field, a control by its object name (the field's name) or
// a button by its text, what the control shows and setting it (value invalid: read only).
using Field = std::variant<int32_t Settings::*, std::string Settings::*>;

QVariant Stored(const Settings& s, const Field& field) {
    if (auto* number = std::get_if<int32_t Settings::*>(&field)) return s.**number;
    return QString::fromStdString(s.*std::get<std::string Settings::*>(field));
}

QWidget* Control(const QWidget& dialog, const QString& key) {
    if (auto* named = dialog.findChild<QWidget*>(key)) return named;
    for (auto* button : dialog.findChildren<QAbstractButton*>())
        if (button->text() == key) return button;
    qFatal("no control %s", qPrintable(key));
}

QVariant Shown(QWidget* control, const QVariant& value = {}) {
    const bool set = value.isValid();
    if (auto* edit = qobject_cast<QLineEdit*>(control)) return set ? edit->setText(value.toString()), value : edit->text();
    if (auto* spin = qobject_cast<QSpinBox*>(control)) return set ? spin->setValue(value.toInt()), value : spin->value();
    if (auto* box = qobject_cast<QDoubleSpinBox*>(control)) return set ? box->setValue(value.toDouble()), value : box->value();
    if (auto* slider = qobject_cast<LabelledSlider*>(control)) return set ? slider->SetValue(value.toInt()), value : slider->Value();
    if (auto* combo = qobject_cast<QComboBox*>(control))
        return set ? combo->setCurrentIndex(combo->findText(value.toString())), value : combo->currentText();
    auto* button = qobject_cast<QAbstractButton*>(control);
    return set ? button->setChecked(value.toBool()), value : button->isChecked();
}

void ListDevices(const OptionsDialog& dialog) {
    dialog.PageOf<OutputPage>()->FillDeviceLists({{"default", "Default"}, {"null", "Null"}, {"hw:1", "Card"}},
                                                  {{"sink0", "Speakers"}, {"sink1", "Headphones"}});
}

}  // namespace

class DialogTests : public QObject {
    Q_OBJECT
private slots:
    void optionsApplyIntoTheSettingsAndShowThemAgainUntilReset() {
        Started s([](Settings& odd) {
            odd.bufferSize = 512001;  // not a whole number of kilobytes
            odd.pauseBetweenTracks = 1234;
            odd.playerThreadPriority = 7;  // a step the list does not name
            odd.rebarBitmapIntensity = 250;
            odd.vdpHistory = -3;
            odd.customizedCaption = 5;  // any non-zero value is "on"
            odd.waveOutDevice = 5;      // a card that has gone
            odd.outputType = 7;
        });
        // Opening and applying changes nothing, even where the stored numbers are not what
        // the controls would make of them.
        const std::string file = s.home.Path("config/Brimfell/Verdin.conf"), before = ReadFile(file);
        OptionsDialog dialog(s.owner, s.player);
        ListDevices(dialog);
        QVERIFY(dialog.Apply());
        QCOMPARE(ReadFile(file), before);

        // Each row: a control, what it is set to, and the settings field that stores it.
        const struct {
            const char* control;
            QVariant input;
            Field field;
            QVariant stored;
        } rows[] = {
            {"bufferSize", 300, &Settings::bufferSize, 300 * 1024},
            {"playerThreadPriority", "Above normal", &Settings::playerThreadPriority, 1},
            {"Silent pause of", true, &Settings::pauseBetweenTracks, 1500},
            {"pauseBetweenTracks", 1.5, &Settings::pauseBetweenTracks, 1500},
            {"PulseAudio", true, &Settings::outputType, 2},
            {"waveOutDevice", "Card (hw:1)", &Settings::waveOutDevice, 1},  // list entry 2; "default" is -1
            {"decodeDirectory", "/tmp/decoded", &Settings::decodeDirectory, "/tmp/decoded"},
        };
        for (const auto& row : rows) {
            QVERIFY2(Stored(s.player.GetSettings(), row.field) != row.stored, row.control);
            Shown(Control(dialog, QLatin1String(row.control)), row.input);
        }
        QVERIFY(dialog.Apply());
        const Settings saved = s.home.Saved();
        OptionsDialog again(s.owner, s.player);
        ListDevices(again);
        for (const auto& row : rows) {
            QCOMPARE(Stored(saved, row.field), row.stored);
            QCOMPARE(Shown(Control(again, QLatin1String(row.control))), row.input);
        }
        // A checked file type and the folder commands reach the desktop's files, and show so.
        FileTypesBox* types = again.PageOf<InputPage>()->FileTypes();
        types->Extensions()->item(0)->setCheckState(Qt::Checked);
        types->Folders()->setChecked(true);
        QVERIFY(again.Apply());
        QVERIFY(ReadFile(s.home.Path("config/mimeapps.list")).find("=Verdin.") != std::string::npos);
        QVERIFY(ReadFile(s.home.Path("data/applications/Verdin.Play.desktop")).find(" /PLAY %F\n") != std::string::npos);
        OptionsDialog third(s.owner, s.player);
        QVERIFY(third.PageOf<InputPage>()->FileTypes()->Folders()->isChecked());
        QCOMPARE(third.PageOf<InputPage>()->FileTypes()->Extensions()->item(0)->checkState(), Qt::Checked);
        // The ReplayGain box is saved to a file of its own; the settings record stays as it was.
        const std::string record = ReadFile(file);
        third.PageOf<PlayerPage>()->ReplayGain()->Mode()->setCurrentIndex(2);
        third.PageOf<PlayerPage>()->ReplayGain()->PreAmp()->setValue(-3.5);
        QVERIFY(third.Apply());
        QCOMPARE(ReadFile(file), record);
        const std::string gain = ReadFile(s.home.Path("data/Brimfell/Verdin/ReplayGain.ini"));
        QVERIFY2(gain.find("Mode=album") != std::string::npos && gain.find("PreAmp=-3.5") != std::string::npos, gain.c_str());
        QCOMPARE(OptionsDialog(s.owner, s.player).PageOf<PlayerPage>()->ReplayGain()->Values().preAmpDb, -3.5);

        // "Reset All Options" asks first: No keeps everything, Yes restores the defaults.
        for (auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            ModalWatcher watcher({}, answer);
            s.player.Execute(Action::kResetOptions);
            QCOMPARE(watcher.Boxes().size(), 1);
            QCOMPARE(s.home.Saved().bufferSize, answer == QMessageBox::No ? 300 * 1024 : 512000);
        }
    }

    // A tone plays on the null sound card. Two modules of the bundled DSP library in the
    // active list, in the order chosen, reach it: the voice remover cancels a tone the same
    // in both channels, the stereo widener leaves it alone; a search path without the
    // library keeps the entry, marked. The equalizer's link button links the track to a
    // preset once; its sliders reach the stream at once and Cancel gives it the stored
    // values back; OK stores and saves what the dialog shows.
    void theDspListAndTheEqualizerAreHeardOnAPlayingStream() {
        Started s([](Settings& settings) { settings.bufferSize = 102400; });
        s.player.AddPaths({s.home.Tone("playing.wav", 10)}, -1);
        s.player.PlayRow(0);
        QVERIFY(WaitUntil([&] { return s.player.CurrentStream() && s.player.CurrentStream()->PlayedMilliseconds() >= 200; }));
        const int32_t heard = Loudness(s.player);
        QVERIFY2(heard > 10000, "the tone is heard at about 0.4 of full scale");
        const std::string library = std::string(VERDIN_TEST_PLUGIN_DIR) + "/DSP_Verdin.so";
        OptionsDialog dialog(s.owner, s.player);
        auto* dsp = dialog.PageOf<DspPage>();
        const QStringList available = Texts(dsp->Available());
        for (const char* module : {"Stereo widener", "Voice remover (centre cancel)"}) {
            dsp->Available()->setCurrentRow(static_cast<int>(available.indexOf(QStringLiteral("Verdin DSP modules: ") + module)));
            Click(*dsp, "add");
        }
        Click(*dsp, "moveUp");  // the voice remover is selected
        QVERIFY(dialog.Apply());
        QCOMPARE(s.player.GetSettings().dspPlugins, library + ",1;" + library + ",0;");
        QVERIFY(WaitUntilHeard(s.player));
        QCOMPARE(Loudness(s.player), 0);

        dsp->Active()->setCurrentRow(0);
        Click(*dsp, "remove");
        QVERIFY(dialog.Apply());
        QCOMPARE(s.player.GetSettings().dspPlugins, library + ",0;");
        QVERIFY(WaitUntilHeard(s.player));
        QVERIFY2(Loudness(s.player) > heard * 8 / 10, "heard again without the voice remover");
        dsp->SearchPath()->SetText(QString::fromStdString(s.home.Path("music") + ";"));
        Click(*dsp, "refresh");
        QVERIFY(dialog.Apply());
        QCOMPARE(s.player.GetSettings().dspPlugins, library + ",0;");
        QCOMPARE(Texts(dsp->Active()), QStringList{QString::fromStdString(library + ",0 (not found)")});

        const std::string path = s.player.LoadedTrack()->FullName();
        EqualizerDialog equalizer(s.owner, s.player);
        equalizer.PresetList()->setCurrentRow(0);
        Click(equalizer, "linkTrack");
        Click(equalizer, "linkTrack");
        QCOMPARE(s.player.GetSettings().presets.At(0).links, std::vector<std::string>{path});
        equalizer.EnableBox()->setChecked(true);  // -10 dB on every band and of pre-amp: a tenth
        for (int i = 0; i < 16; ++i) equalizer.Band(i)->SetGain(-10);
        equalizer.PreAmp()->SetGain(-10);
        QVERIFY(WaitUntilHeard(s.player));
        const int32_t quieter = Loudness(s.player);
        QVERIFY2(quieter < heard / 5 && quieter > heard / 20, qPrintable(QStringLiteral("%1 of %2").arg(quieter).arg(heard)));
        equalizer.reject();
        QVERIFY(WaitUntilHeard(s.player));
        QVERIFY2(Loudness(s.player) > heard * 8 / 10, "Cancel gives the stream the stored values");
        QCOMPARE(s.player.GetSettings().equalizerValues, (Bands{}));
        QCOMPARE(s.player.GetSettings().equalize, 0);

        EqualizerDialog ok(s.owner, s.player);
        ok.EnableBox()->setChecked(true);
        ok.Band(2)->SetGain(42);
        ok.accept();
        QCOMPARE(s.home.Saved().equalizerValues, (Bands{0, 0, 10}));  // a slider's top is +10 dB
    }

    // Import appends a file's presets, Export writes the selected one (".eq" added), a link
    // goes with its button; selecting moves the sliders; Save replaces the preset of the
    // typed name by one without links; Default marks; Delete removes. All of it is saved.
    void equalizerPresets() {
        Started s;
        const EqualizerPresetList& presets = s.player.GetSettings().presets;
        WriteFile(s.home.Path("more.eq"), "[Rock]\nBand1=4\nLink1=/a.mp3\nLink2=/b.mp3\n");
        EqualizerDialog dialog(s.owner, s.player);
        {
            ModalWatcher watcher(ChooseFiles({QString::fromStdString(s.home.Path("more.eq"))}));
            dialog.ImportPresets();
        }
        QCOMPARE(Texts(dialog.PresetList()), (QStringList{"All zeroes", "Rock"}));  // the first made without a preset file
        dialog.PresetList()->setCurrentRow(1);
        QCOMPARE(dialog.Gains(), (Bands{4}));
        {
            ModalWatcher watcher(ChooseFiles({QString::fromStdString(s.home.Path("mine"))}));
            dialog.ExportPreset();
        }
        EqualizerPresetList exported;
        exported.LoadFile(s.home.Path("mine.eq"));
        QCOMPARE(exported.Count(), size_t{1});
        QCOMPARE(exported.At(0).links, (std::vector<std::string>{"/a.mp3", "/b.mp3"}));
        dialog.LinkedTracks()->setCurrentRow(1);
        dialog.DeleteLink();
        QCOMPARE(presets.At(1).links, std::vector<std::string>{"/a.mp3"});

        dialog.PresetList()->setCurrentRow(0);
        QCOMPARE(dialog.Gains(), (Bands{}));
        dialog.Band(3)->SetGain(-6);
        dialog.PresetName()->setText(QStringLiteral("Rock"));
        dialog.SavePreset();
        QCOMPARE(presets.At(1).bands, (Bands{0, 0, 0, -6}));
        QVERIFY(presets.At(1).links.empty());
        dialog.SetDefaultPreset();  // the saved preset is selected
        dialog.PresetList()->setCurrentRow(0);
        dialog.DeletePreset();
        EqualizerPresetList saved;
        saved.LoadFile(s.home.Path("data/Brimfell/Verdin/default.eq"));
        QCOMPARE(saved.Count(), size_t{1});
        QCOMPARE(saved.At(0).name + (saved.At(0).isDefault ? " (default)" : ""), std::string("Rock (default)"));
    }

    // Added with retrieval switched off: the question comes first; Yes has the player read
    // the track and opens the dialog on it. A file no module reads: "Unknown file format.",
    // and nothing opens.
    void trackPropertiesAskToRetrieveOrSayUnknownFileFormat() {
        Started s([](Settings& settings) { settings.skipInfoForAnyFile = 1; });
        const std::string tone = s.home.Tone("a.wav", 0.5), noise = s.home.Path("music/noise.xyz");
        WriteFile(noise, "no module reads this");
        s.player.AddPaths({tone, noise}, -1);
        const QString question = QStringLiteral("Verdin: Information for this track is not retrieved.\nDo you want to retrieve it now?");
        QString general;
        {
            ModalWatcher yes(Close([&](QWidget& dialog) { general = static_cast<TrackPropertiesDialog&>(dialog).GeneralText(); }));
            ShowTrackProperties(s.owner, s.player, 0);
            QCOMPARE(yes.Boxes(), QStringList{question});
        }
        // Half a second of 16-bit stereo: 88,200 data bytes behind a 44-byte header.
        QCOMPARE(general, QString::fromStdString(tone + "\n\n88244 bytes\n\n0:00.50\n\n1411 kb/s\n\n44100 Hz\n\n"
                                                        "16 bit stereo\n\n1 : 1.000\n\n"));
        // What no WAV file shows: an hour, an average bit rate, no bit rate at all.
        QCOMPARE(FormatPropertiesDuration(3723450), std::string("1:02:03.45"));
        QCOMPARE(FormatPropertiesBitrate(-192000), std::string("192 kb/s (average)"));
        QCOMPARE(FormatCompressionRatio(44100, 2, 16, 0), std::string("1 : -"));

        {
            ModalWatcher watcher;
            ShowTrackProperties(s.owner, s.player, 1);
            QCOMPARE(watcher.Boxes(), (QStringList{question, "Verdin: Unknown file format."}));
        }

        // The entry goes while its properties are open (a new list, a played track
        // deleted): the dialog closes by itself and nothing is done through it.
        int offered = 0;
        {
            ModalWatcher gone([&](QWidget& dialog) {
                if (++offered == 1) return s.player.ClearList(), false;
                return static_cast<QDialog&>(dialog).reject(), true;  // it stayed open
            });
            ShowTrackProperties(s.owner, s.player, 0);
        }
        QCOMPARE(offered, 1);
    }

    // An MP3 tagged by lame: a write gives the file the edited frames, and the player reads
    // the track again: its title follows. (Why a write fails is the tag writer's; saving an
    // attached picture, the tag file tests'.)
    void aTagWrittenFromThePropertiesIsReadBack() {
        Started s;
        const std::string mp3 = s.home.Path("music/e.mp3");
        const CommandResult lame =
            RunCommand({"lame", "--quiet", "--id3v2-only", "--tt", "Before", "--ta", "Someone", s.home.Tone("e.wav", 1), mp3});
        QVERIFY2(lame.exitCode == 0, lame.output.c_str());
        s.player.AddPaths({mp3}, -1);
        KeptRow kept(s.player, 0);
        TrackPropertiesDialog dialog(s.owner, s.player, kept, Track(s.player, 0));
        dialog.Tags()->EditorOf(FrameId::Title)->setText(QStringLiteral("After"));
        dialog.Tags()->EditorOf(FrameId::Album)->setText(QStringLiteral("New album"));
        Click(*dialog.Tags(), "writeTag");
        TrackTag onDisk;
        ReadTrackTag(mp3, {}, onDisk);
        QCOMPARE(FrameStringValue(onDisk, FrameId::Album), std::string("New album"));
        QCOMPARE(s.player.TrackTitle(Track(s.player, 0)), std::string("Someone - After"));
    }

    // A sample space of one.wav, two.wav and three.wav (1, 2 and 3 seconds). The dialog counts
    // the matching tracks as the expression is typed, and puts variables and a chosen folder
    // in at the caret. An entry shows the track it picked last, or says why there is none;
    // editing it through its row picks anew, cancelling keeps the pick.
    void randomEntriesPreviewInsertEvaluateAndEdit() {
        Started s;
        for (const auto& [name, seconds] : {std::pair{"one", 1.0}, {"two", 2.0}, {"three", 3.0}})
            s.home.Tone(std::string(name) + ".wav", seconds);
        s.player.Execute(Action::kRecreateSampleSpace);

        RandomEntryDialog dialog(s.owner, s.player, "(DURATION > 1)");
        QCOMPARE(dialog.PreviewText(), QStringLiteral("2 of 3 tracks of the sample space match."));
        QLineEdit* field = dialog.ExpressionField();
        field->setText(QStringLiteral("(FILEBODY = \"nothing\")"));
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("0 of 3 tracks of the sample space match."));

        field->setText(QStringLiteral("( < 300) && (YEAR < 1970) && (FILEPATH ~ \"\")"));
        field->setCursorPosition(1);
        FindAction(dialog.IntegerMenu(), QStringLiteral("DURATION\tTrack duration (in seconds)"))->trigger();
        QCOMPARE(field->cursorPosition(), 9);
        field->setSelection(21, 4);  // YEAR
        FindAction(dialog.StringMenu(), QStringLiteral("FILEBODY\tFile body"))->trigger();
        field->setCursorPosition(field->text().size() - 2);  // between the quotes
        {
            ModalWatcher watcher(ChooseFiles({QString::fromStdString(s.home.Path("music"))}));
            dialog.InsertPath();
        }
        QCOMPARE(dialog.Expression(),
                 "(DURATION < 300) && (FILEBODY < 1970) && (FILEPATH ~ \"" + s.home.Path("music") + "\")");

        s.player.AddRandomEntry(-1, "(FILEBODY = \"three\")");
        s.player.AddRandomEntry(-1, "(FILEBODY = \"none\")");
        QString general;
        {
            // (Playing an entry that picks nothing, the window may also warn that the volume
            // cannot be changed.)
            ModalWatcher watcher(Close([&](QWidget& modal) { general = static_cast<TrackPropertiesDialog&>(modal).GeneralText(); }));
            ShowEvaluatedTrackProperties(s.owner, s.player, 0);
            for (int row : {0, 1}) {
                s.player.PlayRow(row);
                s.player.Execute(Action::kStop);
                ShowEvaluatedTrackProperties(s.owner, s.player, row);
            }
            QCOMPARE(watcher.Dialogs(), QStringList{"Track Properties"});
            QCOMPARE(watcher.Boxes().value(0), QStringLiteral("Verdin: This random entry has not picked a track yet."));
            QVERIFY2(watcher.Boxes().contains(QStringLiteral("Verdin: No track of the sample space matches this random entry.")),
                     qPrintable(watcher.Boxes().join(QLatin1String(" | "))));
        }
        QVERIFY2(general.startsWith(QString::fromStdString(s.home.Path("music/three.wav") + "\n\n")), qPrintable(general));
        const auto entry = [&](int row) { return static_cast<const RandomEntry*>(s.player.List().ItemAtRow(row).item); };
        for (bool accept : {false, true}) {
            ModalWatcher watcher(Close([](QWidget& modal) {
                modal.findChild<QLineEdit*>(QStringLiteral("expression"))->setText(QStringLiteral("(DURATION < 60)"));
            }, accept));
            ShowTrackProperties(s.owner, s.player, 1);
            QCOMPARE(watcher.Dialogs(), QStringList{"Random Entry Properties"});
            QCOMPARE(entry(1)->Expression(), std::string(accept ? "(DURATION < 60)" : "(FILEBODY = \"none\")"));
            QCOMPARE(entry(1)->Picked(), !accept);
        }
    }
};

QTEST_MAIN(DialogTests)
#include "DialogTests.moc"
