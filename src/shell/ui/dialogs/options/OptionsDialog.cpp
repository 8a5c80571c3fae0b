#include "shell/ui/dialogs/options/OptionsDialog.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/options/InputPage.h"
#include "shell/ui/dialogs/options/OutputPage.h"
#include "shell/ui/dialogs/options/PlayerPage.h"
#include "shell/ui/dialogs/options/PlaylistPage.h"
#include "shell/ui/dialogs/options/PluginPages.h"
#include "shell/ui/dialogs/options/SimplePages.h"
#include "shell/ui/dialogs/options/StringsPage.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace verdin {

OptionsDialog::OptionsDialog(QWidget* parent, Player& player, const QString& page)
    : QDialog(parent), player_(player) {
    setObjectName(QStringLiteral("Options"));
    setWindowTitle(QStringLiteral("Options"));
    auto* layout = new QVBoxLayout(this);
    auto* body = new QHBoxLayout;
    index_ = new QListWidget(this);
    index_->setObjectName(QStringLiteral("pageIndex"));
    stack_ = new QStackedWidget(this);
    pages_ = {
        new GeneralPage(player_),        new PlayerPage(player_),        new OutputPage(player_),
        new PlaylistPage(player_),       new StringsPage(player_),       new InputPage(player_),
        new VisualizationPage(player_),  new DspPage(player_),           new GeneralPurposePage(player_),
        new InternetPage(player_),       new AppearancePage(player_),
    };
    int widest = 0;
    for (OptionsPage* p : pages_) {
        index_->addItem(p->Title());
        widest = std::max(widest, index_->fontMetrics().horizontalAdvance(p->Title()));
        // A page taller than the screen scrolls rather than growing the dialog.
        auto* scroll = new QScrollArea(stack_);
        scroll->setWidget(p);
        scroll->setWidgetResizable(true);
        scroll->setFrameShape(QFrame::NoFrame);
        stack_->addWidget(scroll);
    }
    index_->setFixedWidth(widest + 32);
    body->addWidget(index_);
    body->addWidget(stack_, 1);
    layout->addLayout(body, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, &OptionsDialog::Apply);
    layout->addWidget(buttons);

    connect(index_, &QListWidget::currentRowChanged, stack_, &QStackedWidget::setCurrentIndex);
    index_->setCurrentRow(0);
    ShowPage(page);
    resize(780, 700);
}

OptionsPage* OptionsDialog::Page(const QString& title) const {
    for (OptionsPage* page : pages_)
        if (page->Title() == title) return page;
    return nullptr;
}

void OptionsDialog::ShowPage(const QString& title) {
    for (size_t i = 0; i < pages_.size(); ++i)
        if (pages_[i]->Title() == title) index_->setCurrentRow(static_cast<int>(i));
}

OptionsPage* OptionsDialog::CurrentPage() const {
    const int row = index_->currentRow();
    return row >= 0 ? pages_[static_cast<size_t>(row)] : nullptr;
}

bool OptionsDialog::Apply() {
    const bool saved = player_.ChangeSettings([this](Settings& settings) {
        for (OptionsPage* page : pages_) page->Apply(settings);
    });
    bool savedApart = true;
    for (OptionsPage* page : pages_) savedApart = page->ApplyApart() && savedApart;
    // What the player did with the values (the DSP page's list, say) is shown again.
    for (OptionsPage* page : pages_) page->Load();
    return saved && savedApart;
}

void OptionsDialog::accept() {
    Apply();
    QDialog::accept();
}

void ShowOptions(QWidget* parent, Player& player, const std::string& page) {
    OptionsDialog dialog(parent, player, QString::fromStdString(page));
    dialog.exec();
}

}  // namespace verdin
