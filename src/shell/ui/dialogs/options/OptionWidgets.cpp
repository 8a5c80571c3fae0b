#include "shell/ui/dialogs/options/OptionWidgets.h"

#include "shell/ui/dialogs/common/FileChooser.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace verdin {

SearchPathField::SearchPathField(const QString& browseTitle, const QString& note, int maximumLength, QWidget* parent)
    : QWidget(parent), browseTitle_(browseTitle) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* row = new QHBoxLayout;
    edit_ = new QLineEdit(this);
    edit_->setMaxLength(maximumLength);
    row->addWidget(edit_, 1);
    auto* browse = new QPushButton(QStringLiteral("Browse"), this);
    browse->setObjectName(QStringLiteral("browse"));
    row->addWidget(browse);
    buttons_ = new QWidget(this);
    auto* extra = new QHBoxLayout(buttons_);
    extra->setContentsMargins(0, 0, 0, 0);
    row->addWidget(buttons_);
    layout->addLayout(row);
    if (!note.isEmpty()) {
        auto* noteLabel = new QLabel(note, this);
        noteLabel->setWordWrap(true);
        layout->addWidget(noteLabel);
    }
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString chosen = ChooseDirectory(this, browseTitle_);
        if (!chosen.isEmpty()) AppendDirectory(chosen);
    });
}

QString SearchPathField::Text() const { return edit_->text(); }
void SearchPathField::SetText(const QString& text) { edit_->setText(text); }

void SearchPathField::AppendDirectory(const QString& directory) {
    QString path = edit_->text();
    if (!path.isEmpty() && !path.endsWith(QLatin1Char(';'))) path += QLatin1Char(';');
    edit_->setText(path + directory + QLatin1Char(';'));
}

void SearchPathField::AddButton(QPushButton* button) {
    button->setParent(buttons_);
    buttons_->layout()->addWidget(button);
}

void FillChoices(QComboBox* combo, std::span<const NamedValue> choices, int value) {
    combo->clear();
    int selected = -1;
    for (const NamedValue& choice : choices) {
        if (choice.value == value) selected = combo->count();
        combo->addItem(QString::fromLatin1(choice.text), choice.value);
    }
    if (selected < 0) {
        selected = combo->count();
        combo->addItem(QStringLiteral("Other (%1)").arg(value), value);
    }
    combo->setCurrentIndex(selected);
}

int ChosenValue(const QComboBox* combo) { return combo->currentData().toInt(); }

LabelledSlider::LabelledSlider(const QString& format, int minimum, int maximum, const QString& minimumText,
                               const QString& maximumText, QWidget* parent)
    : QWidget(parent), format_(format) {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    label_ = new QLabel(this);
    layout->addWidget(label_, 0, 0, 1, 3);
    layout->addWidget(new QLabel(minimumText, this), 1, 0);
    slider_ = new QSlider(Qt::Horizontal, this);
    slider_->setRange(minimum, maximum);
    layout->addWidget(slider_, 1, 1);
    layout->addWidget(new QLabel(maximumText, this), 1, 2);
    connect(slider_, &QSlider::valueChanged, this, [this](int value) { label_->setText(format_.arg(value)); });
    label_->setText(format_.arg(slider_->value()));
}

QString LabelledSlider::Label() const { return label_->text(); }
int LabelledSlider::Value() const { return slider_->value(); }
void LabelledSlider::SetValue(int value) {
    slider_->setValue(value);
    label_->setText(format_.arg(slider_->value()));
}

}  // namespace verdin
