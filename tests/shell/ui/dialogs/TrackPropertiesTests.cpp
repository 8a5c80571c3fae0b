// Track properties: what happens before the dialog opens, the General page of real
// tracks, the tag page (frames, labels, saving attachments, editing with a write that
// fails) and the input module's own file information.
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/properties/PropertiesFlow.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TagPage.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include "DialogTestKit.h"
#include "Files.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>
#include <sys/stat.h>

using namespace verdin;

namespace {

TrackRecord& TrackAt(PlayerCore& core, int row) {
    return static_cast<TrackItem*>(core.MainPlaylist().ItemAtRow(row).item)->Track();
}

QTreeWidgetItem* FrameRow(QTreeWidget* frames, const QString& name) {
    for (int i = 0; i < frames->topLevelItemCount(); ++i)
        if (frames->topLevelItem(i)->text(0) == name) return frames->topLevelItem(i);
    return nullptr;
}

}  // namespace

class TrackPropertiesTests : public QObject {
    Q_OBJECT

private slots:
    void init() {
        fixture_ = std::make_unique<test::CoreFixture>();
        log_ = fixture_->probeLog;
    }
    void cleanup() { fixture_.reset(); }

    // Adding with every retrieval switched off leaves the track unretrieved: the question
    // comes first, and No opens nothing and retrieves nothing.
    void unretrievedTracksAskFirst() {
        PlayerCore& core = *fixture_->core;
        fixture_->settings.skipInfoForAnyFile = 1;
        core.AddPaths({fixture_->Tone("a.wav", 0.5)}, -1);
        TrackRecord& track = TrackAt(core, 0);
        QVERIFY(!track.InfoRetrieved());

        fixture_->host.answers = {false};
        QVERIFY(!PrepareTrackForProperties(core, track));
        QCOMPARE(fixture_->host.questions.size(), size_t{1});
        QCOMPARE(fixture_->host.questions[0].text,
                 std::string("Information for this track is not retrieved.\nDo you want to retrieve it now?"));
        QVERIFY(fixture_->host.questions[0].icon == MessageIcon::kQuestion);
        QVERIFY(!track.InfoRetrieved());

        const int refreshes = fixture_->host.refreshes;
        fixture_->host.answers = {true};
        QVERIFY(PrepareTrackForProperties(core, track));
        QVERIFY(track.InfoRetrieved());
        QCOMPARE(track.SampleRate(), 44100);
        QVERIFY(fixture_->host.refreshes > refreshes);
        QVERIFY(fixture_->host.messages.empty());
    }

    void tracksThatDoNotExistSayUnknownFileFormat() {
        PlayerCore& core = *fixture_->core;
        test::WriteFile(fixture_->dir.file("noise.xyz"), "no module reads this");
        core.AddPaths({fixture_->dir.file("noise.xyz")}, -1);
        // A track whose file has gone since it was added: retrieved on asking (Yes).
        core.MainPlaylist().AppendItem(std::make_unique<TrackItem>(fixture_->dir.file("gone.wav")));
        QCOMPARE(core.MainPlaylist().RowCount(), 2);
        for (int row = 0; row < 2; ++row) {
            fixture_->host.messages.clear();
            QVERIFY(!PrepareTrackForProperties(core, TrackAt(core, row)));
            QCOMPARE(fixture_->host.messages.size(), size_t{1});
            QCOMPARE(fixture_->host.messages[0].text, std::string("Unknown file format."));
            QVERIFY(fixture_->host.messages[0].icon == MessageIcon::kError);
        }
        // Through the command: no dialog opens (a modal one would never return here).
        ShowTrackProperties(nullptr, core, 0);
        QCOMPARE(fixture_->host.messages.back().text, std::string("Unknown file format."));
    }

