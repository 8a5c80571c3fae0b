// The playlist view's model over the player's main list: consistency under every kind of
// edit (QAbstractItemModelTester), the exact signals a change makes, and the background
// retrieval of added tracks. (Texts, the bold current row and a drag of rows are tried
// through the main window's view in its tests.)
#include "WindowKit.h"

#include "base/Locations.h"
#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"
#include "shell/app/CoreApplication.h"
#include "shell/ui/playlist/InformationRetrieval.h"
#include "shell/ui/playlist/PlaylistModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <fstream>

using namespace verdin;
using namespace verdin::test;

namespace {

// The headless player on a private home, started as the window starts it: tracks are
// added, and a saved main playlist is loaded, without reading them.
struct PlayerUnderTest {
    explicit PlayerUnderTest(const std::vector<std::string>& saved = {}) {
        std::string list = "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\n";
        for (size_t i = 0; i < saved.size(); ++i) list += "Entry" + std::to_string(i + 1) + "=" + saved[i] + "\r\n";
        std::filesystem::create_directories(UserDirectory());
        std::ofstream(UserDirectory() + "/default.vdp") << list << "NumberOfEntries=" << saved.size() << "\r\n";
        app = std::make_unique<CoreApplication>(RunOptions{});
        Face().SetDeferredRetrieval(true);
        app->StartUp();
        track = home.Tone("t.wav", 0.1);
    }
    Player& Face() { return app->GetPlayer(); }
    void Add(int count, int atRow = -1) { Face().AddPaths(std::vector<std::string>(size_t(count), track), atRow); }
    WindowHome home;
    std::unique_ptr<CoreApplication> app;
    std::string track;
};

}  // namespace

class PlaylistModelTests : public QObject {
    Q_OBJECT
private slots:
    void editsAreToldAsTheRowsTheyTouch();
    void retrievalFillsTracksEvenWhenRowsMove();
};

// Each edit is told to the view as the rows it touched ("+first-last" inserted,
// "-first-last" removed, "~" reordered, keeping the view's hold on each item), never as a
// reset, and the model stays consistent (QAbstractItemModelTester).
void PlaylistModelTests::editsAreToldAsTheRowsTheyTouch() {
    PlayerUnderTest t;
    t.Add(10);
    PlaylistModel model(t.Face());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QString told;
    const auto range = [&](const char* sign) {
        return [&told, sign](const QModelIndex&, int first, int last) { told += QStringLiteral("%1%2-%3").arg(sign).arg(first).arg(last); };
    };
    connect(&model, &QAbstractItemModel::rowsInserted, this, range("+"));
    connect(&model, &QAbstractItemModel::rowsRemoved, this, range("-"));
    connect(&model, &QAbstractItemModel::layoutChanged, this, [&] { told += QLatin1Char('~'); });
    connect(&model, &QAbstractItemModel::modelReset, this, [&] { told += QStringLiteral("reset"); });
    const struct {
        std::function<void(Player&)> edit;
        const char* told;
    } edits[] = {
        {[&](Player&) { t.Add(3); }, "+10-12"},
        {[](Player& p) { p.DeleteRows({2, 3}); }, "-2-3"},
        {[](Player& p) { p.MoveRows({4}, 0); }, "~"},
        {[](Player& p) { p.Execute(Action::kAddNewPlaylist, {true, {2}}); }, "+2-2"},
        {[&](Player&) { t.Add(2, 3); }, "+3-4"},
        {[](Player& p) { p.Execute(Action::kFlattenMainPlaylist); }, "-2-2"},
        {[](Player&) {}, ""},
        {[](Player& p) { p.ClearList(); }, "-0-12+0-0"},  // the rows go, the empty line comes
    };
    const PlaylistItem* fourth = t.Face().List().ItemAtRow(4).item;
    QPersistentModelIndex held(model.index(4, 0));
    for (const auto& e : edits) {
        told.clear();
        e.edit(t.Face());
        model.Resync();
        QCOMPARE(told, QString::fromLatin1(e.told));
        QCOMPARE(model.rowCount(), std::max(t.Face().List().RowCount(), 1));
        if (held.isValid()) QCOMPARE(t.Face().List().ItemAtRow(held.row()).item, fourth);
    }
    QVERIFY(model.ShowsEmptyLine());
    QCOMPARE(model.flags(model.index(0, 0)) & Qt::ItemIsSelectable, Qt::ItemFlags());
}

void PlaylistModelTests::retrievalFillsTracksEvenWhenRowsMove() {
    WindowHome tones;
    std::vector<std::string> files;
    for (int i = 0; i < 40; ++i) files.push_back(tones.Tone("r" + std::to_string(i) + ".wav", 1 + i % 3));
    PlayerUnderTest t({files.begin(), files.begin() + 20});  // half saved by the last run, half added
    Player& player = t.Face();
    QVERIFY(!static_cast<const TrackItem*>(player.List().ItemAtRow(0).item)->Track().InfoRetrieved());
    QCOMPARE(player.AddPaths({files.begin() + 20, files.end()}, -1), 20);
    InformationRetrieval retrieval(player);
    QSignalSpy progress(&retrieval, &InformationRetrieval::Progress);
    retrieval.Enqueue(player.TakeDeferredTracks());
    // Rows move under the job: two rows in front, one of the tracks deleted.
    player.Execute(Action::kAddNewPlaylist, {true, {0}});
    player.Execute(Action::kAddNewPlaylist, {true, {0}});
    player.DeleteRows({2});
    QVERIFY(WaitUntil([&] { return !retrieval.Busy(); }));
    const Playlist& main = player.List();
    QCOMPARE(main.RowCount(), 41);
    for (int row = 2; row < 41; ++row) {
        const TrackRecord& track = static_cast<const TrackItem*>(main.ItemAtRow(row).item)->Track();
        QVERIFY2(track.InfoRetrieved(), track.FullName().c_str());
        QCOMPARE(track.Duration(), uint32_t(1000 * (1 + (row - 1) % 3)));
    }
    QCOMPARE(progress.last()[1].value<size_t>(), size_t(0));
}

QTEST_MAIN(PlaylistModelTests)
#include "PlaylistModelTests.moc"
