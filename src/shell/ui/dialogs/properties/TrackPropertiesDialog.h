#pragma once
// The properties of one track: the "General" page (GeneralPageText.h), the tag page for a
// local file, and a button that hands the file to its input module's own information
// dialog. A tag written from the tag page has the player read the track's information
// again (its title and audio start may have changed).
#include <QDialog>

class QLabel;
class QPushButton;
class QTabWidget;

namespace verdin {

class Player;
class KeptRow;
class TagPage;
class TrackRecord;

class TrackPropertiesDialog : public QDialog {
    Q_OBJECT
public:
    // The track shown is the kept entry's (a random entry's pick for a random entry).
    // The dialog closes when that entry goes.
    TrackPropertiesDialog(QWidget* parent, Player& player, KeptRow& kept, const TrackRecord& track);

    QString GeneralText() const;
    TagPage* Tags() const { return tags_; }
    // Calls the input module's ShowFileInfo; false when no module takes the file.
    bool ShowModuleFileInfo();

private:
    void TagWritten();

    Player& player_;
    KeptRow& kept_;
    const TrackRecord& track_;
    QTabWidget* tabs_ = nullptr;
    QLabel* general_ = nullptr;
    TagPage* tags_ = nullptr;
    QPushButton* fileInfo_ = nullptr;
};

}  // namespace verdin
