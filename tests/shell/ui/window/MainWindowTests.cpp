// The main window driven as a user drives it: keys, buttons, menus, the scroll bars,
// the layout rules, against the state of the player core underneath.
#include "WindowKit.h"

#include "ModalWatcher.h"

#include "playlist/Playlist.h"
#include "shell/CommandTable.h"
#include "shell/ui/analyzer/ScopeWindow.h"
#include "shell/ui/controls/PositionControl.h"
#include "shell/ui/controls/ScrollCodes.h"
#include "shell/ui/controls/StatusWindow.h"
#include "shell/ui/controls/VolumeControl.h"
#include "shell/ui/files/AddCommands.h"
#include "shell/ui/files/OpenFilters.h"
#include "shell/ui/playlist/InformationRetrieval.h"
#include "shell/ui/playlist/PlaylistModel.h"
#include "shell/ui/playlist/PlaylistView.h"

#include "Files.h"
#include "playlist/TrackItem.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <set>
#include <QToolButton>

using namespace verdin;
using namespace verdin::test;

namespace {

QString Q(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

void Key(MainWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    // Accelerators answer in the active window; a dialog that just closed may still hold
    // the activation.
    if (!window.isActiveWindow()) {
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }
    QTest::keyClick(&window, key, modifiers);
    QCoreApplication::processEvents();
}

// Plays the first row and waits until its output runs.
bool PlayFirstRow(Player& core) {
    core.PlayRow(0);
    return WaitUntil([&] { return core.CurrentStream() && core.CurrentStream()->OutputStarted(); });
}

}  // namespace

class MainWindowTests : public QObject {
    Q_OBJECT
private slots:
    void windowsAreNamedAsThePlayerNamesThem();
    void captionWaitsForStartUpThenFollowsTheTemplate();
    void keysRunTheirCommands_data();
    void keysRunTheirCommands();
    void volumeKeysStepAndClamp_data();
    void volumeKeysStepAndClamp();
    void volumeBarFollowsItsScrollRules_data();
    void volumeBarFollowsItsScrollRules();
    void positionBarPagesSeekOnlyWithATrack();
    void positionThumbSaysMoveToThenSeeks();
    void seekKeysStayAboveZero();
    void playlistHiddenFixesTheHeight();
    void insertKeyInsertsAtSelectionOnlyWithViewFocus();
    void addFilesDialogAppendsOrInserts();
    void enterPlaysAndDeleteRemovesTheSelection();
    void summariesFollowListAndSelection();
    void layoutIsStoredAndRestored();
    void buttonsCarryTheirToolTips();
    void menusCarryTextsIdentifiersAndDefaults();
    void contextMenuFitsTheRowUnderTheMouse();
    void volumeWarningWhenTheOutputCannotChangeIt();
    void analyzerDrawsWhilePlaying();
    void everyTableKeyIsAnAccelerator();
    void dropsAppendFilesFoldersAndLinks();
    void largeDropGoesInBySlices();
    void openReplacesAndPlays();
    void openDialogFiltersShowTheirTexts();
    void urlPromptAddsTheAddress();
    void saveMainPlaylistWritesOrSaysWhy();
    void draggedRowsMoveWithTheCurrentRow();
    void folderChooserAddsADirectory();
    void alwaysOnTopFollowsTheSetting();
    void findAndFindNextSelectTheMatches();
    void dialogCommandsOpenTheirDialogs_data();
    void dialogCommandsOpenTheirDialogs();
};

void MainWindowTests::windowsAreNamedAsThePlayerNamesThem() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    MainWindow& window = run.Window();
    QCOMPARE(window.objectName(), QStringLiteral("Verdin - Main Window"));
    for (const char* name : {"Verdin - Position Container", "Verdin - Volume Container", "Verdin - Status Window",
                             "Verdin - Playlist Container", "Verdin - Frequency Analyzer", "Verdin - Oscilloscope",
                             "Verdin - Visualization Plug-in Decoy", "msctls_statusbar32"})
        QVERIFY2(window.findChild<QWidget*>(QString::fromLatin1(name)), name);
    QVERIFY(window.findChild<QWidget*>(QStringLiteral("Verdin - Visualization Plug-in Decoy"))->isHidden());
    QCOMPARE(window.Analyzer().size(), QSize(204, 20));
    QCOMPARE(window.Oscilloscope().size(), QSize(204, 20));
    QVERIFY(window.minimumWidth() >= 200);
}

void MainWindowTests::captionWaitsForStartUpThenFollowsTheTemplate() {
    WindowHome home;
    const std::string tone = home.Tone("caption.wav", 2);
    home.Seed([](Settings& s) { s.windowTitleTemplate = "[%num%] %body% <%status%>"; });
    RunOptions options;
    options.headless = false;
    options.commandText = tone;
    WindowApplication app(options);
    MainWindow window(app);
    window.RefreshDisplays(~0u);
    QCOMPARE(window.windowTitle(), QStringLiteral("Retrieving track information..."));
    app.StartUp(nullptr);
    QCOMPARE(window.windowTitle(), QStringLiteral("[1.] caption <stopped>"));
    app.GetPlayer().ChangeSettings([](Settings& s) { s.customizedCaption = 0; });
    QCOMPARE(window.windowTitle(), QStringLiteral("Verdin"));
}

void MainWindowTests::keysRunTheirCommands_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("setting");
    QTest::addColumn<uint>("menuId");
    QTest::newRow("6 loop") << int(Qt::Key_6) << "loopMode" << 50052u;
    QTest::newRow("7 shuffle") << int(Qt::Key_7) << "shuffleMode" << 50053u;
    QTest::newRow("8 analyzer") << int(Qt::Key_8) << "frequencyAnalyzer" << 50054u;
    QTest::newRow("9 oscilloscope") << int(Qt::Key_9) << "oscilloscope" << 50075u;
    QTest::newRow("0 visualization") << int(Qt::Key_0) << "enableVisualizationPlugins" << 50114u;
    QTest::newRow("P playlist") << int(Qt::Key_P) << "showPlaylist" << 50089u;
}

