#pragma once
// The tag page of a track's properties: the version of the file's ID3 tag ("ID3 Tag
// version %d.%d.%d" or "No ID3 Tag found"), every frame the tag layer read from the file
// with its description, value and details ("Language: eng - Description: ..."), saving
// an attached picture or object ("Save Attachment As"), and editing the common frames,
// which are written back into the file safely (TagWriter.h).
//
// The page reads the file itself, with attachments kept, so that what it shows and saves
// is what the file holds now. Editing is offered for the layouts tags can be written to.
#include "tags/FrameId.h"
#include "tags/TagVersion.h"
#include "tags/TrackTag.h"

#include <QWidget>
#include <array>
#include <string>

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace verdin {


class TagPage : public QWidget {
    Q_OBJECT
public:
    explicit TagPage(std::string path, QWidget* parent = nullptr);

    // Reads the file again and shows what it holds.
    void Reload();

    const TrackTag& Tag() const { return tag_; }
    TagVersion Version() const { return version_; }
    // The edit field of a writable frame (null for the others).
    QLineEdit* EditorOf(FrameId id) const;

    // Writes the attachment of the frame at index (in Tag() order) to path; false, with
    // the reason shown, when that fails.
    bool SaveAttachmentTo(int frameIndex, const std::string& path);
    // Writes the edited frames (those whose text differs from what the file held) into
    // the file. True when nothing needed writing or the write succeeded; false, with the
    // reason shown, when it failed, and then the edits stay in the fields.
    bool WriteChanges();

signals:
    // The file's tag was rewritten.
    void TagWritten();

private:
    void FillFrames();
    void FillEditors();
    void SelectionChanged();
    void SaveSelectedAttachment();

    const std::string path_;
    TrackTag tag_;
    TagVersion version_;
    bool readable_ = false;

    QLabel* versionLabel_ = nullptr;
    QTreeWidget* frames_ = nullptr;
    QPushButton* saveAttachment_ = nullptr;
    QPushButton* writeTag_ = nullptr;
    std::array<QLineEdit*, kFrameCount> editors_{};
    std::array<std::string, kFrameCount> shown_{};
};

}  // namespace verdin
