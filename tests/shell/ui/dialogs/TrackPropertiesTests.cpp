// Track properties: what happens before the dialog opens, the General page and the
// module's file information, the tag page (frames, attachments, editing, a write that
// fails), each on a row of the player's list.
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/properties/TagPage.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

#include "playlist/TrackItem.h"
#include "tags/FrameValues.h"
#include "tags/TagReader.h"

#include "DialogTestKit.h"
#include "Files.h"

#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <filesystem>
#include <sys/stat.h>

using namespace verdin;

class TrackPropertiesTests : public test::CoreTests {
    Q_OBJECT

private slots:
    // Added with retrieval switched off: the question comes first; No opens nothing,
    // Yes has the player read the track and opens the dialog.
    void unretrievedTracksAskFirst() {
        player().ChangeSettings([](Settings& s) { s.skipInfoForAnyFile = 1; });
        player().AddPaths({fixture->Tone("a.wav", 0.5)}, -1);
        QString question, title;
        test::AnswerModals({test::Box(&question, QMessageBox::No)});
        ShowTrackProperties(nullptr, player(), 0);
        QCOMPARE(question, QStringLiteral("Information for this track is not retrieved.\nDo you want to retrieve it now?"));
        QVERIFY(!Track(0).InfoRetrieved());
        fixture->announced = 0;
        test::AnswerModals({test::Box(&question, QMessageBox::Yes), test::Dialog(&title)});
        ShowTrackProperties(nullptr, player(), 0);
        QCOMPARE(title, QStringLiteral("Track Properties"));
        QCOMPARE(Track(0).SampleRate(), 44100);
        QVERIFY(fixture->announced & kTextsChanged);
    }

    // A file no module reads, and one gone since it was added (retrieved on asking):
    // nothing opens.
    void tracksThatCannotBeReadSayUnknownFileFormat() {
        test::WriteFile(fixture->dir.file("noise.xyz"), "no module reads this");
        player().AddPaths({fixture->dir.file("noise.xyz")}, -1);
        player().ChangeSettings([](Settings& s) { s.skipInfoForAnyFile = 1; });
        player().AddPaths({fixture->Tone("gone.wav", 0.1)}, -1);
        std::filesystem::remove(fixture->dir.file("gone.wav"));
        QString first, question, second;
        test::AnswerModals({test::Box(&first)});
        ShowTrackProperties(nullptr, player(), 0);
        test::AnswerModals({test::Box(&question, QMessageBox::Yes), test::Box(&second)});
        ShowTrackProperties(nullptr, player(), 1);
        QCOMPARE(first + " " + second, QStringLiteral("Unknown file format. Unknown file format."));
    }

    // The probe module reports 59,990 ms at -192,000 b/s, 44,100 Hz stereo 16-bit, and
    // gets the file for its own information.
    void generalPageAndFileInfoOfAVariableRateTrack() {
        const std::string path = fixture->dir.file("v.probe");
        test::WriteFile(path, "probe data");
        player().AddPaths({path}, -1);
        TrackPropertiesDialog dialog(nullptr, player(), 0, Track(0));
        QCOMPARE(dialog.GeneralText(), QString::fromStdString(path + "\n\n1234 bytes\n\n0:59.99\n\n192 kb/s (average)\n\n"
                                                                     "44100 Hz\n\n16 bit stereo\n\n1 : 7.350\n\n"));
        QCOMPARE(dialog.Tags()->findChild<QLabel*>(QStringLiteral("tagVersion"))->text(), QStringLiteral("No ID3 Tag found"));
        QVERIFY(!dialog.Tags()->EditorOf(FrameId::Title)->isEnabled());  // no tag can be written to this layout
        test::Click(dialog, "fileInfo");
        QCOMPARE(fixture->ProbeLog(), "input fileinfo " + path + " 0\n");
    }

