// "Find": the search from the row after the focus, round past the end, with and without
// "Case sensitive"; the dialog opening on the last search, which it keeps for the next.
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/find/FindDialog.h"

#include "DialogTestKit.h"

#include <QCheckBox>
#include <QLineEdit>

using namespace verdin;

class FindDialogTests : public test::CoreTests {
    Q_OBJECT

private slots:
    void findingFromTheFocusedRow() {
        AddTracks();
        const struct {
            FindRequest request;
            int focusedRow;
            int found;
        } rows[] = {
            {{"JAZZ", false}, -1, 1}, {{"JAZZ", false}, 1, 2}, {{"jazz", true}, 1, 2},
            {{"cool", false}, 2, 2},  // round past the end and back to the focus
            {{"JAZZ", true}, -1, -1},
        };
        for (auto [request, focusedRow, found] : rows) {
            QString message;
            if (found < 0) test::AnswerModals({test::Box(&message)});
            QCOMPARE(FindInPlaylist(nullptr, player(), request, false, focusedRow), found);
            if (found < 0) QCOMPARE(message, QStringLiteral("Cannot find the string \"JAZZ\"."));
        }
    }

    void askingFirstKeepsTheRequest() {
        AddTracks();
        FindRequest last{"old", true};
        QString shown;
        test::AnswerModals({test::Dialog(nullptr, [&shown](QWidget* modal) {
            auto* dialog = qobject_cast<FindDialog*>(modal);
            shown = dialog->TextField()->text() + (dialog->CaseSensitiveBox()->isChecked() ? "/case" : "");
            dialog->TextField()->setText(QStringLiteral("COOL"));
            dialog->CaseSensitiveBox()->setChecked(false);
        }, true)});
        QCOMPARE(FindInPlaylist(nullptr, player(), last, true, -1), 2);
        QCOMPARE(shown, QStringLiteral("old/case"));
        QCOMPARE(last.text + (last.caseSensitive ? "/case" : ""), std::string("COOL"));
        test::AnswerModals({test::Dialog(nullptr)});  // cancelled: no search
        QCOMPARE(FindInPlaylist(nullptr, player(), last, true, -1), -1);
        QCOMPARE(last.text, std::string("COOL"));
    }

private:
    // Tracks without tags are titled by their file body.
    void AddTracks() {
        player().AddPaths({fixture->Tone("Blues for two.wav", 0.1), fixture->Tone("Acid jazz.wav", 0.1),
                           fixture->Tone("Cool jazz.wav", 0.1)},
                          -1);
    }
};

[[maybe_unused]] static const bool registered = test::Register<FindDialogTests>();
#include "FindDialogTests.moc"
