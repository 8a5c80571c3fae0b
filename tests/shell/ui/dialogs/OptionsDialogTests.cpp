// The options dialog: its eleven pages, what each page edits going through the settings
// file and back, the insert-variable menus, the device lists, the plug-in pages with
// their probe plug-ins, and "Reset All Options".
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/options/InputPage.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"
#include "shell/ui/dialogs/options/OptionsDialog.h"
#include "shell/ui/dialogs/options/OutputPage.h"
#include "shell/ui/dialogs/options/PlayerPage.h"
#include "shell/ui/dialogs/options/PlaylistPage.h"
#include "shell/ui/dialogs/options/PluginPages.h"
#include "shell/ui/dialogs/options/SimplePages.h"
#include "shell/ui/dialogs/options/StringsPage.h"

#include "plugins/dsp/DspHost.h"
#include "plugins/dsp/DspLibraryList.h"
#include "settings/store/SettingsStore.h"

#include "DialogTestKit.h"
#include "Files.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QtTest>
#include <filesystem>

using namespace verdin;

namespace {

QCheckBox* Box(QWidget* page, const QString& text) {
    for (QCheckBox* box : page->findChildren<QCheckBox*>())
        if (box->text() == text) return box;
    qFatal("no check box \"%s\" on %s", qPrintable(text), qPrintable(page->objectName()));
}

template <typename Widget>
Widget* Named(QWidget* page, const char* name) {
    auto* widget = page->findChild<Widget*>(QLatin1String(name));
    if (!widget) qFatal("no %s on %s", name, qPrintable(page->objectName()));
    return widget;
}

QStringList Texts(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) texts << list->item(i)->text();
    return texts;
}

QAction* FindAction(const QMenu* menu, const QString& text, QString* group = nullptr) {
    for (QAction* action : menu->actions()) {
        if (action->menu()) {
            if (QAction* found = FindAction(action->menu(), text)) {
                if (group) *group = action->text();
                return found;
            }
        } else if (action->text() == text) {
            return action;
        }
    }
    return nullptr;
}

int Select(QComboBox* combo, const QString& text) {
    const int index = combo->findText(text);
    if (index < 0) qFatal("no choice %s", qPrintable(text));
    combo->setCurrentIndex(index);
    return index;
}

}  // namespace

class OptionsDialogTests : public QObject {
    Q_OBJECT

private slots:
    void init() {
        fixture_ = std::make_unique<test::CoreFixture>();
        log_ = fixture_->probeLog;
    }
    void cleanup() { fixture_.reset(); }

    void theElevenPagesInTheirOrder() {
        OptionsDialog dialog(nullptr, *fixture_->core, QStringLiteral("Strings"));
        QStringList titles;
        for (OptionsPage* page : dialog.Pages()) titles << page->Title();
        QCOMPARE(titles, (QStringList{"General", "Player", "Output", "Playlist", "Strings", "Input", "Visualization",
                                      "Digital Signal Processing (DSP)", "General Purpose", "Internet", "Appearance"}));
        QCOMPARE(dialog.CurrentPage()->Title(), QStringLiteral("Strings"));
        OptionsDialog first(nullptr, *fixture_->core, QStringLiteral("No such page"));
        QCOMPARE(first.CurrentPage()->Title(), QStringLiteral("General"));
    }

