#pragma once
// Small pieces the option pages share: a search-path field with its "Browse" button, a
// choice list of named values, a slider with a label that follows it, and the rule that
// keeps a stored number the user did not touch.
#include <QString>
#include <QWidget>
#include <span>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;

namespace verdin {

// "dir;dir;": a directory the user browsed to is appended, followed by ";".
class SearchPathField : public QWidget {
    Q_OBJECT
public:
    // browseTitle: the folder chooser's title; note: shown under the field.
    SearchPathField(const QString& browseTitle, const QString& note, int maximumLength, QWidget* parent = nullptr);

    QLineEdit* Edit() const { return edit_; }
    QString Text() const;
    void SetText(const QString& text);
    // Adds a directory to the end of the path.
    void AppendDirectory(const QString& directory);
    // Extra buttons ("Refresh") go beside "Browse".
    void AddButton(QPushButton* button);

private:
    QString browseTitle_;
    QLineEdit* edit_ = nullptr;
    QWidget* buttons_ = nullptr;
};

// One entry of a choice list: the text shown and the value stored.
struct NamedValue {
    const char* text;
    int value;
};

// Fills the combo box with the choices; selects the entry of value, adding "Other (%d)"
// for a value the list does not know so that it is shown and kept.
void FillChoices(QComboBox* combo, std::span<const NamedValue> choices, int value);
int ChosenValue(const QComboBox* combo);

// A slider whose label shows its value through a format ("Buffer pre-fill: %1%").
class LabelledSlider : public QWidget {
    Q_OBJECT
public:
    LabelledSlider(const QString& format, int minimum, int maximum, const QString& minimumText,
                   const QString& maximumText, QWidget* parent = nullptr);
    QSlider* Slider() const { return slider_; }
    QString Label() const;
    int Value() const;
    void SetValue(int value);

private:
    QString format_;
    QSlider* slider_ = nullptr;
    QLabel* label_ = nullptr;
};

// A number stored in one unit and shown in another (bytes as kilobytes, milliseconds as
// seconds): when the shown value is still the one shown for the stored number, the
// stored number is kept exactly, so that opening and applying the options never rounds
// a value the user did not touch.
template <typename Shown>
struct KeptNumber {
    int stored = 0;
    Shown shownAtLoad{};
    template <typename Convert>
    int Result(Shown shownNow, Convert toStored) const {
        return shownNow == shownAtLoad ? stored : toStored(shownNow);
    }
};

}  // namespace verdin
