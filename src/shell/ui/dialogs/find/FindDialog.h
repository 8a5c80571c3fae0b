#pragma once
// "Find": the text to search the playlist for (up to 255 characters) and "Case
// sensitive", opened with the last search.
#include "shell/ui/dialogs/Dialogs.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;

namespace verdin {

class FindDialog : public QDialog {
    Q_OBJECT
public:
    FindDialog(QWidget* parent, const FindRequest& last);

    FindRequest Request() const;
    QLineEdit* TextField() const { return text_; }
    QCheckBox* CaseSensitiveBox() const { return caseSensitive_; }

private:
    QLineEdit* text_ = nullptr;
    QCheckBox* caseSensitive_ = nullptr;
};

}  // namespace verdin
