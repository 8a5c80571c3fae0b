// "Find": the dialog, and the search it starts, with and without "Case sensitive".
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/find/FindDialog.h"

#include "DialogTestKit.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QtTest>

using namespace verdin;

class FindDialogTests : public QObject {
    Q_OBJECT

private slots:
    void init() {
        fixture_ = std::make_unique<test::CoreFixture>();
        // Tracks without tags are titled by what the module suggests: their file body.
        fixture_->core->AddPaths({fixture_->Tone("Blues for two.wav", 0.1), fixture_->Tone("Acid jazz.wav", 0.1),
                                  fixture_->Tone("Cool jazz.wav", 0.1)},
                                 -1);
    }
    void cleanup() { fixture_.reset(); }

    void theDialogOpensWithTheLastSearch() {
        FindDialog dialog(nullptr, {"last text", true});
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Find"));
        QCOMPARE(dialog.TextField()->text(), QStringLiteral("last text"));
        QCOMPARE(dialog.CaseSensitiveBox()->text(), QStringLiteral("Case sensitive"));
        QVERIFY(dialog.CaseSensitiveBox()->isChecked());
        dialog.TextField()->setText(QString(300, QLatin1Char('x')));
        QCOMPARE(dialog.Request().text.size(), size_t{255});
        dialog.CaseSensitiveBox()->setChecked(false);
        QVERIFY(!dialog.Request().caseSensitive);
    }

    void askFindReturnsTheRequestOrNothingWhenCancelled() {
        test::AnswerNextModal([](QWidget* modal) {
            auto* dialog = qobject_cast<FindDialog*>(modal);
            QVERIFY(dialog);
            dialog->TextField()->setText(QStringLiteral("JAZZ"));
            dialog->CaseSensitiveBox()->setChecked(false);
            dialog->accept();
        });
        const std::optional<FindRequest> request = AskFind(nullptr, {"old", true});
        QVERIFY(request.has_value());
        QCOMPARE(request->text, std::string("JAZZ"));
        QVERIFY(!request->caseSensitive);

        test::AnswerNextModal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
        QVERIFY(!AskFind(nullptr, {"old", true}).has_value());
    }

    // JAZZ without "Case sensitive" finds "Acid jazz"; with it, nothing, and the warning.
    void findingWithAndWithoutCase() {
        PlayerCore& core = *fixture_->core;
        FindRequest last{"JAZZ", false};
        QCOMPARE(FindInPlaylist(nullptr, core, last, false, -1), 1);
        QCOMPARE(FindInPlaylist(nullptr, core, last, false, 1), 2);  // the next match below the focus
        QVERIFY(fixture_->host.messages.empty());

        last.caseSensitive = true;
        QCOMPARE(FindInPlaylist(nullptr, core, last, false, -1), -1);
        QCOMPARE(fixture_->host.messages.size(), size_t{1});
        QCOMPARE(fixture_->host.messages[0].text, std::string("Cannot find the string \"JAZZ\"."));
        QVERIFY(fixture_->host.messages[0].icon == MessageIcon::kWarning);

        last.text = "jazz";
        QCOMPARE(FindInPlaylist(nullptr, core, last, false, 1), 2);
    }

    // Ctrl+F asks (and keeps what was asked for F3); a cancelled dialog searches nothing.
    void askingFirstKeepsTheRequestForTheNextRepeat() {
        PlayerCore& core = *fixture_->core;
        FindRequest last;
        test::AnswerNextModal([](QWidget* modal) {
            auto* dialog = qobject_cast<FindDialog*>(modal);
            dialog->TextField()->setText(QStringLiteral("cool"));
            dialog->accept();
        });
        QCOMPARE(FindInPlaylist(nullptr, core, last, true, -1), 2);
        QCOMPARE(last.text, std::string("cool"));
        // Repeated from the found row: round past the end and back to it.
        QCOMPARE(FindInPlaylist(nullptr, core, last, false, 2), 2);

        test::AnswerNextModal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
        QCOMPARE(FindInPlaylist(nullptr, core, last, true, -1), -1);
        QCOMPARE(last.text, std::string("cool"));
        QVERIFY(fixture_->host.messages.empty());
    }

private:
    std::unique_ptr<test::CoreFixture> fixture_;
};

QTEST_MAIN(FindDialogTests)
#include "FindDialogTests.moc"
