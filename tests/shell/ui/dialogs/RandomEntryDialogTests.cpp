// "Random Entry Properties": the insert menus, the folder chooser, the preview of matching
// tracks, editing an entry, and "Evaluated Track Properties".
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/properties/PropertiesFlow.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

#include "playlist/RandomEntry.h"
#include "playlist/random/SampleSpace.h"

#include "DialogTestKit.h"

#include <QLineEdit>
#include <QMenu>
#include <QtTest>
#include <filesystem>

using namespace verdin;

namespace {

// The texts of a menu's entries, submenus as "group/entry".
QStringList MenuTexts(const QMenu* menu, const QString& prefix = {}) {
    QStringList texts;
    for (QAction* action : menu->actions()) {
        if (action->menu()) texts << MenuTexts(action->menu(), prefix + action->text() + QLatin1Char('/'));
        else texts << prefix + action->text();
    }
    return texts;
}

QAction* FindAction(const QMenu* menu, const QString& text) {
    for (QAction* action : menu->actions()) {
        if (action->menu()) {
            if (QAction* found = FindAction(action->menu(), text)) return found;
        } else if (action->text() == text) {
            return action;
        }
    }
    return nullptr;
}

}  // namespace

class RandomEntryDialogTests : public QObject {
    Q_OBJECT

private slots:
    void init() { fixture_ = std::make_unique<test::CoreFixture>(); }
    void cleanup() { fixture_.reset(); }

    void theIntegerMenuHoldsTheGeneralVariablesAndTheNumericFrames() {
        RandomEntryDialog dialog(nullptr, *fixture_->core, "");
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Random Entry Properties"));
        const QStringList texts = MenuTexts(dialog.IntegerMenu());
        QCOMPARE(texts.value(0), QStringLiteral("General/FILESIZE\tFile size (in bytes)"));
        QCOMPARE(texts.value(1), QStringLiteral("General/DURATION\tTrack duration (in seconds)"));
        QVERIFY(texts.contains(QStringLiteral("ID3 Frame/YEAR\tYear")));
        QVERIFY(texts.contains(QStringLiteral("ID3 Frame/TRACKNUM\tTrack number/Position in set")));
        for (const QString& text : texts) {
            QVERIFY2(!text.startsWith(QStringLiteral("ID3 Frame/TITLE\t")), "a text frame is no integer variable");
            QVERIFY2(!text.contains(QStringLiteral("NOFRAME")), "the table's placeholder is offered nowhere");
        }
    }

    void theStringMenuHoldsTheGeneralVariablesAndTheTextFrames() {
        RandomEntryDialog dialog(nullptr, *fixture_->core, "");
        const QStringList texts = MenuTexts(dialog.StringMenu());
        QCOMPARE(texts.value(0), QStringLiteral("General/FILEPATH\tFile path"));
        QCOMPARE(texts.value(1), QStringLiteral("General/FILEBODY\tFile body"));
        QVERIFY(texts.contains(QStringLiteral("ID3 Frame/LEADARTIST\tLead performer(s)/Soloist(s)")));
        QVERIFY(texts.contains(QStringLiteral("ID3 Frame/UNSYNCEDLYRICS\tUnsychronized lyric/text transcription")));
        QVERIFY(!texts.contains(QStringLiteral("ID3 Frame/YEAR\tYear")));
    }

    // The name before the tab goes in at the caret, replacing a selection.
    void choosingAMenuEntryInsertsItsNameAtTheCaret() {
        RandomEntryDialog dialog(nullptr, *fixture_->core, "( < 300) && (YEAR < 1970)");
        QLineEdit* field = dialog.ExpressionField();
        field->setCursorPosition(1);
        FindAction(dialog.IntegerMenu(), QStringLiteral("DURATION\tTrack duration (in seconds)"))->trigger();
        QCOMPARE(field->text(), QStringLiteral("(DURATION < 300) && (YEAR < 1970)"));
        QCOMPARE(field->cursorPosition(), 9);
        field->setSelection(21, 4);  // YEAR
        FindAction(dialog.StringMenu(), QStringLiteral("FILEBODY\tFile body"))->trigger();
        QCOMPARE(QString::fromStdString(dialog.Expression()), QStringLiteral("(DURATION < 300) && (FILEBODY < 1970)"));
    }

    void insertPathPutsTheChosenFolderAtTheCaret() {
        const std::string folder = fixture_->dir.file("music");
        std::filesystem::create_directory(folder);
        RandomEntryDialog dialog(nullptr, *fixture_->core, "(FILEPATH ~ \"\")");
        dialog.ExpressionField()->setCursorPosition(13);  // between the quotes
        QString title;
        test::ChooseInNextFileDialog(QString::fromStdString(folder), &title);
        dialog.InsertPath();
        QCOMPARE(title, QStringLiteral("Select path to insert"));
        QCOMPARE(dialog.ExpressionField()->text(), QString::fromStdString("(FILEPATH ~ \"" + folder + "\")"));

        test::ChooseInNextFileDialog(QString(), nullptr);  // cancelled: nothing changes
        dialog.InsertPath();
        QCOMPARE(dialog.ExpressionField()->text(), QString::fromStdString("(FILEPATH ~ \"" + folder + "\")"));
    }

