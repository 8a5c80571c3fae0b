// The main window driven as a user drives it: keys, buttons, menus, the scroll bars, the
// layout rules, drops and dialogs, against the state of the player underneath.
#include "WindowKit.h"

#include "Files.h"
#include "playlist/Playlist.h"
#include "shell/CommandTable.h"
#include "shell/ui/analyzer/ScopeWindow.h"
#include "shell/ui/controls/PositionControl.h"
#include "shell/ui/controls/ScrollCodes.h"
#include "shell/ui/controls/StatusWindow.h"
#include "shell/ui/controls/VolumeControl.h"
#include "shell/ui/dialogs/find/FindDialog.h"
#include "shell/ui/files/AddCommands.h"
#include "shell/ui/playlist/PlaylistModel.h"
#include "shell/ui/playlist/PlaylistView.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>

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

QString Bodies(const Playlist& main) {
    std::string bodies;
    for (int row = 0; row < main.RowCount(); ++row) bodies += main.ItemAtRow(row).item->Body() + " ";
    return QString::fromStdString(bodies);
}

// A command text adding the home's tones of these names, one second each.
std::string Tones(WindowHome& home, std::initializer_list<const char*> names, double seconds = 1) {
    std::string command;
    for (const char* name : names) command += "\"" + home.Tone(std::string(name) + ".wav", seconds) + "\" ";
    return command;
}

}  // namespace

class MainWindowTests : public QObject {
    Q_OBJECT
private slots:
    void menusButtonsAndKeysRunTheCommandTable();
    void volumeFollowsKeysAndItsBar();
    void positionBarSeekKeysAndTheScopes();
    void editingTheListFromTheView();
    void layoutIsStoredAndRestoredAndFollowsThePlaylist();
    void dropsAppendFilesFoldersAndLinksInSlices();
    void fileCommandsOpenAddAndSave();
    void findAndFindNextSelectTheMatches();
};

void MainWindowTests::menusButtonsAndKeysRunTheCommandTable() {
    WindowHome home;
    home.Seed([](Settings& s) { s.normalWindowAlwaysOnTop = 1; });
    WindowRun run(Tones(home, {"a"}));
    MainWindow& window = run.Window();
    // Each menu entry's identifier is a command of the table.
    const MainMenus& menus = window.Menus();
    for (QMenu* menu : {menus.file, menus.miscellaneous, menus.playlist, menus.trackContext, menus.playlistContext,
                        menus.generalContext, menus.randomEntryContext})
        for (QAction* action : menu->actions())
            if (!action->isSeparator() && !action->menu())
                QVERIFY2(FindCommand(action->data().toUInt()), qPrintable(action->text()));
    // Every key of the table is a window shortcut.
    for (const CommandEntry& entry : CommandTable()) {
        if (entry.key.empty()) continue;
        auto* action = window.findChild<QAction*>(Q(entry.key), Qt::FindDirectChildrenOnly);
        QVERIFY2(action && !action->shortcut().isEmpty(), std::string(entry.key).c_str());
        QCOMPARE(action->shortcutContext(), Qt::WindowShortcut);
    }
    QCOMPARE(window.findChild<QAction*>(QStringLiteral("Num+-"))->shortcut(), QKeySequence(Qt::KeypadModifier | Qt::Key_Minus));
    // The key of each of the six toggles flips its check mark, which follows the setting, and back.
    for (const auto& [id, entry] : menus.checkable) {
        const QKeyCombination key = QKeySequence(Q(FindCommand(id)->key))[0];
        for (bool checked : {!entry->isChecked(), entry->isChecked()}) {
            Key(window, key.key(), key.keyboardModifiers());
            QVERIFY2(entry->isChecked() == checked, qPrintable(entry->text()));
        }
    }
    // The commands of the dialogs open them.
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QString dialog;
    } commands[] = {
        {Qt::Key_P, Qt::ControlModifier, "Options"},  // the plug-ins page
        {Qt::Key_Insert, Qt::ControlModifier | Qt::ShiftModifier, "Random Entry Properties"},
        {Qt::Key_E, {}, "Graphic Equalizer"},
        {Qt::Key_F1, {}, "About Verdin"},
    };
    for (const auto& command : commands) {
        window.View().setFocus();
        window.View().SelectRows({0});
        QStringList seen;
        ModalWatcher watcher([&](QWidget& modal) {
            seen << modal.windowTitle();
            modal.close();
            return true;
        });
        Key(window, command.key, command.modifiers);
        // Modeless dialogs stay open beside the window.
        for (QWidget* top : QApplication::topLevelWidgets())
            if (top != &window && top->isVisible() && qobject_cast<QDialog*>(top)) {
                seen << top->windowTitle();
                top->close();
            }
        for (const QString& box : watcher.Boxes()) seen << box.section(QLatin1Char(':'), 0, 0);
        QVERIFY2(seen.contains(command.dialog), qPrintable(command.dialog + ": " + seen.join(QLatin1String(", "))));
    }
    // Always on top follows the settings.
    QVERIFY(window.windowFlags() & Qt::WindowStaysOnTopHint);
    run.Core().ChangeSettings([](Settings& s) { s.normalWindowAlwaysOnTop = 0; });
    QVERIFY(!(window.windowFlags() & Qt::WindowStaysOnTopHint));
}