    // Every page's controls changed, applied, saved, read back from the settings file.
    void optionsRoundTripThroughTheSettingsFile() {
        Settings& settings = fixture_->settings;
        OptionsDialog dialog(nullptr, *fixture_->core);

        auto* general = dialog.PageOf<GeneralPage>();
        Box(general, QStringLiteral("Show the splash window at start-up"))->setChecked(false);
        Box(general, QStringLiteral("Start playing at start-up"))->setChecked(true);
        Box(general, QStringLiteral("Do not read ID3 tags"))->setChecked(true);

        auto* player = dialog.PageOf<PlayerPage>();
        player->BufferKilobytes()->setValue(300);
        player->Prefill()->SetValue(40);
        QCOMPARE(player->Prefill()->Label(), QStringLiteral("Buffer pre-fill: 40%"));
        Select(player->ThreadPriority(), QStringLiteral("Above normal"));
        Select(player->ProcessPriority(), QStringLiteral("Normal"));
        player->PauseBox()->setChecked(true);
        player->PauseSeconds()->setValue(1.5);
        Box(player, QStringLiteral("Crossfade with maximum length of"))->setChecked(true);
        player->CrossfadeSeconds()->setValue(4.0);
        Box(player, QStringLiteral("Skip silence in the beginning of a track"))->setChecked(true);
        Box(player, QStringLiteral("Skip silence in the end of a track (only within buffer)"))->setChecked(true);
        player->SilenceLevel()->SetValue(-60);
        QCOMPARE(player->SilenceLevel()->Label(), QStringLiteral("Intensity level for silence: -60 dB"));

        auto* output = dialog.PageOf<OutputPage>();
        output->FillDeviceLists({{"default", "Default device"}, {"null", "Discard all samples"}, {"hw:1", "Card"}},
                                {{"sink0", "Speakers"}, {"sink1", "Headphones"}});
        QCOMPARE(output->AlsaDevices()->itemText(0), QStringLiteral("Wave Mapper"));
        output->KindButton(2)->setChecked(true);
        output->AlsaDevices()->setCurrentIndex(2);
        output->PulseSinks()->setCurrentIndex(1);
        Select(output->CooperativeLevel(), QStringLiteral("Exclusive"));
        output->DecodeDirectory()->setText(QStringLiteral("/tmp/decoded"));

        auto* playlist = dialog.PageOf<PlaylistPage>();
        Box(playlist, QStringLiteral("URLs when added to the playlist"))->setChecked(true);
        Box(playlist, QStringLiteral("Files on a CD-ROM when added to the playlist"))->setChecked(true);
        Box(playlist, QStringLiteral("Delete tracks from the playlist after playing"))->setChecked(true);
        Box(playlist, QStringLiteral("Perform Open/Add/Insert Directory recursively"))->setChecked(true);
        Box(playlist, QStringLiteral("Recurse subdirectories"))->setChecked(true);
        playlist->SampleSpacePath()->SetText(QStringLiteral("/music/a;/music/b;"));
        playlist->History()->setValue(7);

        auto* strings = dialog.PageOf<StringsPage>();
        strings->TrackTitle()->setText(QStringLiteral("%TITLE% (%ALBUM%)"));
        strings->WindowTitle()->setText(QStringLiteral("%title%"));
        strings->StatusString()->setText(QStringLiteral("%time% of %dur%"));

        auto* input = dialog.PageOf<InputPage>();
        input->SearchPath()->SetText(QStringLiteral("/plugins/in;"));

        auto* internet = dialog.PageOf<InternetPage>();
        Box(internet, QStringLiteral("Use a proxy server"))->setChecked(true);
        Named<QLineEdit>(internet, "proxyURL")->setText(QStringLiteral("http://proxy:3128"));
        Named<QLineEdit>(internet, "proxyByPass")->setText(QStringLiteral("localhost;*.lan"));

        auto* appearance = dialog.PageOf<AppearancePage>();
        Box(appearance, QStringLiteral("Show the playlist"))->setChecked(false);
        Box(appearance, QStringLiteral("Keep the main window on top"))->setChecked(true);
        Named<QLineEdit>(appearance, "rebarBitmap")->setText(QStringLiteral("/pictures/back.bmp"));

        const int refreshes = fixture_->host.refreshes;
        QVERIFY(dialog.Apply());
        QVERIFY(fixture_->host.refreshes > refreshes);

        Settings stored;
        LoadUserSettings(stored, fixture_->environment);
        QCOMPARE(stored.showSplash, 0);
        QCOMPARE(stored.autoPlayAtStartup, 1);
        QCOMPARE(stored.ignoreID3Tags, 1);
        QCOMPARE(stored.bufferSize, 300 * 1024);
        QCOMPARE(stored.bufferPrefill, 40);
        QCOMPARE(stored.playerThreadPriority, 1);
        QCOMPARE(stored.processPriorityClass, 32);
        QCOMPARE(stored.pauseBetweenTracks, 1500);
        QCOMPARE(stored.crossfade, 1);
        QCOMPARE(stored.crossfadeLength, 4000);
        QCOMPARE(stored.skipSilenceInTheBeginning, 1);
        QCOMPARE(stored.skipSilenceInTheEnd, 1);
        QCOMPARE(stored.silenceLevel, -60);
        QCOMPARE(stored.outputType, 2);
        QCOMPARE(stored.waveOutDevice, 1);  // list entry 2: device 1 ("default" is -1)
        QCOMPARE(stored.directSoundDevice, 1);
        QCOMPARE(stored.directSoundCooperativeLevel, 3);
        QCOMPARE(stored.decodeDirectory, std::string("/tmp/decoded"));
        QCOMPARE(stored.skipInfoForAnyFile, 0);
        QCOMPARE(stored.skipInfoForURL, 1);
        QCOMPARE(stored.skipInfoForCDROM, 1);
        QCOMPARE(stored.deleteTracksAfterPlaying, 1);
        QCOMPARE(stored.recursiveAddDirectory, 1);
        QCOMPARE(stored.recurseSampleSpaceSearchPath, 1);
        QCOMPARE(stored.sampleSpaceSearchPath, std::string("/music/a;/music/b;"));
        QCOMPARE(stored.vdpHistory, 7);
        QCOMPARE(stored.trackTitleTemplate, std::string("%TITLE% (%ALBUM%)"));
        QCOMPARE(stored.windowTitleTemplate, std::string("%title%"));
        QCOMPARE(stored.statusStringTemplate, std::string("%time% of %dur%"));
        QCOMPARE(stored.inputPluginsSearchPath, std::string("/plugins/in;"));
        QCOMPARE(stored.useProxy, 1);
        QCOMPARE(stored.proxyURL, std::string("http://proxy:3128"));
        QCOMPARE(stored.proxyByPass, std::string("localhost;*.lan"));
        QCOMPARE(stored.showPlaylist, 0);
        QCOMPARE(stored.normalWindowAlwaysOnTop, 1);
        QCOMPARE(stored.rebarBitmap, std::string("/pictures/back.bmp"));
        QCOMPARE(stored.rebarBitmapIntensity, 40);  // untouched

        // A new dialog shows what is stored.
        OptionsDialog again(nullptr, *fixture_->core);
        auto* shown = again.PageOf<PlayerPage>();
        QCOMPARE(shown->BufferKilobytes()->value(), 300);
        QCOMPARE(shown->Prefill()->Label(), QStringLiteral("Buffer pre-fill: 40%"));
        QCOMPARE(shown->ThreadPriority()->currentText(), QStringLiteral("Above normal"));
        QCOMPARE(shown->PauseSeconds()->value(), 1.5);
        QVERIFY(again.PageOf<OutputPage>()->KindButton(2)->isChecked());
        QCOMPARE(again.PageOf<OutputPage>()->CooperativeLevel()->currentText(), QStringLiteral("Exclusive"));
        QCOMPARE(again.PageOf<StringsPage>()->TrackTitle()->text(), QStringLiteral("%TITLE% (%ALBUM%)"));
        QCOMPARE(settings.vdpHistory, 7);
    }