void MainWindowTests::keysRunTheirCommands() {
    QFETCH(int, key);
    QFETCH(QString, setting);
    QFETCH(uint, menuId);
    WindowHome home;
    home.Seed();
    WindowRun run;
    const Settings& s = run.Core().GetSettings();
    const std::map<QString, const int32_t*> fields = {
        {"loopMode", &s.loopMode}, {"shuffleMode", &s.shuffleMode}, {"frequencyAnalyzer", &s.frequencyAnalyzer},
        {"oscilloscope", &s.oscilloscope}, {"enableVisualizationPlugins", &s.enableVisualizationPlugins},
        {"showPlaylist", &s.showPlaylist}};
    const int32_t* field = fields.at(setting);
    QAction* entry = run.Window().Menus().checkable.find(menuId)->second;
    const int32_t before = *field;
    Key(run.Window(), Qt::Key(key));
    QCOMPARE(*field, before ? 0 : 1);
    // The menu entry shows the new state as its check mark.
    QCOMPARE(entry->isChecked(), *field != 0);
    Key(run.Window(), Qt::Key(key));
    QCOMPARE(*field, before);
    QCOMPARE(entry->isChecked(), *field != 0);
}

void MainWindowTests::volumeKeysStepAndClamp_data() {
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("up 64000") << 64000 << int(Qt::Key_Up) << 65535;
    QTest::newRow("up 1000") << 1000 << int(Qt::Key_Up) << 3048;
    QTest::newRow("down 1000") << 1000 << int(Qt::Key_Down) << 0;
    QTest::newRow("down 40000") << 40000 << int(Qt::Key_Down) << 37952;
}

void MainWindowTests::volumeKeysStepAndClamp() {
    QFETCH(int, start);
    QFETCH(int, key);
    QFETCH(int, expected);
    WindowHome home;
    home.Seed([&](Settings& s) {
        s.SetVolume(static_cast<uint16_t>(start));
        s.showVolumeControl = 1;
    });
    WindowRun run;
    Key(run.Window(), Qt::Key(key), Qt::ControlModifier);
    QCOMPARE(int(run.Core().GetSettings().Volume()), expected);
    // The bar shows half the volume; the high bits of the setting travel unchanged.
    QCOMPARE(run.Window().Volume().Bar().value(), expected / 2);
    QCOMPARE(uint32_t(run.Core().GetSettings().mainVolume) >> 16, 0xFFFFu);
}

void MainWindowTests::volumeBarFollowsItsScrollRules_data() {
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("gesture");
    QTest::addColumn<int>("thumb");
    QTest::addColumn<int>("expectedVolume");
    QTest::addColumn<int>("expectedBar");
    QTest::newRow("page left at 1000") << 1000 << "pageLeft" << 0 << 0 << 0;
    QTest::newRow("page right at 64000") << 64000 << "pageRight" << 0 << 65535 << 32767;
    QTest::newRow("page right at 1000") << 1000 << "pageRight" << 0 << 3048 << 1524;
    QTest::newRow("thumb 32767") << 0 << "thumb" << 32767 << 65535 << 32767;
    QTest::newRow("thumb 16384") << 0 << "thumb" << 16384 << 32768 << 16384;
    QTest::newRow("thumb 3") << 0 << "thumb" << 3 << 7 << 3;
    QTest::newRow("arrow right ignored") << 30000 << "arrowRight" << 0 << 30000 << 15000;
}

void MainWindowTests::volumeBarFollowsItsScrollRules() {
    QFETCH(int, start);
    QFETCH(QString, gesture);
    QFETCH(int, thumb);
    QFETCH(int, expectedVolume);
    QFETCH(int, expectedBar);
    WindowHome home;
    home.Seed([&](Settings& s) {
        s.SetVolume(static_cast<uint16_t>(start));
        s.showVolumeControl = 1;
    });
    WindowRun run;
    ControlScrollBar& bar = run.Window().Volume().Bar();
    QVERIFY(!run.Window().Bands().Band(kVolumeBand)->isHidden());
    if (gesture == "pageLeft") bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    if (gesture == "pageRight") bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    if (gesture == "arrowRight") bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    if (gesture == "thumb") {
        bar.setSliderDown(true);
        bar.setSliderPosition(thumb);
        // While held, the bar stays where the user holds it.
        QCOMPARE(bar.sliderPosition(), thumb);
        bar.setSliderDown(false);
    }
    QCOMPARE(int(run.Core().GetSettings().Volume()), expectedVolume);
    QCOMPARE(bar.value(), expectedBar);
}

void MainWindowTests::positionBarPagesSeekOnlyWithATrack() {
    WindowHome home;
    const std::string tone = home.Tone("long.wav", 30);
    home.Seed();
    WindowRun run(tone);
    ControlScrollBar& bar = run.Window().Position().Bar();
    // No track current: a page click moves nothing.
    bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(bar.value(), 0);
    QVERIFY(!run.Core().Playing());

    QVERIFY(PlayFirstRow(run.Core()));
    // A 30 s track: 30 + 30/16 - 1 = 30 with a page of 1, so the last position is 30.
    QCOMPARE(bar.maximum(), 30);
    bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    QVERIFY(WaitUntil([&] { return run.Core().PositionMs() >= 5000; }));
    QVERIFY(bar.value() >= 5);
    bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    QVERIFY(WaitUntil([&] { return run.Core().PositionMs() < 3000; }));
    QCOMPARE(bar.value(), 0);
}