// One gesture after another from a volume of 1000: the keys and page clicks step by 2048
// within the range, a held thumb twice its position (plus one when odd).
// Then a track played on an output that cannot change the volume disables the control.
void MainWindowTests::volumeFollowsKeysAndItsBar() {
    WindowHome home;
    const std::string tone = home.Tone("file.wav", 1);
    home.Seed([&](Settings& s) {
        s.SetVolume(1000);
        s.showVolumeControl = 1;
        s.outputType = 1;
        s.decodeDirectory = home.Path("music");
    });
    WindowRun run(tone);
    ControlScrollBar& bar = run.Window().Volume().Bar();
    const struct {
        QString gesture;
        int thumb;
        int volume;
    } steps[] = {{"up", 0, 3048},     {"down", 0, 1000},   {"down", 0, 0},          {"pageRight", 0, 2048},
                 {"pageLeft", 0, 0},  {"thumb", 3, 7},     {"thumb", 32000, 64000},
                 {"up", 0, 65535}};
    for (const auto& step : steps) {
        if (step.gesture == "up" || step.gesture == "down")
            Key(run.Window(), step.gesture == "up" ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier);
        if (step.gesture == "pageLeft") bar.triggerAction(QAbstractSlider::SliderPageStepSub);
        if (step.gesture == "pageRight") bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        if (step.gesture == "thumb") {
            bar.setSliderDown(true);
            bar.setSliderPosition(step.thumb);
            bar.setSliderDown(false);
        }
        QCOMPARE(int(run.Core().GetSettings().Volume()), step.volume);
        // The bar shows half the volume; the high bits of the setting travel unchanged.
        QCOMPARE(bar.value(), step.volume / 2);
        QCOMPARE(uint32_t(run.Core().GetSettings().mainVolume) >> 16, 0xFFFFu);
    }
    ModalWatcher watcher;
    run.Core().PlayRow(0);
    QVERIFY(WaitUntil([&] { return !watcher.Boxes().isEmpty(); }));
    const QString box = watcher.Boxes().front();
    QVERIFY2(box.contains(QStringLiteral("does not support volume changes")), qPrintable(box));
    QVERIFY(!run.Window().Volume().isEnabled());
}

