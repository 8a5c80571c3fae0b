#pragma once
// "File types" on the Input page: the extensions the player opens, each checked while the
// desktop opens it with Verdin, and whether folders offer "Play with Verdin" and "Add to
// Verdin main playlist". Apply writes both file classes, makes Verdin the default for the
// checked extensions, gives the others back to whoever had them before, and adds or
// removes the folder verbs (system/Associations.h has the rules).
#include "system/Associations.h"

#include <QGroupBox>
#include <string>
#include <vector>

class QCheckBox;
class QListWidget;

namespace verdin {

class InputModuleList;

class FileTypesBox : public QGroupBox {
    Q_OBJECT
public:
    FileTypesBox(const InputModuleList& modules, QWidget* parent = nullptr);

    // Shows what the desktop holds now (not done on construction).
    void Load();
    // False, after saying which files could not be written, when something failed.
    bool Apply();

    QListWidget* Extensions() const { return list_; }
    QCheckBox* Folders() const { return folders_; }

private:
    Associations associations_;
    std::vector<std::string> extensions_;
    QListWidget* list_ = nullptr;
    QCheckBox* folders_ = nullptr;
};

}  // namespace verdin
