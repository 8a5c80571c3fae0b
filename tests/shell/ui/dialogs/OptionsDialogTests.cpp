// The options dialog: the pages' controls through Apply into the settings file and back
// into a new dialog, stored values kept exactly when nothing is touched, the insert-
// variable menus, the plug-in pages with the probe plug-ins (the DSP page reaching a
// playing stream), and "Reset All Options".
#include "shell/ui/dialogs/options/InputPage.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"
#include "shell/ui/dialogs/options/OptionsDialog.h"
#include "shell/ui/dialogs/options/OutputPage.h"
#include "shell/ui/dialogs/options/PluginPages.h"
#include "shell/ui/dialogs/options/StringsPage.h"

#include "plugins/dsp/DspLibraryList.h"
#include "settings/store/SettingsStore.h"

#include "DialogTestKit.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QMenu>
#include <QSpinBox>
#include <filesystem>
#include <variant>

using namespace verdin;

namespace {

using Field = std::variant<int32_t Settings::*, std::string Settings::*>;

QVariant Stored(const Settings& s, const Field& field) {
    if (auto* number = std::get_if<int32_t Settings::*>(&field)) return s.**number;
    return QString::fromStdString(s.*std::get<std::string Settings::*>(field));
}

// A control by its object name (the settings field's name), or a button by its text.
QWidget* Control(const QWidget& dialog, const QString& key) {
    if (auto* named = dialog.findChild<QWidget*>(key)) return named;
    for (auto* button : dialog.findChildren<QAbstractButton*>())
        if (button->text() == key) return button;
    qFatal("no control %s", qPrintable(key));
}

// What a control shows, and setting it (value invalid: read only).
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

class OptionsDialogTests : public test::CoreTests {
    Q_OBJECT

private slots:
    // Each row: a control, what it is set to, and the settings field that stores it.
    void controlsReachTheSettingsFileAndComeBack() {
        const struct {
            const char* control;
            QVariant input;
            Field field;
            QVariant stored;
        } rows[] = {
            {"Do not read ID3 tags", true, &Settings::ignoreID3Tags, 1},
            {"bufferSize", 300, &Settings::bufferSize, 300 * 1024},
            {"bufferPrefill", 40, &Settings::bufferPrefill, 40},
            {"playerThreadPriority", "Above normal", &Settings::playerThreadPriority, 1},
            {"processPriorityClass", "Normal", &Settings::processPriorityClass, 32},
            {"Silent pause of", true, &Settings::pauseBetweenTracks, 1500},
            {"pauseBetweenTracks", 1.5, &Settings::pauseBetweenTracks, 1500},
            {"crossfadeLength", 4.0, &Settings::crossfadeLength, 4000},
            {"Skip silence in the end of a track (only within buffer)", true, &Settings::skipSilenceInTheEnd, 1},
            {"silenceLevel", -60, &Settings::silenceLevel, -60},
            {"PulseAudio", true, &Settings::outputType, 2},
            {"waveOutDevice", "Card (hw:1)", &Settings::waveOutDevice, 1},  // list entry 2; "default" is -1
            {"directSoundDevice", "Headphones (sink1)", &Settings::directSoundDevice, 1},
            {"directSoundCooperativeLevel", "Exclusive", &Settings::directSoundCooperativeLevel, 3},
            {"decodeDirectory", "/tmp/decoded", &Settings::decodeDirectory, "/tmp/decoded"},
            {"URLs when added to the playlist", true, &Settings::skipInfoForURL, 1},
            {"sampleSpaceSearchPath", "/music/a;", &Settings::sampleSpaceSearchPath, "/music/a;"},
            {"vdpHistory", 7, &Settings::vdpHistory, 7},
            {"statusStringTemplate", "%time% of %dur%", &Settings::statusStringTemplate, "%time% of %dur%"},
            {"inputPluginsSearchPath", "/plugins/in;", &Settings::inputPluginsSearchPath, "/plugins/in;"},
            {"Use a proxy server", true, &Settings::useProxy, 1},
            {"proxyURL", "http://proxy:3128", &Settings::proxyURL, "http://proxy:3128"},
            {"Keep the main window on top", true, &Settings::normalWindowAlwaysOnTop, 1},
            {"rebarBitmap", "/pictures/back.bmp", &Settings::rebarBitmap, "/pictures/back.bmp"},
        };
        OptionsDialog dialog(nullptr, player());
        ListDevices(dialog);
        for (const auto& row : rows) {
            QVERIFY2(Stored(player().GetSettings(), row.field) != row.stored, row.control);
            Shown(Control(dialog, QLatin1String(row.control)), row.input);
        }
        QVERIFY(dialog.Apply());
        Settings stored;
        LoadUserSettings(stored, fixture->environment);
        OptionsDialog again(nullptr, player());
        ListDevices(again);
        for (const auto& row : rows) {
            QCOMPARE(Stored(stored, row.field), row.stored);
            QCOMPARE(Shown(Control(again, QLatin1String(row.control))), row.input);
        }
    }