void MainWindowTests::positionBarSeekKeysAndTheScopes() {
    WindowHome home;
    const std::string tone = home.Tone("long.wav", 30, 1000);
    home.Seed([](Settings& s) {
        s.frequencyAnalyzer = 1;
        s.oscilloscope = 1;
    });
    WindowRun run(tone);
    Player& player = run.Core();
    ControlScrollBar& bar = run.Window().Position().Bar();
    // No track playing: a page click moves nothing.
    bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(bar.value(), 0);
    player.PlayRow(0);
    QVERIFY(WaitUntil([&] { return player.CurrentStream() && player.CurrentStream()->OutputStarted(); }));
    // A 30 s track: 30 + 30/16 - 1 = 30 with a page of 1.
    QCOMPARE(bar.maximum(), 30);
    // Each step seeks by 5 s, never below 0, and the player plays on from there. (A seek is
    // taken only once the one before it has refilled the ring, so each is waited for.)
    const auto seek = [&](const std::function<void()>& step, int deltaMs) {
        const int64_t target = std::max<int64_t>(int64_t{player.PositionMs()} + deltaMs, 0);
        step();
        return WaitUntil([&] { return player.PositionMs() >= target + 200 && player.PositionMs() < target + 2000; });
    };
    const auto page = [&](QAbstractSlider::SliderAction action) { return [&bar, action] { bar.triggerAction(action); }; };
    const auto key = [&](Qt::Key k) { return [&run, k] { Key(run.Window(), k, Qt::ControlModifier); }; };
    QVERIFY(seek(page(QAbstractSlider::SliderPageStepAdd), 5000));
    QVERIFY(bar.value() >= 5);
    QVERIFY(seek(page(QAbstractSlider::SliderPageStepSub), -5000));
    QVERIFY(seek(page(QAbstractSlider::SliderPageStepSub), -5000));
    QCOMPARE(bar.value(), 0);
    // The thumb held: the status line says where it would go, the tick leaves it alone.
    bar.setSliderDown(true);
    bar.setSliderPosition(12);
    QCOMPARE(run.Window().Status().Text(), QStringLiteral("Move to 0:12 (0:30)"));
    QVERIFY(WaitUntil([&] { return player.PositionMs() >= 1000; }));
    QCOMPARE(bar.sliderPosition(), 12);
    QVERIFY(seek([&] { bar.setSliderDown(false); }, 12000 - int(player.PositionMs())));
    QVERIFY(!run.Window().Status().Text().startsWith(QStringLiteral("Move to")));
    QVERIFY(seek(key(Qt::Key_Left), -5000));
    QVERIFY(seek(key(Qt::Key_Left), -5000));
    QVERIFY(seek(key(Qt::Key_Left), -5000));
    QVERIFY(seek(key(Qt::Key_Right), 5000));
    // Bars rise in the analyzer and a trace swings across the oscilloscope while it plays,
    // both clear when it stops. Column 100 lies between the two channels: the background.
    auto rowsDrawn = [](const ScopeWindow& scope) {
        int rows = 0;
        for (int r = 0; r < kScopeHeight; ++r)
            for (int x = 0; x < kScopeWidth; ++x)
                if (scope.Pixels()[static_cast<size_t>(r * kScopeWidth + x)] != scope.Pixels()[100]) {
                    ++rows;
                    break;
                }
        return rows;
    };
    QVERIFY(WaitUntil([&] { return rowsDrawn(run.Window().Analyzer()) >= 4 && rowsDrawn(run.Window().Oscilloscope()) >= 4; }));
    player.Execute(Action::kStop);
    QVERIFY(WaitUntil([&] { return rowsDrawn(run.Window().Analyzer()) + rowsDrawn(run.Window().Oscilloscope()) == 0; }));
}

void MainWindowTests::editingTheListFromTheView() {
    WindowHome home;
    const std::string x = home.Tone("x.wav", 2), y = home.Tone("y.wav", 3);
    WindowRun run(Tones(home, {"a", "b"}, 2));
    MainWindow& window = run.Window();
    const Playlist& main = run.Core().List();
    QVERIFY(WaitUntil([&] { return window.ListSummaryLabel().text() == QStringLiteral("2 tracks (0:04)"); }));
    // With the view's focus, adding inserts at the selection, which follows its entry.
    window.View().setFocus();
    window.View().SelectRows({1});
    {
        ModalWatcher watcher(ChooseFiles({Q(x), Q(y)}));
        Key(window, Qt::Key_Insert);
    }
    Key(window, Qt::Key_Insert, Qt::AltModifier);  // a new playlist
    QCOMPARE(Bodies(main), QStringLiteral("a x y Untitled b "));
    // The information arrives from the worker threads.
    QVERIFY(WaitUntil([&] { return window.Model().data(window.Model().index(2, 2)).toString() == "0:03"; }));
    // Enter plays the selection; dragged rows and deletions keep the playing entry current.
    window.View().SelectRows({2});
    QTest::keyClick(&window.View(), Qt::Key_Return);
    QCOMPARE(run.Core().CurrentStream()->Path(), y);
    PlaylistModel& model = window.Model();
    std::unique_ptr<QMimeData> data(model.mimeData({model.index(1, 0), model.index(2, 0)}));
    QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, 5, 0, {}));
    QCOMPARE(Bodies(main), QStringLiteral("a Untitled b x y "));
    QCOMPARE(run.Core().CurrentRow(), 4);
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{4});  // the selection follows its entry
    // The current row is bold.
    QVERIFY(model.data(model.index(4, 3), Qt::FontRole).value<QFont>().bold());
    QVERIFY(!model.data(model.index(3, 3), Qt::FontRole).isValid());
    window.View().SelectRows({0, 1});
    Key(window, Qt::Key_Delete);
    QCOMPARE(Bodies(main), QStringLiteral("b x y "));
    QCOMPARE(run.Core().CurrentRow(), 2);
    QCOMPARE(model.data(model.index(2, 1)).toString(), QStringLiteral("3."));
}