void MainWindowTests::positionThumbSaysMoveToThenSeeks() {
    WindowHome home;
    const std::string tone = home.Tone("drag.wav", 20);
    home.Seed();
    WindowRun run(tone);
    QVERIFY(PlayFirstRow(run.Core()));
    ControlScrollBar& bar = run.Window().Position().Bar();
    bar.setSliderDown(true);
    bar.setSliderPosition(12);
    QCOMPARE(run.Window().Status().Text(), QStringLiteral("Move to 0:12 (0:20)"));
    // The progress tick leaves a held thumb alone.
    QTest::qWait(250);
    QCOMPARE(bar.sliderPosition(), 12);
    bar.setSliderDown(false);
    QVERIFY(WaitUntil([&] { return run.Core().PositionMs() >= 12000; }));
    QVERIFY(!run.Window().Status().Text().startsWith(QStringLiteral("Move to")));
    QVERIFY(!run.Core().PositionHold());
}

void MainWindowTests::seekKeysStayAboveZero() {
    WindowHome home;
    const std::string tone = home.Tone("seek.wav", 20);
    home.Seed();
    WindowRun run(tone);
    QVERIFY(PlayFirstRow(run.Core()));
    Key(run.Window(), Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(WaitUntil([&] { return run.Core().PositionMs() >= 5000; }));
    Key(run.Window(), Qt::Key_Left, Qt::ControlModifier);
    Key(run.Window(), Qt::Key_Left, Qt::ControlModifier);
    QVERIFY(WaitUntil([&] { return run.Core().PositionMs() < 3000; }));
    QVERIFY(run.Core().Playing());
}

void MainWindowTests::playlistHiddenFixesTheHeight() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    MainWindow& window = run.Window();
    window.resize(500, 400);
    QVERIFY(WaitUntil([&] { return window.height() == 400; }));
    QCOMPARE(window.minimumHeight(), 150);
    Key(window, Qt::Key_P);
    QVERIFY(window.PlaylistContainer().isHidden());
    const int bars = window.minimumHeight();
    QCOMPARE(window.maximumHeight(), bars);
    QVERIFY(bars > 0 && bars < 150);
    window.resize(500, 600);
    QCoreApplication::processEvents();
    QCOMPARE(window.height(), bars);
    // A band shown on a line of its own makes the window as much taller.
    Key(window, Qt::Key_8);
    QVERIFY(WaitUntil([&] { return window.minimumHeight() > bars; }));
    QCOMPARE(window.maximumHeight(), window.minimumHeight());
    Key(window, Qt::Key_P);
    QVERIFY(!window.PlaylistContainer().isHidden());
    QCOMPARE(window.minimumHeight(), 150);
    QVERIFY(window.maximumHeight() > 10000);
    QVERIFY(WaitUntil([&] { return window.height() == 400; }));
}

void MainWindowTests::insertKeyInsertsAtSelectionOnlyWithViewFocus() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1), b = home.Tone("b.wav", 1), c = home.Tone("c.wav", 1);
    home.Seed();
    WindowRun run("\"" + a + "\" \"" + b + "\" \"" + c + "\"");
    MainWindow& window = run.Window();
    const Playlist& main = run.Core().List();
    QCOMPARE(main.RowCount(), 3);
    window.activateWindow();
    window.View().setFocus();
    window.View().SelectRows({1});
    QVERIFY(window.Context().viewHasFocus);
    Key(window, Qt::Key_Insert, Qt::AltModifier);
    QCOMPARE(main.RowCount(), 4);
    QCOMPARE(main.ItemAtRow(1).item->Kind(), ItemKind::kPlaylist);
    QCOMPARE(window.Model().rowCount(), 4);

    window.View().clearFocus();
    window.setFocus();
    QVERIFY(!window.Context().viewHasFocus);
    Key(window, Qt::Key_Insert, Qt::AltModifier);
    QCOMPARE(main.RowCount(), 5);
    QCOMPARE(main.ItemAtRow(4).item->Kind(), ItemKind::kPlaylist);
    QCOMPARE(main.ItemAtRow(1).item->Kind(), ItemKind::kPlaylist);
}

void MainWindowTests::addFilesDialogAppendsOrInserts() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1), b = home.Tone("b.wav", 1);
    const std::string x = home.Tone("x.wav", 2), y = home.Tone("y.wav", 3);
    home.Seed();
    WindowRun run("\"" + a + "\" \"" + b + "\"");
    MainWindow& window = run.Window();
    const Playlist& main = run.Core().List();
    window.View().setFocus();
    window.View().SelectRows({1});
    {
        ModalWatcher watcher(ChooseFiles({QString::fromStdString(x), QString::fromStdString(y)}));
        Key(window, Qt::Key_Insert);
        QCOMPARE(watcher.Dialogs(), QStringList{QStringLiteral("Add File(s)")});
    }
    QCOMPARE(main.RowCount(), 4);
    QCOMPARE(main.ItemAtRow(1).item->Body(), std::string("x"));
    QCOMPARE(main.ItemAtRow(2).item->Body(), std::string("y"));
    QCOMPARE(main.ItemAtRow(3).item->Body(), std::string("b"));
    // The information arrives from the worker threads.
    QVERIFY(WaitUntil([&] { return main.ItemAtRow(2).item->Duration() == 3000; }));
    QCOMPARE(window.Model().data(window.Model().index(2, 2)).toString(), QStringLiteral("0:03"));

    window.View().clearFocus();
    window.setFocus();
    {
        ModalWatcher watcher(ChooseFiles({QString::fromStdString(x)}));
        run.Window().Dispatch(50013);
    }
    QCOMPARE(main.RowCount(), 5);
    QCOMPARE(main.ItemAtRow(4).item->Body(), std::string("x"));
    // Cancelling changes nothing.
    {
        ModalWatcher watcher(ChooseFiles({}));
        run.Window().Dispatch(50013);
    }
    QCOMPARE(main.RowCount(), 5);
}