    // Opening and applying changes nothing, even where the stored numbers are not what
    // the controls would make of them.
    void untouchedOptionsKeepTheirExactValues() {
        player().ChangeSettings([](Settings& s) {
            s.bufferSize = 512001;  // not a whole number of kilobytes
            s.pauseBetweenTracks = 1234;
            s.crossfadeLength = 2999;
            s.playerThreadPriority = 7;  // a step the list does not name
            s.directSoundCooperativeLevel = 9;
            s.rebarBitmapIntensity = 250;
            s.vdpHistory = -3;
            s.customizedCaption = 5;  // any non-zero value is "on"
            s.waveOutDevice = 5;      // a card that has gone
            s.outputType = 7;
        });
        const std::string before = fixture->SettingsFile();
        OptionsDialog dialog(nullptr, player());
        ListDevices(dialog);
        QVERIFY(dialog.Apply());
        QCOMPARE(fixture->SettingsFile(), before);

        // A ticked pause without a length is the smallest step; unticked, none.
        Shown(Control(dialog, "pauseBetweenTracks"), 0.0);
        QVERIFY(dialog.Apply());
        QCOMPARE(player().GetSettings().pauseBetweenTracks, 100);
        Shown(Control(dialog, "Silent pause of"), false);
        Shown(Control(dialog, "waveOutDevice"), "Wave Mapper");
        QVERIFY(dialog.Apply());
        QCOMPARE(player().GetSettings().pauseBetweenTracks, 0);
        QCOMPARE(player().GetSettings().waveOutDevice, -1);
    }

    // The dialog opens on the page asked for (the first for an unknown one); a menu offers
    // the variables its template knows and puts one in at the caret.
    void theStringsMenusInsertVariableReferences() {
        OptionsDialog dialog(nullptr, player(), QStringLiteral("Strings"));
        auto* strings = qobject_cast<StringsPage*>(dialog.CurrentPage());
        QVERIFY(strings);
        QCOMPARE(OptionsDialog(nullptr, player(), "No such page").CurrentPage()->Title(), QStringLiteral("General"));
        QString group;
        QVERIFY(!test::FindAction(strings->WindowTitleMenu(), QStringLiteral("%time%\tPlaying time")));
        QVERIFY(test::FindAction(strings->StatusStringMenu(), QStringLiteral("%time%\tPlaying time"), &group));
        QCOMPARE(group, QStringLiteral("Track"));
        strings->StatusString()->setText(QStringLiteral("[] left"));
        strings->StatusString()->setCursorPosition(1);
        test::FindAction(strings->StatusStringMenu(), QStringLiteral("%timel%\tPlaying time left"))->trigger();
        QCOMPARE(strings->StatusString()->text(), QStringLiteral("[%timel%] left"));
    }

