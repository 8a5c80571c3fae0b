#include "shell/ui/dialogs/properties/RandomEntryDialog.h"

#include "playlist/random/CompiledExpression.h"
#include "playlist/random/ExpressionHelp.h"
#include "playlist/random/SampleSpace.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/common/FileChooser.h"
#include "shell/ui/dialogs/common/VariableMenu.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace verdin {
namespace {

QString Text(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

template <size_t N>
QString Lines(const std::array<std::string_view, N>& lines) {
    QStringList out;
    for (std::string_view line : lines) out << Text(line);
    return out.join(QLatin1Char('\n'));
}

QLabel* WrappedLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}  // namespace

RandomEntryDialog::RandomEntryDialog(QWidget* parent, const Player& player, const std::string& expression)
    : QDialog(parent), player_(player) {
    setObjectName(QStringLiteral("Random Entry Properties"));
    setWindowTitle(QStringLiteral("Random Entry Properties"));
    auto* layout = new QVBoxLayout(this);

    layout->addWidget(WrappedLabel(Text(kExpressionExplanation), this));
    expression_ = new QLineEdit(QString::fromStdString(expression), this);
    expression_->setObjectName(QStringLiteral("expression"));
    layout->addWidget(expression_);

    auto* insertRow = new QHBoxLayout;
    auto* integerButton = new QPushButton(QStringLiteral("Insert an integer variable"), this);
    integerMenu_ = BuildInsertMenu(this, QStringLiteral("Insert an integer variable"), IntegerVariableEntries(), expression_);
    integerButton->setMenu(integerMenu_);
    auto* stringButton = new QPushButton(QStringLiteral("Insert a string variable"), this);
    stringMenu_ = BuildInsertMenu(this, QStringLiteral("Insert a string variable"), StringVariableEntries(), expression_);
    stringButton->setMenu(stringMenu_);
    auto* pathButton = new QPushButton(QStringLiteral("Insert path"), this);
    connect(pathButton, &QPushButton::clicked, this, &RandomEntryDialog::InsertPath);
    auto* helpButton = new QPushButton(QStringLiteral("What's this?"), this);
    connect(helpButton, &QPushButton::clicked, this, &RandomEntryDialog::ShowHelp);
    insertRow->addWidget(integerButton);
    insertRow->addWidget(stringButton);
    insertRow->addWidget(pathButton);
    insertRow->addStretch();
    insertRow->addWidget(helpButton);
    layout->addLayout(insertRow);

    auto* operators = new QGridLayout;
    operators->addWidget(new QLabel(QStringLiteral("Integer comparison operators:"), this), 0, 0);
    operators->addWidget(new QLabel(QStringLiteral("String comparison operators:"), this), 0, 1);
    operators->addWidget(WrappedLabel(Lines(kIntegerOperatorTexts), this), 1, 0, Qt::AlignTop);
    operators->addWidget(WrappedLabel(Lines(kStringOperatorTexts), this), 1, 1, Qt::AlignTop);
    layout->addLayout(operators);
    layout->addWidget(WrappedLabel(Text(kCaseInsensitiveNote), this));
    layout->addWidget(new QLabel(Text(kExamplesHeading), this));
    layout->addWidget(WrappedLabel(Lines(kExpressionExamples), this));

    preview_ = new QLabel(this);
    preview_->setObjectName(QStringLiteral("preview"));
    layout->addWidget(preview_);
    previewTimer_ = new QTimer(this);
    previewTimer_->setSingleShot(true);
    previewTimer_->setInterval(250);
    connect(previewTimer_, &QTimer::timeout, this, &RandomEntryDialog::UpdatePreview);
    connect(expression_, &QLineEdit::textChanged, previewTimer_, qOverload<>(&QTimer::start));

    auto* home = new QLabel(QStringLiteral("<a href=\"%1\">Verdin home page</a>").arg(QLatin1String(kHomePageAddress)), this);
    home->setOpenExternalLinks(true);  // the desktop's own "open" for addresses
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(home);
    bottom->addWidget(buttons, 1);
    layout->addLayout(bottom);

    UpdatePreview();
}

std::string RandomEntryDialog::Expression() const { return expression_->text().toStdString(); }

void RandomEntryDialog::InsertPath() {
    const QString chosen = ChooseDirectory(this, QStringLiteral("Select path to insert"));
    if (!chosen.isEmpty()) InsertAtCaret(expression_, chosen);
}

void RandomEntryDialog::UpdatePreview() {
    const SampleSpace& space = player_.Samples();
    if (!space.Valid()) {
        preview_->setText(QStringLiteral("The sample space has not been created yet."));
        return;
    }
    const CompiledExpression compiled(Expression());
    size_t matching = 0;
    for (size_t i = 0; i < space.Size(); ++i)
        if (compiled.Matches(space.TrackAt(i))) ++matching;
    preview_->setText(QStringLiteral("%1 of %2 tracks of the sample space match.").arg(matching).arg(space.Size()));
}

QString RandomEntryDialog::PreviewText() const { return preview_->text(); }

QString RandomEntryDialog::HelpText() {
    QString help = QStringLiteral("<p>%1</p>").arg(Text(kExpressionExplanation).toHtmlEscaped());
    help += QStringLiteral(
        "<p>A comparison is written NAME OP VALUE, with one blank between the parts and none after an "
        "opening parenthesis. NAME is FILESIZE (bytes), DURATION (seconds), FILEPATH, FILEBODY or the name of "
        "an ID3 frame such as LEADARTIST, TITLE, ALBUM, YEAR or CONTENTTYPE; text values are written in double "
        "quotes. The buttons insert the names.</p>");
    help += QStringLiteral("<p>%1</p><p>%2:<br>%3</p>")
                .arg(Text(kCaseInsensitiveNote).toHtmlEscaped(), Text(kExamplesHeading).toHtmlEscaped(),
                     Lines(kExpressionExamples).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>")));
    help += QStringLiteral("<p>More about random entries: <a href=\"%1\">%1</a></p>").arg(QLatin1String(kHomePageAddress));
    return help;
}

void RandomEntryDialog::ShowHelp() {
    QMessageBox box(QMessageBox::Information, QStringLiteral("What's this?"), HelpText(), QMessageBox::Ok, this);
    box.setTextFormat(Qt::RichText);
    box.setTextInteractionFlags(Qt::TextBrowserInteraction);
    box.exec();
}

}  // namespace verdin