void MainWindowTests::enterPlaysAndDeleteRemovesTheSelection() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 10), b = home.Tone("b.wav", 10), c = home.Tone("c.wav", 10);
    home.Seed();
    WindowRun run("\"" + a + "\" \"" + b + "\" \"" + c + "\"");
    MainWindow& window = run.Window();
    window.View().setFocus();
    window.View().SelectRows({2});
    QTest::keyClick(&window.View(), Qt::Key_Return);
    QVERIFY(run.Core().Playing());
    QCOMPARE(run.Core().CurrentRow(), 2);
    QCOMPARE(run.Core().CurrentStream()->Path(), c);

    window.View().SelectRows({0, 1});
    Key(window, Qt::Key_Delete);
    const Playlist& main = run.Core().List();
    QCOMPARE(main.RowCount(), 1);
    QCOMPARE(main.ItemAtRow(0).item->Body(), std::string("c"));
    QCOMPARE(run.Core().CurrentRow(), 0);
    QCOMPARE(window.Model().rowCount(), 1);
    QCOMPARE(window.Model().data(window.Model().index(0, 1)).toString(), QStringLiteral("1."));
}

void MainWindowTests::summariesFollowListAndSelection() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 2), b = home.Tone("b.wav", 3);
    home.Seed();
    WindowRun run;
    MainWindow& window = run.Window();
    QCOMPARE(window.Model().rowCount(), 1);
    QCOMPARE(window.Model().data(window.Model().index(0, 0)).toString(), QStringLiteral("Empty playlist"));
    QCOMPARE(window.ListSummaryLabel().text(), QStringLiteral("No tracks"));
    QCOMPARE(window.SelectionSummaryLabel().text(), QStringLiteral("No items selected"));
    window.DropUrls({QUrl::fromLocalFile(QString::fromStdString(a)), QUrl::fromLocalFile(QString::fromStdString(b))});
    QVERIFY(WaitUntil([&] { return window.ListSummaryLabel().text() == QStringLiteral("2 tracks (0:05)"); }));
    window.View().SelectRows({1});
    QCOMPARE(window.SelectionSummaryLabel().text(), QStringLiteral("One distinct item (one track) selected (0:03)"));
    window.View().selectAll();
    QCOMPARE(window.SelectionSummaryLabel().text(), QStringLiteral("2 distinct items (2 tracks) selected (0:05)"));
    // Every cell the view shows is the core's text for that row.
    const PlaylistModel& model = window.Model();
    for (int row = 0; row < 2; ++row) {
        const RowCells cells = run.Core().CellsOfRow(row);
        for (int column = 0; column < kPlaylistColumns; ++column)
            QCOMPARE(model.data(model.index(row, column)).toString(), Q(cells[static_cast<size_t>(column)]));
    }
    QCOMPARE(model.data(model.index(0, 5)).toString(), QStringLiteral("16 bit stereo"));
    QCOMPARE(model.headerData(6, Qt::Horizontal).toString(), QStringLiteral("File size"));
}

void MainWindowTests::layoutIsStoredAndRestored() {
    WindowHome home;
    home.Seed();
    {
        WindowRun run;
        MainWindow& window = run.Window();
        QHeaderView* header = window.View().header();
        // The default order shows "No" first, then "Title".
        QCOMPARE(header->logicalIndex(0), 1);
        QCOMPARE(header->logicalIndex(1), 0);
        QCOMPARE(header->sectionSize(0), 300);
        header->moveSection(header->visualIndex(6), 0);
        header->resizeSection(2, 123);
        window.setGeometry(40, 50, 520, 410);
        // The status band dragged to the front of the first line, as the user drags it.
        window.insertToolBar(window.Bands().Band(103), window.Bands().Band(115));
        QCoreApplication::processEvents();

    }
    Settings saved = home.Saved();
    QCOMPARE(saved.playlistHeaderOrder[0], 6);
    QCOMPARE(saved.playlistHeaderWidth[2], 123);
    QCOMPARE(saved.mainWindowPlacement.right - saved.mainWindowPlacement.left, 520);
    QCOMPARE(saved.mainWindowPlacement.bottom - saved.mainWindowPlacement.top, 410);
    // The bands as the window had them, band identifiers kept: the status band first on
    // the first line, with a width of its own; the transport band flexible still (it took
    // what its line mates left); the last band of a line and a band alone on its line with
    // what they asked for; the hidden bands where they were.
    int32_t sum = 0;
    for (const RebarBand& band : saved.rebarBandArray) sum += band.id;
    QCOMPARE(sum, 808);
    QCOMPARE(saved.rebarBandArray[0].id, 115);
    QVERIFY(saved.rebarBandArray[0].width > 0 && saved.rebarBandArray[0].width < 999);
    QCOMPARE(saved.rebarBandArray[1], (RebarBand{103, 999, 0}));
    QCOMPARE(saved.rebarBandArray[2], (RebarBand{125, 0, 0}));
    QCOMPARE(saved.rebarBandArray[3], (RebarBand{114, 0, 1}));
    QCOMPARE(saved.rebarBandArray[4], (RebarBand{124, 0, 1}));
    QCOMPARE(saved.rebarBandArray[5], (RebarBand{111, 999, 1}));
    QCOMPARE(saved.rebarBandArray[6], (RebarBand{116, 0, 0}));

    // A stored band layout is applied: the oscilloscope first, on the line of the
    // transport band.
    home.Seed([&](Settings& s) {
        s = saved;
        s.oscilloscope = 1;
        s.rebarBandArray = {RebarBand{124, 0, 0}, {103, 999, 0}, {125, 0, 0}, {111, 999, 1},
                            {116, 0, 0}, {115, 0, 1}, {114, 0, 1}};
    });
    WindowRun run;
    MainWindow& window = run.Window();
    QCOMPARE(window.View().header()->logicalIndex(0), 6);
    QCOMPARE(window.View().header()->sectionSize(2), 123);
    QVERIFY(WaitUntil([&] { return window.Bands().Band(124)->geometry().isValid() && window.isVisible(); }));
    QCoreApplication::processEvents();
    const QRect scope = window.Bands().Band(124)->geometry();
    const QRect transport = window.Bands().Band(103)->geometry();
    QCOMPARE(scope.top(), transport.top());
    QVERIFY(scope.left() < transport.left());
    QVERIFY(window.Bands().Band(111)->geometry().top() > transport.top());
}

