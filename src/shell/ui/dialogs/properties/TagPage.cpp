#include "shell/ui/dialogs/properties/TagPage.h"

#include "shell/ui/MessageBoxes.h"
#include "shell/ui/dialogs/common/FileChooser.h"
#include "tags/FrameDisplay.h"
#include "tags/FrameTable.h"
#include "tags/FrameValues.h"
#include "tags/TagErrorMessage.h"
#include "tags/TagReader.h"
#include "tags/TagWriter.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace verdin {
namespace {

QString Text(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// The labels of the edit fields: the frames' descriptions are long, these fit a form.
struct EditorLabel {
    FrameId frame;
    const char* label;
};
constexpr EditorLabel kEditorLabels[] = {
    {FrameId::Title, "Title:"},        {FrameId::LeadArtist, "Artist:"}, {FrameId::Album, "Album:"},
    {FrameId::Band, "Album artist:"},  {FrameId::Year, "Year:"},       {FrameId::TrackNum, "Track:"},
    {FrameId::ContentType, "Genre:"},  {FrameId::Composer, "Composer:"}, {FrameId::Comment, "Comment:"},
};

const char* EditorLabelOf(FrameId id) {
    for (const EditorLabel& row : kEditorLabels)
        if (row.frame == id) return row.label;
    return "";
}

// A file name to offer for an attachment: the object's own name, else one made from
// its MIME type.
QString SuggestedAttachmentName(const FrameView& frame) {
    if (!frame.fileName.empty()) return Text(frame.fileName);
    struct MimeExtension {
        std::string_view mime;
        const char* extension;
    };
    static constexpr MimeExtension kExtensions[] = {
        {"image/jpeg", ".jpg"}, {"image/jpg", ".jpg"}, {"image/png", ".png"},
        {"image/gif", ".gif"},  {"image/bmp", ".bmp"}, {"image/webp", ".webp"},
    };
    for (const MimeExtension& row : kExtensions)
        if (row.mime == frame.mimeType) return QStringLiteral("attachment") + QLatin1String(row.extension);
    return QStringLiteral("attachment");
}

QString ValueShown(const FrameView& frame) {
    if (!frame.text.empty()) return Text(frame.text);
    if (frame.dataSize > 0) return QStringLiteral("%1 bytes").arg(frame.dataSize);
    return {};
}

}  // namespace

TagPage::TagPage(std::string path, QWidget* parent) : QWidget(parent), path_(std::move(path)) {
    auto* layout = new QVBoxLayout(this);
    versionLabel_ = new QLabel(this);
    versionLabel_->setObjectName(QStringLiteral("tagVersion"));
    layout->addWidget(versionLabel_);

    frames_ = new QTreeWidget(this);
    frames_->setObjectName(QStringLiteral("frames"));
    frames_->setHeaderLabels({QStringLiteral("Frame"), QStringLiteral("Description"), QStringLiteral("Value"),
                              QStringLiteral("Details")});
    frames_->setRootIsDecorated(false);
    frames_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    layout->addWidget(frames_, 1);
    connect(frames_, &QTreeWidget::currentItemChanged, this, &TagPage::SelectionChanged);

    auto* attachmentRow = new QHBoxLayout;
    saveAttachment_ = new QPushButton(QStringLiteral("Save Attachment..."), this);
    saveAttachment_->setObjectName(QStringLiteral("saveAttachment"));
    connect(saveAttachment_, &QPushButton::clicked, this, &TagPage::SaveSelectedAttachment);
    attachmentRow->addStretch();
    attachmentRow->addWidget(saveAttachment_);
    layout->addLayout(attachmentRow);

    auto* editing = new QGroupBox(QStringLiteral("Edit tag"), this);
    auto* form = new QFormLayout(editing);
    for (FrameId id : WritableFrames()) {
        auto* edit = new QLineEdit(editing);
        edit->setObjectName(Text(FrameName(id)));
        edit->setToolTip(Text(FrameDescription(id)));
        form->addRow(QString::fromLatin1(EditorLabelOf(id)), edit);
        editors_[FrameIndex(id)] = edit;
    }
    writeTag_ = new QPushButton(QStringLiteral("Write Tag"), editing);
    writeTag_->setObjectName(QStringLiteral("writeTag"));
    connect(writeTag_, &QPushButton::clicked, this, &TagPage::WriteChanges);
    form->addRow(QString(), writeTag_);
    layout->addWidget(editing);

    Reload();
}

QLineEdit* TagPage::EditorOf(FrameId id) const { return editors_[FrameIndex(id)]; }

void TagPage::Reload() {
    TagReadOptions options;
    options.keepAttachments = true;
    const TagReadResult result = ReadTrackTag(path_, options, tag_);
    readable_ = result.opened;
    version_ = result.version;
    versionLabel_->setText(Text(DescribeTagVersion(version_)));
    // A file that opened but whose tag is damaged is shown as far as it was read; the
    // user asked for it, so what went wrong is said.
    if (result.opened && !result.error.empty())
        ShowMessageBox(this, ComposeTagErrorMessage(result.error), MessageIcon::kWarning);
    FillFrames();
    FillEditors();
}

void TagPage::FillFrames() {
    frames_->clear();
    for (size_t i = 0; i < tag_.size(); ++i) {
        const FrameView frame = tag_[i];
        auto* item = new QTreeWidgetItem(frames_);
        item->setText(0, Text(FrameName(frame.id)));
        item->setText(1, Text(FrameDescription(frame.id)));
        item->setText(2, ValueShown(frame));
        item->setText(3, Text(JoinFrameDetails(FrameDetails(frame))));
        item->setData(0, Qt::UserRole, static_cast<int>(i));
    }
    SelectionChanged();
}

void TagPage::FillEditors() {
    const bool editable = readable_ && CanWriteTags(path_);
    for (FrameId id : WritableFrames()) {
        shown_[FrameIndex(id)] = readable_ ? FrameStringValue(tag_, id) : std::string();
        QLineEdit* edit = editors_[FrameIndex(id)];
        edit->setText(Text(shown_[FrameIndex(id)]));
        edit->setEnabled(editable);
    }
    writeTag_->setEnabled(editable);
}

void TagPage::SelectionChanged() {
    const QTreeWidgetItem* item = frames_->currentItem();
    const int index = item ? item->data(0, Qt::UserRole).toInt() : -1;
    saveAttachment_->setEnabled(index >= 0 && HasAttachment(tag_[static_cast<size_t>(index)]));
}

bool TagPage::SaveAttachmentTo(int frameIndex, const std::string& path) {
    if (frameIndex < 0 || static_cast<size_t>(frameIndex) >= tag_.size()) return false;
    const std::string error = SaveAttachment(tag_[static_cast<size_t>(frameIndex)], path);
    if (error.empty()) return true;
    ShowMessageBox(this, "The attachment could not be saved:\n" + error, MessageIcon::kError);
    return false;
}

void TagPage::SaveSelectedAttachment() {
    const QTreeWidgetItem* item = frames_->currentItem();
    if (!item) return;
    const int index = item->data(0, Qt::UserRole).toInt();
    const QString chosen = ChooseFileToSave(this, QStringLiteral("Save Attachment As"), QStringLiteral("All files|*.*|"),
                                            SuggestedAttachmentName(tag_[static_cast<size_t>(index)]), true);
    if (!chosen.isEmpty()) SaveAttachmentTo(index, chosen.toStdString());
}

bool TagPage::WriteChanges() {
    std::vector<FrameEdit> edits;
    for (FrameId id : WritableFrames()) {
        std::string text = editors_[FrameIndex(id)]->text().toStdString();
        if (text != shown_[FrameIndex(id)]) edits.push_back({id, std::move(text)});
    }
    if (edits.empty()) return true;
    const std::string error = WriteTagFrames(path_, edits);
    if (!error.empty()) {
        ShowMessageBox(this, "The tag could not be written:\n" + error, MessageIcon::kError);
        return false;
    }
    Reload();
    emit TagWritten();
    return true;
}

}  // namespace verdin