void MainWindowTests::layoutIsStoredAndRestoredAndFollowsThePlaylist() {
    WindowHome home;
    {
        WindowRun run;
        MainWindow& window = run.Window();
        QHeaderView* header = window.View().header();
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
    // The bands as the window had them, the status band first (what each band's place,
    // width and line break become is BandLayoutTests').
    QCOMPARE(saved.rebarBandArray[0].id, 115);
    QCOMPARE(saved.rebarBandArray[1].id, 103);

    // A stored band layout is applied: the oscilloscope first, on the transport band's line.
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

    // The playlist hidden fixes the height at the bands'; shown again, the height comes back.
    window.resize(500, 400);
    QVERIFY(WaitUntil([&] { return window.height() == 400; }));
    Key(window, Qt::Key_P);
    QVERIFY(window.PlaylistContainer().isHidden());
    const int bars = window.minimumHeight();
    QCOMPARE(window.maximumHeight(), bars);
    QVERIFY(bars > 0 && bars < 150);
    Key(window, Qt::Key_P);
    QVERIFY(WaitUntil([&] { return window.height() == 400; }));
}

void MainWindowTests::dropsAppendFilesFoldersAndLinksInSlices() {
    WindowHome home;
    const std::string a = home.Tone("a.wav", 1);
    const std::string folder = home.Path("music/album");
    QVERIFY(QDir().mkpath(QString::fromStdString(folder)));
    QVERIFY(QDir().mkpath(QString::fromStdString(home.Path("music/other"))));
    home.Tone("album/t1.wav", 1);
    home.Tone("album/t2.wav", 1);
    home.Tone("other/loose.wav", 2);
    QVERIFY(QFile::link(QString::fromStdString(home.Path("music/other")), QString::fromStdString(home.Path("to-other"))));
    test::WriteFile(home.Path("link.desktop"), "[Desktop Entry]\nType=Link\nURL=file://" + a + "\n");
    const QUrl list = QUrl::fromLocalFile(Q(home.Path("music/list.m3u")));
    test::WriteFile(home.Path("music/list.m3u"), "a.wav\n");
    WindowRun run;
    MainWindow& window = run.Window();
    const Playlist& main = run.Core().List();
    // A selection with the focus in the view does not matter: drops append.
    window.DropUrls({QUrl::fromLocalFile(Q(a))});
    window.View().setFocus();
    window.View().SelectRows({0});
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(Q(folder)), list, QUrl::fromLocalFile(Q(home.Path("to-other"))),
                  QUrl::fromLocalFile(Q(home.Path("link.desktop")))});
    // Offered as a move (a file manager's Shift+drag): taken as a copy all the same.
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    QCoreApplication::sendEvent(&window, &enter);
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    drop.setDropAction(Qt::MoveAction);
    QCoreApplication::sendEvent(&window, &drop);
    QCOMPARE(drop.dropAction(), Qt::CopyAction);
    // The playlist file is read apart, and what follows it waits.
    QCOMPARE(Bodies(main), QStringLiteral("a t1 t2 "));
    QVERIFY(WaitUntil([&] { return !window.Adding().Busy(); }));
    QCOMPARE(Bodies(main), QStringLiteral("a t1 t2 list a loose a "));
    // The folder linked to is added under its own name.
    QCOMPARE(main.ItemAtRow(5).item->Path(), home.Path("music/other") + "/");
    QCOMPARE(run.Core().CurrentRow(), 0);
    QVERIFY(!run.Core().Playing());

    // One file more than a slice: the first slice at once, the rest after it.
    run.Core().ClearList();
    window.DropUrls(QList<QUrl>(AddCommands::kSlice + 1, QUrl::fromLocalFile(Q(a))));
    QCOMPARE(main.RowCount(), int(AddCommands::kSlice));
    QVERIFY(WaitUntil([&] { return !window.Adding().Busy(); }));
    QCOMPARE(window.Model().rowCount(), int(AddCommands::kSlice) + 1);
    // A "/PLAY" while a drop is still going in replaces the list: the rest of the drop,
    // a playlist file being read among it, does not land in the new one; a later drop does.
    window.DropUrls(QList<QUrl>(AddCommands::kSlice + 1, QUrl::fromLocalFile(Q(a))) << list);
    run.Core().ExecuteCommandText("/PLAY \"" + home.Path("music/other/loose.wav") + "\"");
    QVERIFY(!window.Adding().Busy());
    window.DropUrls({QUrl::fromLocalFile(Q(a))});
    QVERIFY(WaitUntil([&] { return !window.Adding().Busy(); }));
    QCOMPARE(Bodies(main), QStringLiteral("loose a "));
}