void MainWindowTests::buttonsCarryTheirToolTips() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    for (uint32_t button : {104u, 106u, 107u, 108u, 110u, 112u, 113u, 114u, 118u, 119u, 121u, 122u, 124u, 125u, 128u, 131u}) {
        auto* tool = run.Window().findChild<QToolButton*>(QStringLiteral("button-%1").arg(button));
        QVERIFY2(tool, qPrintable(QString::number(button)));
        QCOMPARE(tool->toolTip(), Q(ButtonToolTip(button)));
        QVERIFY(!tool->icon().isNull());
    }
    QCOMPARE(Q(ButtonToolTip(110)), QStringLiteral("Next track in playlist, shortcut key: 5\nHold down shift to crossfade"));
}

void MainWindowTests::menusCarryTextsIdentifiersAndDefaults() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    const MainMenus& menus = run.Window().Menus();
    QCOMPARE(menus.file->title(), QStringLiteral("File"));
    QCOMPARE(menus.miscellaneous->title(), QStringLiteral("Miscellaneous"));
    QCOMPARE(menus.playlist->title(), QStringLiteral("Playlist"));
    QCOMPARE(menus.notifyIcon->title(), QStringLiteral("Notify Icon"));
    QCOMPARE(menus.file->defaultAction()->text(), QStringLiteral("Open File(s)...\tL"));
    QCOMPARE(menus.miscellaneous->defaultAction()->text(), QStringLiteral("Options...\tO"));
    QCOMPARE(menus.playlist->defaultAction()->text(), QStringLiteral(" \tShow Playlist (P)"));
    // The notification menu: the three popups, then the five transport commands.
    const QList<QAction*> notify = menus.notifyIcon->actions();
    QCOMPARE(notify[0]->menu(), menus.file);
    QCOMPARE(notify[1]->menu(), menus.miscellaneous);
    QCOMPARE(notify[2]->menu(), menus.playlist);
    QStringList transport;
    for (QAction* action : notify.mid(4)) transport << action->text();
    QCOMPARE(transport, (QStringList{"Previous Track\t1", "Stop\t2", "Pause\t3", "Play\t4", "Next Track\t5"}));
    // Each entry's identifier runs its text's command.
    for (QMenu* menu : {menus.file, menus.miscellaneous, menus.playlist, menus.trackContext, menus.playlistContext,
                        menus.generalContext, menus.randomEntryContext})
        for (QAction* action : menu->actions()) {
            if (action->isSeparator() || action->menu()) continue;
            const CommandEntry* entry = FindCommand(action->data().toUInt());
            QVERIFY2(entry, qPrintable(action->text()));
            if (action->text() != QStringLiteral("Insert File(s)...\tInsert") &&
                action->text() != QStringLiteral("Random Entry Properties...\tAlt + Enter"))
                QCOMPARE(action->text(), Q(entry->menuText));
        }
    QCOMPARE(menus.trackContext->title(), QStringLiteral("Track"));
    QCOMPARE(menus.playlistContext->title(), QStringLiteral("Playlist"));
    QCOMPARE(menus.generalContext->title(), QStringLiteral("General"));
    QCOMPARE(menus.randomEntryContext->title(), QStringLiteral("Random entry"));
}

void MainWindowTests::contextMenuFitsTheRowUnderTheMouse() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1);
    home.Seed();
    WindowRun run("\"" + a + "\"");
    MainWindow& window = run.Window();
    run.Core().Execute(Action::kAddNewPlaylist);
    QCOMPARE(window.Model().rowCount(), 2);
    auto shownAfter = [&](int row) -> QMenu* {
        const QRect rect = row >= 0 ? window.View().visualRect(window.Model().index(row, 0))
                                    : QRect(QPoint(5, window.View().viewport()->height() - 5), QSize(1, 1));
        QContextMenuEvent event(QContextMenuEvent::Mouse, rect.center(), window.View().viewport()->mapToGlobal(rect.center()));
        QCoreApplication::sendEvent(window.View().viewport(), &event);
        for (QMenu* menu : {window.Menus().trackContext, window.Menus().playlistContext, window.Menus().generalContext})
            if (menu->isVisible()) {
                menu->hide();
                return menu;
            }
        return nullptr;
    };
    QCOMPARE(shownAfter(0), window.Menus().trackContext);
    QCOMPARE(shownAfter(1), window.Menus().playlistContext);
    QCOMPARE(shownAfter(-1), window.Menus().generalContext);
}

void MainWindowTests::volumeWarningWhenTheOutputCannotChangeIt() {
    WindowHome home;
    const std::string tone = home.Tone("file.wav", 1);
    home.Seed([&](Settings& s) {
        s.outputType = 1;
        s.decodeDirectory = home.Path("music");
        s.showVolumeControl = 1;
    });
    WindowRun run(tone);
    ModalWatcher watcher;
    run.Core().PlayRow(0);
    QVERIFY(WaitUntil([&] { return !watcher.Boxes().isEmpty(); }));
    QCOMPARE(watcher.Boxes().front(),
             QStringLiteral("Verdin: Your output device does not support volume changes. The volume control will be "
                            "disabled."));
    QVERIFY(!run.Window().VolumeControlEnabled());
    QVERIFY(!run.Window().Volume().isEnabled());
}