    void thePreviewCountsTheMatchingTracksOfTheSampleSpace() {
        PlayerCore& core = *fixture_->core;
        RandomEntryDialog before(nullptr, core, "(DURATION > 1)");
        QCOMPARE(before.PreviewText(), QStringLiteral("The sample space has not been created yet."));

        BuildSampleSpace();
        RandomEntryDialog dialog(nullptr, core, "(DURATION > 1)");
        QCOMPARE(dialog.PreviewText(), QStringLiteral("2 of 3 tracks of the sample space match."));
        dialog.ExpressionField()->setText(QStringLiteral("(FILEBODY ~ \"ONE\") | (DURATION > 2)"));
        // Typing updates the preview after a pause, without anything else being done.
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("2 of 3 tracks of the sample space match."));
        dialog.ExpressionField()->setText(QStringLiteral("(FILEBODY = \"nothing\")"));
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("0 of 3 tracks of the sample space match."));
        dialog.ExpressionField()->clear();
        QTRY_COMPARE(dialog.PreviewText(), QStringLiteral("3 of 3 tracks of the sample space match."));
    }

    void editingAnEntryReplacesItsExpressionAndPicksAnew() {
        PlayerCore& core = *fixture_->core;
        RandomEntry entry("(YEAR < 1970)");
        entry.SetPicked(&TrackRecord::NullTrack());
        test::AnswerNextModal([](QWidget* modal) {
            auto* dialog = qobject_cast<RandomEntryDialog*>(modal);
            QVERIFY(dialog);
            dialog->ExpressionField()->setText(QStringLiteral("(DURATION < 60)"));
            dialog->accept();
        });
        const int refreshes = fixture_->host.refreshes;
        QVERIFY(EditRandomEntry(nullptr, core, entry));
        QCOMPARE(entry.Expression(), std::string("(DURATION < 60)"));
        QVERIFY(!entry.Picked());
        QVERIFY(fixture_->host.refreshes > refreshes);

        entry.SetPicked(&TrackRecord::NullTrack());
        test::AnswerNextModal([](QWidget* modal) {
            modal->findChild<QLineEdit*>(QStringLiteral("expression"))->setText(QStringLiteral("x"));
            qobject_cast<QDialog*>(modal)->reject();
        });
        QVERIFY(!EditRandomEntry(nullptr, core, entry));
        QCOMPARE(entry.Expression(), std::string("(DURATION < 60)"));
        QVERIFY(entry.Picked());  // a cancelled dialog keeps the pick
    }

    void evaluatedTrackPropertiesShowThePickedTrack() {
        PlayerCore& core = *fixture_->core;
        BuildSampleSpace();
        core.MainPlaylist().AppendItem(std::make_unique<RandomEntry>("(FILEBODY = \"three\")"));
        core.MainPlaylist().AppendItem(std::make_unique<RandomEntry>("(FILEBODY = \"none\")"));
        auto& matching = *static_cast<RandomEntry*>(core.MainPlaylist().ItemAtRow(0).item);
        auto& unmatched = *static_cast<RandomEntry*>(core.MainPlaylist().ItemAtRow(1).item);

        ShowEvaluatedTrackProperties(nullptr, core, 0);
        QCOMPARE(fixture_->host.messages.size(), size_t{1});
        QCOMPARE(fixture_->host.messages[0].text, std::string(kNotEvaluated));

        core.Samples().Resolve(matching, core.GetSettings().vdpHistory);
        core.Samples().Resolve(unmatched, core.GetSettings().vdpHistory);
        QString general;
        test::AnswerNextModal([&general](QWidget* modal) {
            if (auto* dialog = qobject_cast<TrackPropertiesDialog*>(modal)) general = dialog->GeneralText();
            modal->close();
        });
        ShowEvaluatedTrackProperties(nullptr, core, 0);
        QVERIFY(general.startsWith(QString::fromStdString(fixture_->dir.file("space/three.wav") + "\n\n")));
        QVERIFY(general.contains(QStringLiteral("\n\n0:03.00\n\n")));

        ShowEvaluatedTrackProperties(nullptr, core, 1);
        QCOMPARE(fixture_->host.messages.back().text, std::string(kNothingMatches));
    }

    void theHelpTextExplainsTheLanguageAndLinksTheHomePage() {
        const QString help = RandomEntryDialog::HelpText();
        QVERIFY(help.contains(QStringLiteral("To set no requirements for the track, leave the string empty.")));
        QVERIFY(help.contains(QStringLiteral("All comparisons are case insensitive")));
        QVERIFY(help.contains(QStringLiteral("<a href=\"%1\">").arg(QLatin1String(kHomePageAddress))));
    }

private:
    // Three tracks of 1, 2 and 3 seconds: one.wav, two.wav, three.wav.
    void BuildSampleSpace() {
        const std::string space = fixture_->dir.file("space");
        std::filesystem::create_directory(space);
        fixture_->Tone("space/one.wav", 1.0);
        fixture_->Tone("space/two.wav", 2.0);
        fixture_->Tone("space/three.wav", 3.0);
        PlayerCore& core = *fixture_->core;
        QVERIFY(core.Samples().CreateSampleSpace(space + ";", false, core.Modules().SupportedExtensions(), core.Modules()));
        QCOMPARE(core.Samples().Size(), size_t{3});
    }

    std::unique_ptr<test::CoreFixture> fixture_;
};

QTEST_MAIN(RandomEntryDialogTests)
#include "RandomEntryDialogTests.moc"