    // Opening and applying without touching anything changes nothing, even where the
    // stored numbers are not what the fields would make of them.
    void untouchedOptionsKeepTheirExactValues() {
        Settings& settings = fixture_->settings;
        settings.bufferSize = 512001;       // not a whole number of kilobytes
        settings.pauseBetweenTracks = 1234; // shown as 1.2 s
        settings.crossfadeLength = 2999;
        settings.playerThreadPriority = 7;  // a step the list does not name
        settings.directSoundCooperativeLevel = 9;
        settings.rebarBitmapIntensity = 250;
        settings.vdpHistory = -3;
        settings.customizedCaption = 5;     // any non-zero value is "on"
        const Settings before = settings;
        OptionsDialog dialog(nullptr, *fixture_->core);
        QCOMPARE(dialog.PageOf<PlayerPage>()->ThreadPriority()->currentText(), QStringLiteral("Other (7)"));
        QVERIFY(dialog.Apply());
        QCOMPARE(settings.bufferSize, before.bufferSize);
        QCOMPARE(settings.pauseBetweenTracks, before.pauseBetweenTracks);
        QCOMPARE(settings.crossfadeLength, before.crossfadeLength);
        QCOMPARE(settings.playerThreadPriority, 7);
        QCOMPARE(settings.directSoundCooperativeLevel, 9);
        QCOMPARE(settings.rebarBitmapIntensity, 250);
        QCOMPARE(settings.vdpHistory, -3);
        QCOMPARE(settings.customizedCaption, 5);
        QCOMPARE(settings.waveOutDevice, before.waveOutDevice);
        QCOMPARE(settings.outputType, before.outputType);
        QCOMPARE(settings.dspPlugins, before.dspPlugins);

        // The buffer field keeps to its limits: 100..2000 kilobytes of 1024 bytes.
        auto* player = dialog.PageOf<PlayerPage>();
        player->BufferKilobytes()->setValue(50);
        QCOMPARE(player->BufferKilobytes()->value(), 100);
        player->BufferKilobytes()->setValue(5000);
        QCOMPARE(player->BufferKilobytes()->value(), 2000);
        player->Prefill()->SetValue(3);
        QCOMPARE(player->Prefill()->Value(), 10);
        player->PauseBox()->setChecked(false);
        dialog.Apply();
        QCOMPARE(settings.bufferSize, 2000 * 1024);
        QCOMPARE(settings.bufferPrefill, 10);
        QCOMPARE(settings.pauseBetweenTracks, 0);
    }