void MainWindowTests::analyzerDrawsWhilePlaying() {
    WindowHome home;
    const std::string tone = home.Tone("loud.wav", 10, 1000);
    home.Seed([](Settings& s) {
        s.frequencyAnalyzer = 1;
        s.oscilloscope = 1;
    });
    WindowRun run(tone);
    QVERIFY(PlayFirstRow(run.Core()));
    // Bars rise in the analyzer and a trace swings across the oscilloscope. Columns
    // 96..103 lie between the two channels and keep the background.
    auto background = [](const ScopeWindow& scope) { return scope.Pixels()[100]; };
    auto barsAboveRow = [&](const ScopeWindow& scope, int row) {
        int count = 0;
        for (int x = 0; x < kScopeWidth; ++x)
            for (int r = row; r < kScopeHeight; ++r)
                if (scope.Pixels()[static_cast<size_t>(r * kScopeWidth + x)] != background(scope)) ++count;
        return count;
    };
    auto rowsCrossed = [&](const ScopeWindow& scope) {
        int rows = 0;
        for (int r = 0; r < kScopeHeight; ++r)
            for (int x = 0; x < kScopeWidth; ++x)
                if (scope.Pixels()[static_cast<size_t>(r * kScopeWidth + x)] != background(scope)) {
                    ++rows;
                    break;
                }
        return rows;
    };
    QVERIFY(WaitUntil([&] {
        return barsAboveRow(run.Window().Analyzer(), 4) > 0 && rowsCrossed(run.Window().Oscilloscope()) >= 4;
    }));
    run.Core().Execute(Action::kStop);
    QVERIFY(WaitUntil([&] {
        return rowsCrossed(run.Window().Analyzer()) == 0 && rowsCrossed(run.Window().Oscilloscope()) == 0;
    }));
}

void MainWindowTests::everyTableKeyIsAnAccelerator() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    int keys = 0;
    for (const CommandEntry& entry : CommandTable()) {
        if (entry.key.empty()) continue;
        ++keys;
        auto* action = run.Window().findChild<QAction*>(Q(entry.key), Qt::FindDirectChildrenOnly);
        QVERIFY2(action, std::string(entry.key).c_str());
        QVERIFY2(!action->shortcut().isEmpty(), std::string(entry.key).c_str());
        QCOMPARE(action->shortcutContext(), Qt::WindowShortcut);
    }
    QVERIFY(keys >= 40);
    auto shortcutOf = [&](const char* key) {
        return run.Window().findChild<QAction*>(QString::fromLatin1(key), Qt::FindDirectChildrenOnly)->shortcut();
    };
    QCOMPARE(shortcutOf("Num+-"), QKeySequence(Qt::KeypadModifier | Qt::Key_Minus));
    QCOMPARE(shortcutOf("Num++"), QKeySequence(Qt::KeypadModifier | Qt::Key_Plus));
    QCOMPARE(shortcutOf("Ctrl+Alt+Ins"), QKeySequence(Qt::ControlModifier | Qt::AltModifier | Qt::Key_Insert));
    QCOMPARE(run.Window().findChild<QAction*>(QStringLiteral("Alt+Return"))->shortcuts().size(), 2);
    // Shift+5 crossfades to the next track; without a prepared track it still moves on.
    QCOMPARE(shortcutOf("Shift+5"), QKeySequence(Qt::ShiftModifier | Qt::Key_5));
}

void MainWindowTests::dropsAppendFilesFoldersAndLinks() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1);
    const std::string folder = home.Path("music/album");
    QVERIFY(QDir().mkpath(QString::fromStdString(folder)));
    QVERIFY(QDir().mkpath(QString::fromStdString(home.Path("music/other"))));
    const std::string t1 = home.Tone("album/t1.wav", 1), t2 = home.Tone("album/t2.wav", 1);
    const std::string loose = home.Tone("other/loose.wav", 2);
    QVERIFY(QFile::link(QString::fromStdString(home.Path("music/other")), QString::fromStdString(home.Path("to-other"))));
    test::WriteFile(home.Path("link.desktop"), "[Desktop Entry]\nType=Link\nURL=file://" + a + "\n");
    home.Seed();
    WindowRun run;
    MainWindow& window = run.Window();
    const Playlist& main = run.Core().List();
    // A selection with the focus in the view does not matter: drops append.
    window.DropUrls({QUrl::fromLocalFile(QString::fromStdString(a))});
    window.View().setFocus();
    window.View().SelectRows({0});
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder)),
                  QUrl::fromLocalFile(QString::fromStdString(home.Path("to-other"))),
                  QUrl::fromLocalFile(QString::fromStdString(home.Path("link.desktop")))});
    // Offered as a move (a file manager's Shift+drag): taken as a copy all the same.
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    QCoreApplication::sendEvent(&window, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    drop.setDropAction(Qt::MoveAction);
    QCoreApplication::sendEvent(&window, &drop);
    QCOMPARE(drop.dropAction(), Qt::CopyAction);
    QVERIFY(WaitUntil([&] { return !window.Adding().Busy(); }));
    std::vector<std::string> bodies;
    for (int row = 0; row < main.RowCount(); ++row) bodies.push_back(main.ItemAtRow(row).item->Body());
    QCOMPARE(bodies, (std::vector<std::string>{"a", "t1", "t2", "loose", "a"}));
    // The folder linked to is added under its own name.
    QCOMPARE(main.ItemAtRow(3).item->Path(), home.Path("music/other") + "/");
    QCOMPARE(run.Core().CurrentRow(), 0);
    QVERIFY(!run.Core().Playing());
}

void MainWindowTests::largeDropGoesInBySlices() {
    WindowHome home;
    const std::string one = home.Tone("one.wav", 0.2);
    home.Seed();
    WindowRun run;
    MainWindow& window = run.Window();
    // The same file 1,000 times: four slices, the first of them at once.
    window.DropUrls(QList<QUrl>(1000, QUrl::fromLocalFile(QString::fromStdString(one))));
    QCOMPARE(run.Core().List().RowCount(), int(AddCommands::kSlice));
    QVERIFY(window.Adding().Busy());
    QVERIFY(WaitUntil([&] { return !window.Adding().Busy() && !window.Retrieval().Busy(); }));
    const Playlist& main = run.Core().List();
    QCOMPARE(main.RowCount(), 1000);
    QCOMPARE(window.Model().rowCount(), 1000);
    for (int row = 0; row < 1000; ++row)
        QVERIFY(static_cast<const TrackItem*>(main.ItemAtRow(row).item)->Track().InfoRetrieved());
    QCOMPARE(window.ListSummaryLabel().text(), QStringLiteral("1000 tracks (3:20)"));
    QVERIFY(window.RetrievalProgress().isHidden());
}