void MainWindowTests::fileCommandsOpenAddAndSave() {
    WindowHome home;
    const std::string new1 = home.Tone("new1.wav", 10), new2 = home.Tone("new2.wav", 10);
    QVERIFY(QDir().mkpath(QString::fromStdString(home.Path("music/set"))));
    home.Tone("set/b.wav", 1);
    test::WriteFile(home.Path("music/set/notes.txt"), "not audio");
    WindowRun run("/PLAY " + Tones(home, {"old1", "old2"}, 10));
    QVERIFY(WaitUntil([&] { return run.Core().Playing(); }));
    // Open replaces the list and plays.
    {
        ModalWatcher watcher(ChooseFiles({Q(new1), Q(new2)}));
        Key(run.Window(), Qt::Key_L);
    }
    QVERIFY(WaitUntil([&] { return run.Core().Playing() && run.Core().CurrentStream()->Path() == new1; }));
    // Add URL with its prompt, and a folder through the chooser, which is remembered.
    {
        ModalWatcher watcher(Close([](QWidget& prompt) {
            prompt.findChild<QLineEdit*>()->setText(QStringLiteral("http://radio.example.org/live.mp3"));
        }, true));
        Key(run.Window(), Qt::Key_Insert, Qt::ControlModifier);
    }
    {
        ModalWatcher watcher(ChooseFiles({Q(home.Path("music/set"))}));
        Key(run.Window(), Qt::Key_Insert, Qt::ShiftModifier);
    }
    QVERIFY(WaitUntil([&] { return !run.Window().Adding().Busy(); }));
    QCOMPARE(Bodies(run.Core().List()), QStringLiteral("new1 new2 live b "));
    QCOMPARE(home.Saved().initialDirectory, home.Path("music/set"));
    // Saving: the format the filter chose; a place nobody may write says so.
    for (const auto& [name, filter] : {std::pair{Q(home.Path("mix")), 1}, std::pair{QStringLiteral("/proc/mix"), 0}}) {
        ModalWatcher watcher([&, name = name, filter = filter](QWidget& modal) {
            auto* dialog = qobject_cast<QFileDialog*>(&modal);
            if (!dialog) return false;
            dialog->selectNameFilter(dialog->nameFilters().at(filter));
            modal.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
            return static_cast<QDialog*>(dialog)->accept(), true;
        });
        Key(run.Window(), Qt::Key_S, Qt::ShiftModifier);
        if (filter == 0) QCOMPARE(watcher.Boxes(), QStringList{QStringLiteral("Verdin: Unable to save playlist")});
    }
    const std::string written = test::ReadFile(home.Path("mix.pls"));
    QVERIFY2(written.find("[playlist]") == 0 && written.find("new2.wav") != std::string::npos, written.c_str());
}

// The search starts after the focused row; a search that finds nothing
// says so. (The matching itself is the title rules'.)
void MainWindowTests::findAndFindNextSelectTheMatches() {
    WindowHome home;
    WindowRun run(Tones(home, {"alpha", "beta", "alphabet", "gamma"}));
    MainWindow& window = run.Window();
    // Stopped, the caption takes the current track's title once its information is read.
    QVERIFY(WaitUntil([&] { return window.windowTitle().contains(QStringLiteral("alpha")); }));
    QCOMPARE(window.windowTitle(), Q(run.Core().Caption()));
    auto find = [&](const QString& text, bool caseSensitive) {
        ModalWatcher watcher(Close([&](QWidget& modal) {
            auto& dialog = static_cast<FindDialog&>(modal);
            dialog.TextField()->setText(text);
            dialog.CaseSensitiveBox()->setChecked(caseSensitive);
        }, true));
        Key(window, Qt::Key_F, Qt::ControlModifier);
        return watcher.Boxes();
    };
    window.View().SelectRows({3});
    QCOMPARE(find(QStringLiteral("ALPHA"), true),
             QStringList{QStringLiteral("Verdin: Cannot find the string \"ALPHA\".")});
    QCOMPARE(find(QStringLiteral("ALPHA"), false), QStringList{});
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{0});
    Key(window, Qt::Key_F3);  // the next match (going round: FindRow's tests)
    QCOMPARE(window.View().SelectedRows(), std::vector<int>{2});
}

QTEST_MAIN(MainWindowTests)
#include "MainWindowTests.moc"
