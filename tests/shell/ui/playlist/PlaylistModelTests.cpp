// The playlist view's model over the player core's tree: consistency under every kind of
// change (QAbstractItemModelTester), the exact signals a change makes, the texts, drags,
// and the background retrieval of added tracks.
#include "WindowKit.h"

#include "playlist/Playlist.h"
#include "playlist/TrackItem.h"
#include "playlist/TreeCommands.h"
#include "shell/app/CoreApplication.h"
#include "shell/ui/playlist/InformationRetrieval.h"
#include "shell/ui/playlist/PlaylistModel.h"
#include "shell/ui/playlist/PlaylistView.h"
#include "playlist/RowMove.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace verdin;
using namespace verdin::test;

namespace {

void AppendTracks(Playlist& playlist, int count, const std::string& prefix = "/music/t") {
    for (int i = 0; i < count; ++i) playlist.AppendItem(std::make_unique<TrackItem>(prefix + std::to_string(i) + ".wav"));
}

struct CoreUnderTest {
    CoreUnderTest() {
        home.Seed();
        app = std::make_unique<CoreApplication>(RunOptions{});
    }
    PlayerCore& Core() { return app->Core(); }
    Playlist& Main() { return app->Core().MainPlaylist(); }
    WindowHome home;
    std::unique_ptr<CoreApplication> app;
};

}  // namespace

class PlaylistModelTests : public QObject {
    Q_OBJECT
private slots:
    void staysConsistentThroughEveryChange();
    void changesAreSignalledAsTheRowsTheyTouch();
    void hundredThousandRowsGrowByOneRow();
    void cellsAndIconsAreTheCoresTexts();
    void draggedRowsAskForAMove();
    void selectedRowsComeFromRanges();
    void retrievalFillsTracksEvenWhenRowsMove();
};

void PlaylistModelTests::staysConsistentThroughEveryChange() {
    CoreUnderTest t;
    PlaylistModel model(t.Core());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Playlist& main = t.Main();
    AppendTracks(main, 5);
    model.Resync();
    AddNewPlaylist(main, 2, "/lists/new.vdp");
    model.Resync();
    AppendTracks(*static_cast<Playlist*>(main.ItemAtRow(2).item), 3, "/music/inner");
    model.Resync();
    QCOMPARE(model.rowCount(), 9);
    DeleteRows(main, {0, 1});
    model.Resync();
    SortPlaylist(main, [](const PlaylistItem& item) { return item.Body(); });
    model.Resync();
    MoveRows(main, {0}, 7);
    model.Resync();
    FlattenMainPlaylist(main);
    model.Resync();
    QCOMPARE(model.rowCount(), main.RowCount());
    main.Clear();
    model.Resync();
    QCOMPARE(model.rowCount(), 1);
    QVERIFY(model.ShowsEmptyLine());
    QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("Empty playlist"));
    QCOMPARE(model.flags(model.index(0, 0)) & Qt::ItemIsSelectable, Qt::ItemFlags());
}

void PlaylistModelTests::changesAreSignalledAsTheRowsTheyTouch() {
    CoreUnderTest t;
    Playlist& main = t.Main();
    AppendTracks(main, 10);
    PlaylistModel model(t.Core());
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reordered(&model, &QAbstractItemModel::layoutChanged);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

    AppendTracks(main, 3, "/music/more");
    model.Resync();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted[0][1].toInt(), 10);
    QCOMPARE(inserted[0][2].toInt(), 12);

    DeleteRows(main, {2, 3});
    model.Resync();
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed[0][1].toInt(), 2);
    QCOMPARE(removed[0][2].toInt(), 3);

    // A reordering keeps the view's hold on each item.
    const PlaylistItem* fourth = main.ItemAtRow(4).item;
    QPersistentModelIndex held(model.index(4, 0));
    MoveRows(main, {4}, 0);
    model.Resync();
    QCOMPARE(reordered.size(), 1);
    QCOMPARE(held.row(), 0);
    QCOMPARE(main.ItemAtRow(held.row()).item, fourth);

    // Nothing changed: no rows come or go.
    model.Resync();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(reordered.size(), 1);
    QCOMPARE(reset.size(), 0);
}

void PlaylistModelTests::hundredThousandRowsGrowByOneRow() {
    CoreUnderTest t;
    Playlist& main = t.Main();
    AppendTracks(main, 100000);
    PlaylistModel model(t.Core());
    PlaylistView view;
    view.setModel(&model);
    view.resize(600, 400);
    view.show();
    QCOMPARE(model.rowCount(), 100000);
    view.scrollToBottom();
    QCoreApplication::processEvents();
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    AppendTracks(main, 1, "/music/last");
    model.Resync();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted[0][1].toInt(), 100000);
    QCOMPARE(reset.size(), 0);
    QCOMPARE(model.data(model.index(100000, 1)).toString(), QStringLiteral("100001."));
    QCOMPARE(model.data(model.index(100000, 0)).toString(), QString::fromStdString(t.Core().CellsOfRow(100000)[0]));
}

