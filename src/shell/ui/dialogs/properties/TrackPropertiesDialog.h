#pragma once
// The properties of one track: the "General" page (GeneralPageText.h), the tag page for a
// local file, and a button that hands the file to its input module's own information
// dialog. A tag written from the tag page makes the track read its information again
// (its title and audio start may have changed) and the player redraw.
#include <QDialog>

class QLabel;
class QPushButton;
class QTabWidget;

namespace verdin {

class PlayerCore;
class TagPage;
class TrackRecord;

class TrackPropertiesDialog : public QDialog {
    Q_OBJECT
public:
    TrackPropertiesDialog(QWidget* parent, PlayerCore& core, TrackRecord& track);

    QString GeneralText() const;
    TagPage* Tags() const { return tags_; }
    // Calls the input module's ShowFileInfo; false when no module takes the file.
    bool ShowModuleFileInfo();

private:
    void TagWritten();

    PlayerCore& core_;
    TrackRecord& track_;
    QTabWidget* tabs_ = nullptr;
    QLabel* general_ = nullptr;
    TagPage* tags_ = nullptr;
    QPushButton* fileInfo_ = nullptr;
};

}  // namespace verdin