    // A variable-rate track through the real dialog: the probe module reports 59,990 ms
    // at -192,000 b/s, 44,100 Hz stereo 16-bit.
    void generalPageOfAVariableRateTrack() {
        PlayerCore& core = *fixture_->core;
        const std::string path = fixture_->dir.file("v.probe");
        test::WriteFile(path, "probe data");
        core.AddPaths({path}, -1);
        TrackRecord& track = TrackAt(core, 0);
        QVERIFY(PrepareTrackForProperties(core, track));
        TrackPropertiesDialog dialog(nullptr, core, track);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Track Properties"));
        auto* tabs = dialog.findChild<QTabWidget*>();
        QVERIFY(tabs);
        QCOMPARE(tabs->tabText(0), QStringLiteral("General"));
        QCOMPARE(dialog.GeneralText(), QString::fromStdString(path + "\n\n1234 bytes\n\n0:59.99\n\n192 kb/s (average)\n\n"
                                                                     "44100 Hz\n\n16 bit stereo\n\n1 : 7.350\n\n"));
        QVERIFY(dialog.Tags());
        QCOMPARE(dialog.Tags()->findChild<QLabel*>(QStringLiteral("tagVersion"))->text(), QStringLiteral("No ID3 Tag found"));
        // A layout no tag can be written to offers no editing.
        QVERIFY(!dialog.Tags()->EditorOf(FrameId::Title)->isEnabled());
        QVERIFY(!dialog.Tags()->findChild<QPushButton*>(QStringLiteral("writeTag"))->isEnabled());
    }

