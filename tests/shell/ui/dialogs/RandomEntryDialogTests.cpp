// "Random Entry Properties": the insert menus and the folder chooser, the preview of
// matching tracks, editing an entry through its row, and "Evaluated Track Properties".
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

#include "playlist/RandomEntry.h"

#include "DialogTestKit.h"

#include <QLineEdit>
#include <QMenu>
#include <filesystem>

using namespace verdin;

class RandomEntryDialogTests : public test::CoreTests {
    Q_OBJECT

private slots:
    // Each menu offers the variables of its kind; the name before the tab, or the chosen
    // folder, goes in at the caret, replacing a selection.
    void insertingVariablesAndPathsAtTheCaret() {
        RandomEntryDialog dialog(nullptr, player(), "( < 300) && (YEAR < 1970) && (FILEPATH ~ \"\")");
        QVERIFY(!test::FindAction(dialog.IntegerMenu(), QStringLiteral("TITLE\tTitle/songname/content description")));
        QVERIFY(!test::FindAction(dialog.StringMenu(), QStringLiteral("YEAR\tYear")));
        QString group;
        QVERIFY(test::FindAction(dialog.StringMenu(), QStringLiteral("LEADARTIST\tLead performer(s)/Soloist(s)"), &group));
        QCOMPARE(group, QStringLiteral("ID3 Frame"));
        QLineEdit* field = dialog.ExpressionField();
        field->setCursorPosition(1);
        test::FindAction(dialog.IntegerMenu(), QStringLiteral("DURATION\tTrack duration (in seconds)"), &group)->trigger();
        QCOMPARE(group, QStringLiteral("General"));
        QCOMPARE(field->cursorPosition(), 9);
        field->setSelection(21, 4);  // YEAR
        test::FindAction(dialog.StringMenu(), QStringLiteral("FILEBODY\tFile body"))->trigger();
        const std::string folder = fixture->dir.file("music");
        std::filesystem::create_directory(folder);
        QString title;
        field->setCursorPosition(field->text().size() - 2);  // between the quotes
        test::AnswerModals({test::Chooser(QString::fromStdString(folder), &title), test::Chooser(QString())});
        dialog.InsertPath();
        dialog.InsertPath();  // cancelled: nothing changes
        QCOMPARE(title, QStringLiteral("Select path to insert"));
        QCOMPARE(dialog.Expression(), "(DURATION < 300) && (FILEBODY < 1970) && (FILEPATH ~ \"" + folder + "\")");
    }

    void thePreviewCountsTheMatchingTracksAsTheExpressionIsTyped() {
        RandomEntryDialog before(nullptr, player(), "(DURATION > 1)");
        QCOMPARE(before.PreviewText(), QStringLiteral("The sample space has not been created yet."));
        BuildSampleSpace();
        RandomEntryDialog dialog(nullptr, player(), "(DURATION > 1)");
        QCOMPARE(dialog.PreviewText(), QStringLiteral("2 of 3 tracks of the sample space match."));
        dialog.ExpressionField()->setText(QStringLiteral("(FILEBODY = \"nothing\")"));
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("0 of 3 tracks of the sample space match."));
        dialog.ExpressionField()->setText(QStringLiteral("(FILEBODY ~ \"ONE\") | (DURATION > 2)"));
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("2 of 3 tracks of the sample space match."));
        dialog.ExpressionField()->clear();
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("3 of 3 tracks of the sample space match."));
    }

    // An entry shows the track it picked last, or says why there is none; editing it
    // through its row picks anew, cancelling keeps the pick.
    void evaluatedPropertiesAndEditingAnEntry() {
        BuildSampleSpace();
        player().AddRandomEntry(-1, "(FILEBODY = \"three\")");
        player().AddRandomEntry(-1, "(FILEBODY = \"none\")");
        QString text, title, general;
        test::AnswerModals({test::Box(&text)});
        ShowEvaluatedTrackProperties(nullptr, player(), 0);
        QCOMPARE(text, QStringLiteral("This random entry has not picked a track yet."));

        player().PlayRow(0);
        player().Execute(Action::kStop);
        test::AnswerModals({test::Dialog(&title, [&general](QWidget* modal) {
            general = qobject_cast<TrackPropertiesDialog*>(modal)->GeneralText();
        })});
        ShowEvaluatedTrackProperties(nullptr, player(), 0);
        QVERIFY2(general.startsWith(QString::fromStdString(fixture->dir.file("space/three.wav") + "\n\n")), qPrintable(general));
        QVERIFY(general.contains(QStringLiteral("\n\n0:03.00\n\n")));

        player().PlayRow(1);
        player().Execute(Action::kStop);
        test::AnswerModals({test::Box(&text)});
        ShowEvaluatedTrackProperties(nullptr, player(), 1);
        QCOMPARE(text, QStringLiteral("No track of the sample space matches this random entry."));

        const auto setText = [](QWidget* modal) { modal->findChild<QLineEdit*>("expression")->setText("(DURATION < 60)"); };
        test::AnswerModals({test::Dialog(&title, setText, false)});
        ShowTrackProperties(nullptr, player(), 1);
        QCOMPARE(title, QStringLiteral("Random Entry Properties"));
        QCOMPARE(Entry(1).Expression(), std::string("(FILEBODY = \"none\")"));
        QVERIFY(Entry(1).Picked());
        test::AnswerModals({test::Dialog(&title, setText, true)});
        ShowTrackProperties(nullptr, player(), 1);
        QCOMPARE(Entry(1).Expression(), std::string("(DURATION < 60)"));
        QVERIFY(!Entry(1).Picked());
    }

private:
    // Three tracks of 1, 2 and 3 seconds: one.wav, two.wav, three.wav; played tracks are
    // decoded to WAV files.
    void BuildSampleSpace() {
        const std::string space = fixture->dir.file("space");
        std::filesystem::create_directory(space);
        for (const auto& [name, seconds] : {std::pair{"one", 1.0}, {"two", 2.0}, {"three", 3.0}})
            fixture->Tone("space/" + std::string(name) + ".wav", seconds);
        player().ChangeSettings([&](Settings& s) {
            s.sampleSpaceSearchPath = space + ";";
            s.outputType = 1;
            s.decodeDirectory = fixture->dir.str();
        });
        player().Execute(Action::kRecreateSampleSpace);
        QCOMPARE(player().Samples().Size(), size_t{3});
    }

    const RandomEntry& Entry(int row) const {
        return *static_cast<const RandomEntry*>(player().List().ItemAtRow(row).item);
    }

};

[[maybe_unused]] static const bool registered = test::Register<RandomEntryDialogTests>();
#include "RandomEntryDialogTests.moc"