    void theTagPageShowsTheFramesAndSavesAttachments() {
        const std::string png = fixture->dir.file("cover.png");
        QImage(3, 2, QImage::Format_RGB32).save(QString::fromStdString(png), "PNG");
        player().AddPaths({fixture->Mp3("t.mp3", {"--id3v2-only", "--tt", "A title", "--tc", "A comment", "--ti", png})}, -1);
        TrackPropertiesDialog dialog(nullptr, player(), 0, Track(0));
        TagPage& page = *dialog.Tags();
        QCOMPARE(page.findChild<QLabel*>(QStringLiteral("tagVersion"))->text(), QStringLiteral("ID3 Tag version 2.3.0"));
        auto* frames = page.findChild<QTreeWidget*>(QStringLiteral("frames"));
        QTreeWidgetItem none;
        const auto frame = [&](const char* id) { return frames->findItems(id, Qt::MatchExactly).value(0, &none); };
        QCOMPARE(frame("TITLE")->text(2), QStringLiteral("A title"));
        QVERIFY(frame("COMMENT")->text(3).startsWith(QStringLiteral("Language: ")));
        QCOMPARE(frame("PICTURE")->text(3), QStringLiteral("Picture type: Other - MIME type: image/png"));  // lame's type 0
        auto* save = page.findChild<QPushButton*>(QStringLiteral("saveAttachment"));
        frames->setCurrentItem(frame("TITLE"));
        QVERIFY(!save->isEnabled());
        frames->setCurrentItem(frame("PICTURE"));
        QString chooser, message;
        test::AnswerModals({test::Chooser(QString::fromStdString(fixture->dir.file("saved.png")), &chooser)});
        QTest::mouseClick(save, Qt::LeftButton);
        QCOMPARE(chooser, QStringLiteral("Save Attachment As"));
        QCOMPARE(test::ReadFile(fixture->dir.file("saved.png")), test::ReadFile(png));
        test::AnswerModals({test::Box(&message)});
        QVERIFY(!page.SaveAttachmentTo(frame("PICTURE")->data(0, Qt::UserRole).toInt(), "/no/such/x.png"));
        QVERIFY2(message.startsWith("The attachment could not be saved:\n"), qPrintable(message));
    }

    // A write that fails says why and keeps the edits; one that succeeds gives the file
    // the edited frames, and the player reads the track again: its title follows.
    void editedFramesAreWrittenAndTheTrackReadAgain() {
        const std::string mp3 = fixture->Mp3("e.mp3", {"--id3v2-only", "--tt", "Before", "--ta", "Someone"});
        player().AddPaths({mp3}, -1);
        QCOMPARE(player().TrackTitle(Track(0)), std::string("Someone - Before"));
        TrackPropertiesDialog dialog(nullptr, player(), 0, Track(0));
        dialog.Tags()->EditorOf(FrameId::Title)->setText(QStringLiteral("After"));
        dialog.Tags()->EditorOf(FrameId::Album)->setText(QStringLiteral("New album"));
        QCOMPARE(::chmod(mp3.c_str(), 0444), 0);
        const std::string before = test::ReadFile(mp3);
        QString message;
        test::AnswerModals({test::Box(&message)});
        test::Click(*dialog.Tags(), "writeTag");
        QCOMPARE(message, QStringLiteral("The tag could not be written:\nThe file is read-only"));
        QCOMPARE(test::ReadFile(mp3), before);
        QCOMPARE(dialog.Tags()->EditorOf(FrameId::Title)->text(), QStringLiteral("After"));

        QCOMPARE(::chmod(mp3.c_str(), 0644), 0);
        fixture->announced = 0;
        test::Click(*dialog.Tags(), "writeTag");
        TrackTag onDisk;
        ReadTrackTag(mp3, {}, onDisk);
        QCOMPARE(FrameStringValue(onDisk, FrameId::Album), std::string("New album"));
        QCOMPARE(FrameStringValue(onDisk, FrameId::LeadArtist), std::string("Someone"));
        QCOMPARE(player().TrackTitle(Track(0)), std::string("Someone - After"));
        QVERIFY(fixture->announced & kTextsChanged);
    }

private:
    const TrackRecord& Track(int row) const {
        return static_cast<const TrackItem*>(player().List().ItemAtRow(row).item)->Track();
    }
};

[[maybe_unused]] static const bool registered = test::Register<TrackPropertiesTests>();
#include "TrackPropertiesTests.moc"