void PlaylistModelTests::cellsAndIconsAreTheCoresTexts() {
    CoreUnderTest t;
    Playlist& main = t.Main();
    AppendTracks(main, 2);
    AddNewPlaylist(main, -1, "/lists/mix.vdp");
    static_cast<Playlist*>(main.ItemAtRow(2).item)->SetModified(true);
    PlaylistModel model(t.Core());
    QPixmap red(16, 16), blue(16, 16);
    red.fill(Qt::red);
    blue.fill(Qt::blue);
    const QIcon playlistIcon(red), trackIcon(blue);
    model.SetIcons(playlistIcon, trackIcon);
    for (int row = 0; row < 3; ++row) {
        const RowCells cells = t.Core().CellsOfRow(row);
        for (int column = 0; column < kPlaylistColumns; ++column)
            QCOMPARE(model.data(model.index(row, column)).toString(),
                     QString::fromStdString(cells[static_cast<size_t>(column)]));
    }
    QCOMPARE(model.data(model.index(2, 0)).toString(), QStringLiteral("mix *"));
    QCOMPARE(model.data(model.index(0, 0), Qt::DecorationRole).value<QIcon>().cacheKey(), trackIcon.cacheKey());
    QCOMPARE(model.data(model.index(2, 0), Qt::DecorationRole).value<QIcon>().cacheKey(), playlistIcon.cacheKey());
    QVERIFY(!model.data(model.index(0, 1), Qt::DecorationRole).isValid());
    const QStringList headers{"Title", "No", "Duration", "Bitrate", "Sample rate", "Bit resolution", "File size", "ID3 Tag"};
    for (int column = 0; column < kPlaylistColumns; ++column)
        QCOMPARE(model.headerData(column, Qt::Horizontal).toString(), headers[column]);
    // The current row is bold.
    t.Core().SetCurrentRow(1);
    model.CurrentRowMoved();
    QVERIFY(model.data(model.index(1, 3), Qt::FontRole).value<QFont>().bold());
    QVERIFY(!model.data(model.index(0, 3), Qt::FontRole).isValid());
}

void PlaylistModelTests::draggedRowsAskForAMove() {
    CoreUnderTest t;
    AppendTracks(t.Main(), 5);
    PlaylistModel model(t.Core());
    QSignalSpy asked(&model, &PlaylistModel::MoveRequested);
    std::unique_ptr<QMimeData> data(model.mimeData({model.index(1, 0), model.index(1, 3), model.index(3, 0)}));
    QVERIFY(data);
    struct Drop {
        int row;
        QModelIndex parent;
        int before;
    };
    const Drop drops[] = {{0, {}, 0}, {-1, model.index(2, 0), 2}, {-1, {}, 5}, {5, {}, 5}};
    for (const Drop& drop : drops) {
        QVERIFY(model.canDropMimeData(data.get(), Qt::MoveAction, drop.row, 0, drop.parent));
        QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, drop.row, 0, drop.parent));
        const auto rows = asked.takeFirst();
        QCOMPARE(rows[0].value<std::vector<int>>(), (std::vector<int>{1, 3}));
        QCOMPARE(rows[1].toInt(), drop.before);
    }
    // Files from outside are no rows.
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/music/x.wav"))});
    QVERIFY(!model.canDropMimeData(&files, Qt::MoveAction, 0, 0, {}));
}

void PlaylistModelTests::selectedRowsComeFromRanges() {
    CoreUnderTest t;
    AppendTracks(t.Main(), 100000);
    PlaylistModel model(t.Core());
    PlaylistView view;
    view.setModel(&model);
    view.selectAll();
    const std::vector<int> rows = view.SelectedRows();
    QCOMPARE(rows.size(), size_t(100000));
    QCOMPARE(rows.back(), 99999);
    view.SelectRows({7, 3});
    QCOMPARE(view.SelectedRows(), (std::vector<int>{3, 7}));
    QCOMPARE(view.FirstSelectedRow(), 3);
}

void PlaylistModelTests::retrievalFillsTracksEvenWhenRowsMove() {
    CoreUnderTest t;
    std::vector<std::string> files;
    for (int i = 0; i < 40; ++i) files.push_back(t.home.Tone("r" + std::to_string(i) + ".wav", 1 + i % 3));
    t.app->StartUp(nullptr);
    PlayerCore& core = t.Core();
    core.SetDeferredRetrieval(true);
    QCOMPARE(core.AddPaths(files, -1), 40);
    // Nothing read yet: the core lists what is to be read.
    QVERIFY(!static_cast<TrackItem*>(core.MainPlaylist().ItemAtRow(0).item)->Track().InfoRetrieved());
    std::vector<PlayerCore::DeferredTrack> deferred = core.TakeDeferredTracks();
    QCOMPARE(deferred.size(), size_t(40));
    QCOMPARE(deferred[5].row, 5);
    QVERIFY(core.TakeDeferredTracks().empty());

    InformationRetrieval retrieval(core);
    QSignalSpy progress(&retrieval, &InformationRetrieval::Progress);
    retrieval.Enqueue(std::move(deferred));
    // Rows move under the job: two rows in front, one of the tracks deleted.
    AddNewPlaylist(core.MainPlaylist(), 0, "/lists/a.vdp");
    AddNewPlaylist(core.MainPlaylist(), 0, "/lists/b.vdp");
    core.DeleteRows({2});
    retrieval.ListChanged();
    QVERIFY(WaitUntil([&] { return !retrieval.Busy(); }));
    const Playlist& main = core.MainPlaylist();
    QCOMPARE(main.RowCount(), 41);
    for (int row = 2; row < 41; ++row) {
        const TrackRecord& track = static_cast<const TrackItem*>(main.ItemAtRow(row).item)->Track();
        QVERIFY2(track.InfoRetrieved(), track.FullName().c_str());
        QCOMPARE(track.Duration(), uint32_t(1000 * (1 + (row - 1) % 3)));
        QCOMPARE(track.SampleRate(), 44100);
    }
    QVERIFY(!progress.isEmpty());
    QCOMPARE(progress.last()[1].value<size_t>(), size_t(0));
}

QTEST_MAIN(PlaylistModelTests)
#include "PlaylistModelTests.moc"