    void theFileInfoButtonHandsTheFileToItsModule() {
        PlayerCore& core = *fixture_->core;
        const std::string path = fixture_->dir.file("w.probe");
        test::WriteFile(path, "probe data");
        core.AddPaths({path, fixture_->Tone("t.wav", 0.2)}, -1);
        TrackPropertiesDialog probe(nullptr, core, TrackAt(core, 0));
        auto* button = probe.findChild<QPushButton*>(QStringLiteral("fileInfo"));
        QVERIFY(button && button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(QString::fromStdString(test::ReadFile(log_)), QString::fromStdString("input fileinfo " + path + " 0\n"));
    }

    void theTagPageShowsEveryFrameWithItsLabelsAndSavesAttachments() {
        PlayerCore& core = *fixture_->core;
        const std::string png = fixture_->Png("cover.png");
        const std::string mp3 = fixture_->Mp3("tagged.mp3", {"--id3v2-only", "--tt", "A title", "--ta", "An artist",
                                                              "--tc", "A comment", "--ti", png});
        core.AddPaths({mp3}, -1);
        TrackPropertiesDialog dialog(nullptr, core, TrackAt(core, 0));
        TagPage* page = dialog.Tags();
        QVERIFY(page);
        QCOMPARE(page->findChild<QLabel*>(QStringLiteral("tagVersion"))->text(), QStringLiteral("ID3 Tag version 2.3.0"));
        auto* frames = page->findChild<QTreeWidget*>(QStringLiteral("frames"));
        QCOMPARE(frames->topLevelItemCount(), static_cast<int>(page->Tag().size()));
        QTreeWidgetItem* title = FrameRow(frames, QStringLiteral("TITLE"));
        QVERIFY(title);
        QCOMPARE(title->text(1), QStringLiteral("Title/songname/content description"));
        QCOMPARE(title->text(2), QStringLiteral("A title"));
        QTreeWidgetItem* comment = FrameRow(frames, QStringLiteral("COMMENT"));
        QVERIFY(comment);
        QCOMPARE(comment->text(2), QStringLiteral("A comment"));
        QVERIFY(comment->text(3).startsWith(QStringLiteral("Language: ")));
        QTreeWidgetItem* picture = FrameRow(frames, QStringLiteral("PICTURE"));
        QVERIFY(picture);
        // lame marks the pictures it attaches as type 0.
        QCOMPARE(picture->text(3), QStringLiteral("Picture type: Other - MIME type: image/png"));

        auto* save = page->findChild<QPushButton*>(QStringLiteral("saveAttachment"));
        frames->setCurrentItem(title);
        QVERIFY(!save->isEnabled());
        frames->setCurrentItem(picture);
        QVERIFY(save->isEnabled());
        const QString target = QString::fromStdString(fixture_->dir.file("saved.png"));
        QString chooserTitle;
        test::ChooseInNextFileDialog(target, &chooserTitle);
        QTest::mouseClick(save, Qt::LeftButton);
        QCOMPARE(chooserTitle, QStringLiteral("Save Attachment As"));
        QCOMPARE(test::ReadFile(target.toStdString()), test::ReadFile(png));

        // A place that cannot be written: the reason is shown, nothing else happens.
        fixture_->host.messages.clear();
        const int pictureIndex = picture->data(0, Qt::UserRole).toInt();
        QVERIFY(!page->SaveAttachmentTo(pictureIndex, fixture_->dir.file("no/such/dir/x.png")));
        QCOMPARE(fixture_->host.messages.size(), size_t{1});
        QVERIFY(fixture_->host.messages[0].icon == MessageIcon::kError);
    }

    // Editing: the file gets the new frames, the track reads its information again (its
    // title follows) and the player redraws.
    void editedFramesAreWrittenAndTheTrackReadAgain() {
        PlayerCore& core = *fixture_->core;
        const std::string mp3 = fixture_->Mp3("e.mp3", {"--id3v2-only", "--tt", "Before", "--ta", "Someone"});
        core.AddPaths({mp3}, -1);
        TrackRecord& track = TrackAt(core, 0);
        QCOMPARE(core.TrackTitle(track), std::string("Someone - Before"));
        TrackPropertiesDialog dialog(nullptr, core, track);
        TagPage* page = dialog.Tags();
        QLineEdit* title = page->EditorOf(FrameId::Title);
        QVERIFY(title->isEnabled());
        QCOMPARE(title->text(), QStringLiteral("Before"));
        title->setText(QStringLiteral("After"));
        page->EditorOf(FrameId::Album)->setText(QStringLiteral("New album"));
        const int refreshes = fixture_->host.refreshes;
        QTest::mouseClick(page->findChild<QPushButton*>(QStringLiteral("writeTag")), Qt::LeftButton);
        QVERIFY(fixture_->host.messages.empty());

        TrackTag onDisk;
        ReadTrackTag(mp3, {}, onDisk);
        QCOMPARE(FrameStringValue(onDisk, FrameId::Title), std::string("After"));
        QCOMPARE(FrameStringValue(onDisk, FrameId::Album), std::string("New album"));
        QCOMPARE(FrameStringValue(onDisk, FrameId::LeadArtist), std::string("Someone"));
        QCOMPARE(core.TrackTitle(track), std::string("Someone - After"));
        QVERIFY(fixture_->host.refreshes > refreshes);
        QVERIFY(dialog.GeneralText().startsWith(QString::fromStdString(mp3)));
        QCOMPARE(title->text(), QStringLiteral("After"));  // the page shows the file as it is now
    }

    void aWriteThatFailsLeavesTheFileAndKeepsTheEdits() {
        PlayerCore& core = *fixture_->core;
        const std::string mp3 = fixture_->Mp3("ro.mp3", {"--id3v2-only", "--tt", "Kept"});
        core.AddPaths({mp3}, -1);
        QCOMPARE(::chmod(mp3.c_str(), 0444), 0);
        const std::string before = test::ReadFile(mp3);
        TrackPropertiesDialog dialog(nullptr, core, TrackAt(core, 0));
        TagPage* page = dialog.Tags();
        page->EditorOf(FrameId::Title)->setText(QStringLiteral("Lost"));
        QVERIFY(!page->WriteChanges());
        QCOMPARE(fixture_->host.messages.size(), size_t{1});
        QCOMPARE(fixture_->host.messages[0].text, std::string("The tag could not be written:\nThe file is read-only"));
        QVERIFY(fixture_->host.messages[0].icon == MessageIcon::kError);
        QCOMPARE(test::ReadFile(mp3), before);
        QCOMPARE(page->EditorOf(FrameId::Title)->text(), QStringLiteral("Lost"));
        QCOMPARE(core.TrackTitle(TrackAt(core, 0)), std::string(" - Kept"));
    }

    void aRandomEntrysRowOpensTheRandomEntryDialog() {
        PlayerCore& core = *fixture_->core;
        core.MainPlaylist().AppendItem(std::make_unique<RandomEntry>("(YEAR < 1970)"));
        QString title;
        test::AnswerNextModal([&title](QWidget* modal) {
            title = modal->windowTitle();
            modal->close();
        });
        ShowTrackProperties(nullptr, core, 0);
        QCOMPARE(title, QStringLiteral("Random Entry Properties"));
    }

private:
    std::unique_ptr<test::CoreFixture> fixture_;
    std::string log_;
};

QTEST_MAIN(TrackPropertiesTests)
#include "TrackPropertiesTests.moc"