    void theStringsMenusInsertVariableReferences() {
        OptionsDialog dialog(nullptr, *fixture_->core);
        auto* strings = dialog.PageOf<StringsPage>();
        QCOMPARE(strings->TrackTitleMenu()->title(), QStringLiteral("Insert a variable reference into Track Title"));
        QCOMPARE(strings->WindowTitleMenu()->title(), QStringLiteral("Insert a variable reference into Window Title"));
        QCOMPARE(strings->StatusStringMenu()->title(), QStringLiteral("Insert a variable reference into Status String"));

        QString group;
        QVERIFY(FindAction(strings->WindowTitleMenu(), QStringLiteral("%num%\tTrack number"), &group));
        QVERIFY(group.isEmpty());  // not in a submenu
        QVERIFY(FindAction(strings->WindowTitleMenu(), QStringLiteral("%pdur%\tDuration"), &group));
        QCOMPARE(group, QStringLiteral("Playlist"));
        QVERIFY(!FindAction(strings->WindowTitleMenu(), QStringLiteral("%time%\tPlaying time")));
        QVERIFY(FindAction(strings->StatusStringMenu(), QStringLiteral("%time%\tPlaying time"), &group));
        QCOMPARE(group, QStringLiteral("Track"));
        QVERIFY(FindAction(strings->TrackTitleMenu(), QStringLiteral("%LEADARTIST%\tLead performer(s)/Soloist(s)"), &group));
        QCOMPARE(group, QStringLiteral("ID3 Frame"));
        QVERIFY(!FindAction(strings->TrackTitleMenu(), QStringLiteral("%status%\tPlayer status")));

        strings->StatusString()->setText(QStringLiteral("[] left"));
        strings->StatusString()->setCursorPosition(1);
        FindAction(strings->StatusStringMenu(), QStringLiteral("%timel%\tPlaying time left"))->trigger();
        QCOMPARE(strings->StatusString()->text(), QStringLiteral("[%timel%] left"));
        strings->WindowTitle()->setText(QStringLiteral("100"));
        strings->WindowTitle()->setCursorPosition(3);
        FindAction(strings->WindowTitleMenu(), QStringLiteral("%%\t%"))->trigger();
        QCOMPARE(strings->WindowTitle()->text(), QStringLiteral("100%%"));
    }

    void theOutputPageListsDevicesAndTheLevels() {
        Settings& settings = fixture_->settings;
        settings.waveOutDevice = 5;  // a card that has gone
        OptionsDialog dialog(nullptr, *fixture_->core);
        auto* output = dialog.PageOf<OutputPage>();
        QCOMPARE(output->KindButton(1)->text(), QStringLiteral("Decode to .WAV file without playback"));
        output->FillDeviceLists({{"default", "Default device"}, {"null", "Discard all samples"}}, {{"s", "Speakers"}});
        QCOMPARE(output->AlsaDevices()->count(), 3);
        QCOMPARE(output->AlsaDevices()->currentText(), QStringLiteral("Device 6 (not available)"));
        QCOMPARE(output->AlsaDevices()->itemText(1), QStringLiteral("Discard all samples (null)"));
        QStringList levels;
        for (int i = 0; i < output->CooperativeLevel()->count(); ++i) levels << output->CooperativeLevel()->itemText(i);
        QCOMPARE(levels, (QStringList{"Normal", "Priority", "Exclusive"}));
        QCOMPARE(output->CooperativeLevel()->currentText(), QStringLiteral("Priority"));  // the default, 2
        bool noteShown = false;
        for (const QLabel* label : output->findChildren<QLabel*>())
            noteShown |= label->text() == QStringLiteral("Note: It is recommended to use 100% buffer pre-fill with the "
                                                         "PulseAudio output. Buffer pre-fill may be adjusted from the "
                                                         "Decoder section.");
        QVERIFY(noteShown);
        dialog.Apply();
        QCOMPARE(settings.waveOutDevice, 5);
        output->AlsaDevices()->setCurrentIndex(0);
        dialog.Apply();
        QCOMPARE(settings.waveOutDevice, -1);
    }