    // The DSP page: the probe's modules, Configure, the active list in its order reaching
    // a playing stream ("first" silences it), and a search path without the probe.
    void theDspPageReachesThePlayingStream() {
        if (!test::CoreFixture::NullDevice()) QSKIP("ALSA lists no null device here");
        QVERIFY(fixture->PlayTone());
        const int32_t heard = fixture->Loudness();
        QVERIFY2(heard > 10000, "the tone is heard at about half scale");
        const std::string probe = std::string(VERDIN_PROBE_DIR) + "/probe_dsp.so";
        OptionsDialog dialog(nullptr, player());
        auto* dsp = dialog.PageOf<DspPage>();
        const QStringList available = test::Texts(dsp->Available());
        dsp->Available()->setCurrentRow(static_cast<int>(available.indexOf("Probe DSP: second")));
        test::Click(*dsp, "configureAvailable");
        test::Click(*dsp, "add");
        dsp->Available()->setCurrentRow(static_cast<int>(available.indexOf("Probe DSP: first")));
        test::Click(*dsp, "add");
        test::Click(*dsp, "moveUp");  // "first" is selected
        QVERIFY(dialog.Apply());
        QCOMPARE(player().GetSettings().dspPlugins, probe + ",0;" + probe + ",1;");
        QVERIFY(fixture->WaitUntilHeard());
        QCOMPARE(fixture->Loudness(), 0);

        dsp->Active()->setCurrentRow(0);
        test::Click(*dsp, "remove");
        QVERIFY(dialog.Apply());
        QCOMPARE(player().GetSettings().dspPlugins, probe + ",1;");
        QVERIFY(fixture->WaitUntilHeard());
        QVERIFY2(fixture->Loudness() > heard * 8 / 10, "heard again without \"first\"");

        const std::string empty = fixture->dir.file("empty");
        std::filesystem::create_directory(empty);
        dsp->SearchPath()->SetText(QString::fromStdString(empty + ";"));
        test::Click(*dsp, "refresh");
        QCOMPARE(dsp->Available()->count(), 0);
        QVERIFY(dialog.Apply());
        QCOMPARE(player().DspLibraries()->LibraryCount(), size_t{0});
        QCOMPARE(player().GetSettings().dspPlugins, probe + ",1;");  // kept, and marked
        QCOMPARE(test::Texts(dsp->Active()), QStringList{QString::fromStdString(probe + ",1 (not found)")});
        QCOMPARE(fixture->ProbeLog(), std::string("dsp config second\n"));
    }

    // The other plug-in pages list and configure without starting anything.
    void theInputVisualizationAndGeneralPurposePages() {
        player().ChangeSettings([](Settings& s) {
            s.visualizationPluginsSearchPath = s.generalPurposePluginsSearchPath = std::string(VERDIN_PROBE_DIR) + ";";
        });
        OptionsDialog dialog(nullptr, player());
        auto* input = dialog.PageOf<InputPage>();
        input->Modules()->setCurrentRow(static_cast<int>(test::Texts(input->Modules()).indexOf("Probe input")));
        QVERIFY(input->ConfigureSelected() && input->AboutSelected());
        auto* vis = dialog.PageOf<VisualizationPage>();
        QCOMPARE(test::Texts(vis->Available()), (QStringList{"Probe Vis: bars", "Probe Vis: scope"}));
        vis->Available()->setCurrentRow(1);
        test::Click(*vis, "add");
        test::Click(*vis, "configureActive");
        auto* general = dialog.PageOf<GeneralPurposePage>();
        QCOMPARE(test::Texts(general->Available()), QStringList{"Probe General"});
        general->SearchPath()->SetText(QStringLiteral("/elsewhere;"));
        QVERIFY(dialog.Apply());
        QCOMPARE(player().GetSettings().visualizationPlugins, std::string(VERDIN_PROBE_DIR) + "/probe_vis.so,1;");
        QCOMPARE(player().GetSettings().generalPurposePluginsSearchPath, std::string("/elsewhere;"));
        QCOMPARE(fixture->ProbeLog(), std::string("input configure\ninput about\nvis config scope\n"));
    }

    void resetAllOptionsAsksAndRestoresTheDefaults() {
        player().ChangeSettings([](Settings& s) { s.bufferSize = 999 * 1024; });
        fixture->host.answers = {false, true};
        player().Execute(Action::kResetOptions);
        QCOMPARE(fixture->host.questions,
                 std::vector<std::string>{"Do you really want to reset all options (including window positions and such)?"});
        QCOMPARE(player().GetSettings().bufferSize, 999 * 1024);
        player().Execute(Action::kResetOptions);
        Settings stored;
        LoadUserSettings(stored, fixture->environment);
        QCOMPARE(stored.bufferSize, 512000);
        OptionsDialog dialog(nullptr, player());
        QCOMPARE(Shown(Control(dialog, "bufferSize")), QVariant(500));
    }
};

[[maybe_unused]] static const bool registered = test::Register<OptionsDialogTests>();
#include "OptionsDialogTests.moc"