void MainWindowTests::openReplacesAndPlays() {
    WindowHome home;
    const std::string old1 = home.Tone("old1.wav", 10), old2 = home.Tone("old2.wav", 10);
    const std::string new1 = home.Tone("new1.wav", 10), new2 = home.Tone("new2.wav", 10);
    home.Seed();
    WindowRun run("/PLAY \"" + old1 + "\" \"" + old2 + "\"");
    QVERIFY(WaitUntil([&] { return run.Core().Playing(); }));
    ModalWatcher watcher(ChooseFiles({QString::fromStdString(new1), QString::fromStdString(new2)}));
    Key(run.Window(), Qt::Key_L);
    QCOMPARE(watcher.Dialogs(), QStringList{QStringLiteral("Open File(s)")});
    QVERIFY(WaitUntil([&] { return run.Core().Playing() && run.Core().CurrentStream()->Path() == new1; }));
    const Playlist& main = run.Core().List();
    QCOMPARE(main.RowCount(), 2);
    QCOMPARE(main.ItemAtRow(1).item->Body(), std::string("new2"));
    QCOMPARE(run.Core().CurrentRow(), 0);
}

void MainWindowTests::openDialogFiltersShowTheirTexts() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    QStringList shown;
    QStringList playlistPatterns;
    ModalWatcher watcher([&](QWidget& modal) {
        auto* dialog = qobject_cast<QFileDialog*>(&modal);
        auto* combo = modal.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        if (!dialog || !combo) return false;
        for (int i = 0; i < combo->count(); ++i) shown << combo->itemText(i);
        dialog->selectNameFilter(dialog->nameFilters().at(1));
        playlistPatterns = modal.findChild<QFileSystemModel*>()->nameFilters();
        dialog->reject();
        return true;
    });
    Key(run.Window(), Qt::Key_L);
    QStringList expected;
    for (const DialogFilter& filter : OpenFileFilters(run.Core().Modules().FileTypeFilters()))
        expected << QString::fromStdString(filter.display);
    QCOMPARE(shown, expected);
    QCOMPARE(shown.front(), QStringLiteral("All supported files"));
    QCOMPARE(shown.at(1), QStringLiteral("Playlist files (*.M3U;*.PLS;*.VDP)"));
    QCOMPARE(shown.back(), QStringLiteral("All files (*.*)"));
    QCOMPARE(playlistPatterns, (QStringList{"*.M3U", "*.PLS", "*.VDP"}));
}

void MainWindowTests::urlPromptAddsTheAddress() {
    WindowHome home;
    home.Seed();
    WindowRun run;
    QString label;
    QString caption;
    ModalWatcher watcher([&](QWidget& modal) {
        if (modal.objectName() != QStringLiteral("Get URL Dialog")) return false;
        label = modal.findChild<QLabel*>()->text();
        caption = modal.windowTitle();
        return TypeUrl(QStringLiteral("http://radio.example.org/live.mp3"))(modal);
    });
    Key(run.Window(), Qt::Key_Insert, Qt::ControlModifier);
    QCOMPARE(caption, QStringLiteral("Add URL"));
    QCOMPARE(label, QStringLiteral("Enter URL (e.g. http://radio.example.org:8000/stream.mp3)"));
    const Playlist& main = run.Core().List();
    QCOMPARE(main.RowCount(), 1);
    QCOMPARE(static_cast<const TrackItem*>(main.ItemAtRow(0).item)->Track().FullName(),
             std::string("http://radio.example.org/live.mp3"));
}

void MainWindowTests::saveMainPlaylistWritesOrSaysWhy() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1);
    home.Seed();
    WindowRun run("\"" + a + "\"");
    auto saveAs = [&](const QString& name, int filter) {
        return [name, filter](QWidget& modal) {
            auto* dialog = qobject_cast<QFileDialog*>(&modal);
            if (!dialog || modal.windowTitle() != QStringLiteral("Save Playlist As")) return false;
            dialog->selectNameFilter(dialog->nameFilters().at(filter));
            modal.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
            static_cast<QDialog*>(dialog)->accept();
            return true;
        };
    };
    {
        ModalWatcher watcher(saveAs(QString::fromStdString(home.Path("mix")), 1));
        Key(run.Window(), Qt::Key_S, Qt::ShiftModifier);
        QCOMPARE(watcher.Dialogs(), QStringList{QStringLiteral("Save Playlist As")});
        QVERIFY(watcher.Boxes().isEmpty());
    }
    const std::string written = test::ReadFile(home.Path("mix.pls"));
    QVERIFY2(written.find("[playlist]") == 0, written.c_str());
    QVERIFY(written.find("a.wav") != std::string::npos);
    {
        // A place nobody may write, not even the superuser.
        ModalWatcher watcher(saveAs(QStringLiteral("/proc/verdin-mix"), 0));
        Key(run.Window(), Qt::Key_S, Qt::ShiftModifier);
        QCOMPARE(watcher.Boxes(), QStringList{QStringLiteral("Verdin: Unable to save playlist")});
    }
}