    // The DSP page: modules of the libraries on the path, the active list in its order,
    // Configure of a temporary instance, and Apply rebuilding the host and "dspPlugins".
    void theDspPageRebuildsTheActiveList() {
        PlayerCore& core = *fixture_->core;
        const std::string probe = std::string(VERDIN_PROBE_DIR) + "/probe_dsp.so";
        OptionsDialog dialog(nullptr, core);
        auto* dsp = dialog.PageOf<DspPage>();
        QCOMPARE(dsp->Title(), QStringLiteral("Digital Signal Processing (DSP)"));
        const QStringList available = Texts(dsp->Available());
        QVERIFY(available.contains(QStringLiteral("Probe DSP: first")));
        QVERIFY(available.contains(QStringLiteral("Probe DSP: second")));
        QVERIFY(!Named<QPushButton>(dsp, "add")->isEnabled());

        dsp->Available()->setCurrentRow(static_cast<int>(available.indexOf(QStringLiteral("Probe DSP: second"))));
        QTest::mouseClick(Named<QPushButton>(dsp, "configureAvailable"), Qt::LeftButton);
        QCOMPARE(QString::fromStdString(test::ReadFile(log_)), QStringLiteral("dsp config second\n"));
        QTest::mouseClick(Named<QPushButton>(dsp, "add"), Qt::LeftButton);
        dsp->Available()->setCurrentRow(static_cast<int>(available.indexOf(QStringLiteral("Probe DSP: first"))));
        QTest::mouseClick(Named<QPushButton>(dsp, "add"), Qt::LeftButton);
        QCOMPARE(Texts(dsp->Active()), (QStringList{"Probe DSP: second", "Probe DSP: first"}));
        QTest::mouseClick(Named<QPushButton>(dsp, "moveUp"), Qt::LeftButton);  // "first" is selected
        QCOMPARE(Texts(dsp->Active()), (QStringList{"Probe DSP: first", "Probe DSP: second"}));
        QVERIFY(dialog.Apply());
        QCOMPARE(core.GetSettings().dspPlugins, probe + ",0;" + probe + ",1;");
        QVERIFY(core.Dsp());
        QCOMPARE(core.Dsp()->ActiveList().size(), size_t{2});

        dialog.PageOf<DspPage>()->Active()->setCurrentRow(0);
        QTest::mouseClick(Named<QPushButton>(dsp, "configureActive"), Qt::LeftButton);
        QCOMPARE(QString::fromStdString(test::ReadFile(log_)), QStringLiteral("dsp config second\ndsp config first\n"));
        QTest::mouseClick(Named<QPushButton>(dsp, "remove"), Qt::LeftButton);
        QVERIFY(dialog.Apply());
        QCOMPARE(core.GetSettings().dspPlugins, probe + ",1;");
        QCOMPARE(core.Dsp()->ActiveList().size(), size_t{1});

        // A new search path: Refresh shows what it holds; Apply enumerates it for the
        // player, and an active module that is not found there keeps its entry.
        const std::string empty = fixture_->dir.file("empty");
        std::filesystem::create_directory(empty);
        dsp->SearchPath()->SetText(QString::fromStdString(empty + ";"));
        QTest::mouseClick(Named<QPushButton>(dsp, "refresh"), Qt::LeftButton);
        QCOMPARE(dsp->Available()->count(), 0);
        QCOMPARE(Texts(dsp->Active()), QStringList{QString::fromStdString(probe + ",1 (not found)")});
        QVERIFY(dialog.Apply());
        QCOMPARE(core.GetSettings().dspPluginsSearchPath, empty + ";");
        QCOMPARE(core.DspLibraries()->LibraryCount(), size_t{0});
        QCOMPARE(core.GetSettings().dspPlugins, probe + ",1;");
    }

