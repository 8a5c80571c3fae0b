#pragma once
// "Random Entry Properties": the expression of a random entry, with the explanation of the
// language, menus that insert variable names at the caret ("Insert an integer variable",
// "Insert a string variable"), a folder chooser that inserts a path ("Insert path"),
// "What's this?" with the help text and a link to the program's home page, and a preview
// of how many tracks of the sample space the expression matches as it is typed.
#include <QDialog>
#include <string>

class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QTimer;

namespace verdin {

class Player;

// The home page the dialog links to.
inline constexpr const char* kHomePageAddress = "https://brimfell.org/verdin/";

class RandomEntryDialog : public QDialog {
    Q_OBJECT
public:
    RandomEntryDialog(QWidget* parent, const Player& player, const std::string& expression);

    std::string Expression() const;
    QLineEdit* ExpressionField() const { return expression_; }
    QMenu* IntegerMenu() const { return integerMenu_; }
    QMenu* StringMenu() const { return stringMenu_; }
    // The folder chooser's choice goes in at the caret.
    void InsertPath();
    // Counts the matching tracks of the sample space now (typing does it after a pause).
    void UpdatePreview();
    QString PreviewText() const;
    // The text "What's this?" shows.
    static QString HelpText();

private:
    void ShowHelp();

    const Player& player_;
    QLineEdit* expression_ = nullptr;
    QMenu* integerMenu_ = nullptr;
    QMenu* stringMenu_ = nullptr;
    QLabel* preview_ = nullptr;
    QTimer* previewTimer_ = nullptr;
};

}  // namespace verdin