void MainWindowTests::draggedRowsMoveWithTheCurrentRow() {
    WindowHome home;
    std::string command;
    for (const char* name : {"a", "b", "c", "d"}) command += "\"" + home.Tone(std::string(name) + ".wav", 1) + "\" ";
    home.Seed();
    WindowRun run(command);
    MainWindow& window = run.Window();
    run.Core().PlayRow(1);
    run.Core().Execute(Action::kStop);
    window.View().SelectRows({1, 2});
    // Dragging "b" and "c" below "d", as the view hands the drop to its model.
    PlaylistModel& model = window.Model();
    std::unique_ptr<QMimeData> data(model.mimeData({model.index(1, 0), model.index(2, 0)}));
    QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, 4, 0, {}));
    const Playlist& main = run.Core().List();
    std::string order;
    for (int row = 0; row < main.RowCount(); ++row) order += main.ItemAtRow(row).item->Body();
    QCOMPARE(order, std::string("adbc"));
    // "b" stays the current entry, and the selection stays on the moved rows.
    QCOMPARE(run.Core().CurrentRow(), 2);
    QCOMPARE(window.View().SelectedRows(), (std::vector<int>{2, 3}));
    QCOMPARE(model.data(model.index(2, 1)).toString(), QStringLiteral("3."));
}

void MainWindowTests::folderChooserAddsADirectory() {
    WindowHome home;
    QVERIFY(QDir().mkpath(QString::fromStdString(home.Path("music/set"))));
    home.Tone("set/b.wav", 1);
    home.Tone("set/a.wav", 1);
    test::WriteFile(home.Path("music/set/notes.txt"), "not audio");
    home.Seed();
    WindowRun run;
    ModalWatcher watcher(ChooseFiles({QString::fromStdString(home.Path("music/set"))}));
    Key(run.Window(), Qt::Key_Insert, Qt::ShiftModifier);
    QCOMPARE(watcher.Dialogs(), QStringList{QStringLiteral("Select directory to add")});
    QVERIFY(WaitUntil([&] { return !run.Window().Adding().Busy(); }));
    const Playlist& main = run.Core().List();
    QCOMPARE(main.RowCount(), 2);
    std::set<std::string> bodies{main.ItemAtRow(0).item->Body(), main.ItemAtRow(1).item->Body()};
    QCOMPARE(bodies, (std::set<std::string>{"a", "b"}));
    QCOMPARE(run.Core().CurrentRow(), 0);
    QCOMPARE(run.Core().GetSettings().initialDirectory, home.Path("music/set"));
}

void MainWindowTests::alwaysOnTopFollowsTheSetting() {
    WindowHome home;
    home.Seed([](Settings& s) { s.normalWindowAlwaysOnTop = 1; });
    WindowRun run;
    MainWindow& window = run.Window();
    QVERIFY(window.windowFlags() & Qt::WindowStaysOnTopHint);
    run.Core().ChangeSettings([](Settings& s) { s.normalWindowAlwaysOnTop = 0; });
    QVERIFY(!(window.windowFlags() & Qt::WindowStaysOnTopHint));
    QVERIFY(window.isVisible());
}

void MainWindowTests::findAndFindNextSelectTheMatches() {
    WindowHome home;
    std::string command;
    for (const char* name : {"alpha", "beta", "alphabet", "gamma"})
        command += "\"" + home.Tone(std::string(name) + ".wav", 1) + "\" ";
    home.Seed();
    WindowRun run(command);
    MainWindow& window = run.Window();
    auto typeIntoFind = [](const QString& text) {
        return [text](QWidget& modal) {
            auto* edit = modal.findChild<QLineEdit*>(QStringLiteral("findText"));
            if (modal.objectName() != QStringLiteral("Find") || !edit) return false;
            edit->setText(text);
            static_cast<QDialog&>(modal).accept();
            return true;
        };
    };
    // The search starts after the focused row: from "gamma", the last, it starts at the top.
    window.View().SelectRows({3});
    {
        ModalWatcher watcher(typeIntoFind(QStringLiteral("ALPHA")));
        Key(window, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(watcher.Dialogs(), QStringList{QStringLiteral("Find")});
    }
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{0});
    Key(window, Qt::Key_F3);
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{2});
    // Round again to the first match.
    Key(window, Qt::Key_F3);
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{0});
    {
        ModalWatcher watcher(typeIntoFind(QStringLiteral("delta")));
        Key(window, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(watcher.Boxes(), QStringList{QStringLiteral("Verdin: Cannot find the string \"delta\".")});
    }
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{0});
}

void MainWindowTests::dialogCommandsOpenTheirDialogs_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("dialog");
    QTest::newRow("O options") << int(Qt::Key_O) << 0 << "Options";
    QTest::newRow("Ctrl+P plug-ins") << int(Qt::Key_P) << int(Qt::ControlModifier) << "Options";
    QTest::newRow("Alt+Enter properties") << int(Qt::Key_Return) << int(Qt::AltModifier) << "Track Properties";
    QTest::newRow("Ctrl+Shift+Insert random entry") << int(Qt::Key_Insert) << int(Qt::ControlModifier | Qt::ShiftModifier)
                                                    << "Random Entry Properties";
    QTest::newRow("E equalizer") << int(Qt::Key_E) << 0 << "Graphic Equalizer";
    QTest::newRow("F1 about") << int(Qt::Key_F1) << 0 << "About Verdin";
}

void MainWindowTests::dialogCommandsOpenTheirDialogs() {
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, dialog);
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1);
    home.Seed();
    WindowRun run("\"" + a + "\"");
    MainWindow& window = run.Window();
    window.View().setFocus();
    window.View().SelectRows({0});
    QStringList seen;
    ModalWatcher watcher([&](QWidget& modal) {
        seen << modal.windowTitle();
        modal.close();
        return true;
    });
    Key(window, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    // Modeless dialogs stay open beside the window.
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top != &window && top->isVisible() && qobject_cast<QDialog*>(top)) {
            seen << top->windowTitle();
            top->close();
        }
    for (const QString& box : watcher.Boxes()) seen << box.section(QLatin1Char(':'), 0, 0);
    QVERIFY2(seen.contains(dialog), qPrintable(seen.join(QLatin1String(", "))));
}

QTEST_MAIN(MainWindowTests)
#include "MainWindowTests.moc"