    void theVisualizationAndGeneralPurposePagesListTheLibrariesFound() {
        Settings& settings = fixture_->settings;
        settings.visualizationPluginsSearchPath = std::string(VERDIN_PROBE_DIR) + ";";
        settings.generalPurposePluginsSearchPath = std::string(VERDIN_PROBE_DIR) + ";";
        const std::string probe = std::string(VERDIN_PROBE_DIR) + "/probe_vis.so";
        OptionsDialog dialog(nullptr, *fixture_->core);

        auto* vis = dialog.PageOf<VisualizationPage>();
        QCOMPARE(Texts(vis->Available()), (QStringList{"Probe Vis: bars", "Probe Vis: scope"}));
        vis->Available()->setCurrentRow(1);
        QTest::mouseClick(Named<QPushButton>(vis, "add"), Qt::LeftButton);
        QTest::mouseClick(Named<QPushButton>(vis, "configureActive"), Qt::LeftButton);
        QCOMPARE(QString::fromStdString(test::ReadFile(log_)), QStringLiteral("vis config scope\n"));

        auto* general = dialog.PageOf<GeneralPurposePage>();
        QCOMPARE(Texts(general->Available()), QStringList{QStringLiteral("Probe General")});
        general->SearchPath()->SetText(QStringLiteral("/elsewhere;"));
        QVERIFY(dialog.Apply());
        QCOMPARE(settings.visualizationPlugins, probe + ",1;");
        QCOMPARE(settings.generalPurposePluginsSearchPath, std::string("/elsewhere;"));
        // Listing never starts a plug-in, and the new path is searched at the next start.
        QCOMPARE(QString::fromStdString(test::ReadFile(log_)), QStringLiteral("vis config scope\n"));
        QCOMPARE(Texts(dialog.PageOf<GeneralPurposePage>()->Available()), QStringList{});
    }

    void theInputPageListsTheModulesWithConfigureAndAbout() {
        OptionsDialog dialog(nullptr, *fixture_->core);
        auto* input = dialog.PageOf<InputPage>();
        const QStringList modules = Texts(input->Modules());
        QCOMPARE(modules.size(), static_cast<qsizetype>(fixture_->core->Modules().ModuleCount()));
        const int probe = static_cast<int>(modules.indexOf(QStringLiteral("Probe input")));
        QVERIFY(probe >= 0);
        QVERIFY(!input->ConfigureSelected());
        input->Modules()->setCurrentRow(probe);
        QVERIFY(input->ConfigureSelected());
        QVERIFY(input->AboutSelected());
        QCOMPARE(QString::fromStdString(test::ReadFile(log_)), QStringLiteral("input configure\ninput about\n"));
    }

    void resetAllOptionsAsksAndRestoresTheDefaults() {
        PlayerCore& core = *fixture_->core;
        Settings& settings = fixture_->settings;
        settings.bufferSize = 999 * 1024;
        settings.trackTitleTemplate = "%TITLE%";
        fixture_->host.answers = {false};
        core.ExecuteAction(Action::kResetOptions);
        QCOMPARE(fixture_->host.questions.size(), size_t{1});
        QCOMPARE(fixture_->host.questions[0].text,
                 std::string("Do you really want to reset all options (including window positions and such)?"));
        QVERIFY(fixture_->host.questions[0].icon == MessageIcon::kQuestion);
        QCOMPARE(settings.bufferSize, 999 * 1024);

        fixture_->host.answers = {true};
        core.ExecuteAction(Action::kResetOptions);
        QCOMPARE(settings.bufferSize, 512000);
        QCOMPARE(settings.trackTitleTemplate, std::string("%LEADARTIST% - %TITLE%"));
        OptionsDialog dialog(nullptr, core);
        QCOMPARE(dialog.PageOf<PlayerPage>()->BufferKilobytes()->value(), 500);
    }

private:
    std::unique_ptr<test::CoreFixture> fixture_;
    std::string log_;
};

QTEST_MAIN(OptionsDialogTests)
#include "OptionsDialogTests.moc"
