#include "shell/ui/dialogs/options/PluginListsPage.h"

#include "shell/ui/dialogs/options/OptionWidgets.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace verdin {
namespace {

constexpr int kSearchPathLength = 4095;
constexpr int kRefRole = Qt::UserRole;
constexpr int kModuleIndexRole = Qt::UserRole + 1;

QPushButton* Button(const QString& text, const char* name, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

DspModuleRef RefOf(const QListWidgetItem* item) {
    return {item->data(kRefRole).toString().toStdString(), item->data(kModuleIndexRole).toInt()};
}

}  // namespace

PluginListsPage::PluginListsPage(const QString& title, const PluginListsTexts& texts, Player& player, QWidget* parent)
    : OptionsPage(title, player, parent) {
    auto* layout = new QVBoxLayout(this);

    auto* availableBox = new QGroupBox(texts.available, this);
    auto* availableGrid = new QGridLayout(availableBox);
    available_ = new QListWidget(availableBox);
    available_->setObjectName(QStringLiteral("available"));
    availableGrid->addWidget(available_, 0, 0, 3, 1);
    add_ = Button(QStringLiteral("Add"), "add", availableBox);
    configureAvailable_ = Button(QStringLiteral("Configure"), "configureAvailable", availableBox);
    availableGrid->addWidget(add_, 0, 1);
    availableGrid->addWidget(configureAvailable_, 1, 1);
    layout->addWidget(availableBox, 1);

    auto* activeBox = new QGroupBox(texts.active, this);
    auto* activeGrid = new QGridLayout(activeBox);
    active_ = new QListWidget(activeBox);
    active_->setObjectName(QStringLiteral("active"));
    activeGrid->addWidget(active_, 0, 0, 5, 1);
    remove_ = Button(QStringLiteral("Remove"), "remove", activeBox);
    configureActive_ = Button(QStringLiteral("Configure"), "configureActive", activeBox);
    up_ = Button(QStringLiteral("Move up"), "moveUp", activeBox);
    down_ = Button(QStringLiteral("Move down"), "moveDown", activeBox);
    activeGrid->addWidget(remove_, 0, 1);
    activeGrid->addWidget(configureActive_, 1, 1);
    activeGrid->addWidget(up_, 2, 1);
    activeGrid->addWidget(down_, 3, 1);
    layout->addWidget(activeBox, 1);

    auto* searchBox = new QGroupBox(QStringLiteral("Search path for plug-ins"), this);
    auto* searchLayout = new QVBoxLayout(searchBox);
    searchPath_ = new SearchPathField(texts.browse, QStringLiteral("Use semicolons to separate directories."),
                                      kSearchPathLength, searchBox);
    searchPath_->Edit()->setObjectName(QStringLiteral("searchPath"));
    auto* refresh = Button(QStringLiteral("Refresh"), "refresh", searchBox);
    searchPath_->AddButton(refresh);
    searchLayout->addWidget(searchPath_);
    layout->addWidget(searchBox);

    connect(available_, &QListWidget::currentRowChanged, this, &PluginListsPage::UpdateButtons);
    connect(active_, &QListWidget::currentRowChanged, this, &PluginListsPage::UpdateButtons);
    connect(available_, &QListWidget::itemDoubleClicked, this, &PluginListsPage::AddSelected);
    connect(add_, &QPushButton::clicked, this, &PluginListsPage::AddSelected);
    connect(configureAvailable_, &QPushButton::clicked, this, &PluginListsPage::ConfigureAvailable);
    connect(remove_, &QPushButton::clicked, this, &PluginListsPage::RemoveSelected);
    connect(configureActive_, &QPushButton::clicked, this, &PluginListsPage::ConfigureActive);
    connect(up_, &QPushButton::clicked, this, [this] { MoveSelected(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { MoveSelected(1); });
    connect(refresh, &QPushButton::clicked, this, &PluginListsPage::Refresh);
    UpdateButtons();
}

void PluginListsPage::ShowSearchPath(const std::string& path) {
    searchPath_->SetText(QString::fromStdString(path));
    modules_ = FindModules(path);
    FillAvailable();
}

std::string PluginListsPage::SearchPathText() const { return searchPath_->Text().toStdString(); }

void PluginListsPage::Refresh() {
    modules_ = FindModules(SearchPathText());
    FillAvailable();
    // The active entries may now name modules that are found, or no longer found.
    ShowActive(ActiveRefs());
}

void PluginListsPage::FillAvailable() {
    available_->clear();
    for (const AvailableModule& module : modules_) available_->addItem(module.text);
    UpdateButtons();
}

void PluginListsPage::ShowActive(const std::vector<DspModuleRef>& refs) {
    active_->clear();
    for (const DspModuleRef& ref : refs) {
        auto* item = new QListWidgetItem(ActiveText(ref), active_);
        item->setData(kRefRole, QString::fromStdString(ref.libraryPath));
        item->setData(kModuleIndexRole, ref.moduleIndex);
    }
    UpdateButtons();
}

std::vector<DspModuleRef> PluginListsPage::ActiveRefs() const {
    std::vector<DspModuleRef> refs;
    for (int i = 0; i < active_->count(); ++i) refs.push_back(RefOf(active_->item(i)));
    return refs;
}

void PluginListsPage::UpdateButtons() {
    const bool availableChosen = available_->currentRow() >= 0;
    const int row = active_->currentRow();
    add_->setEnabled(availableChosen);
    configureAvailable_->setEnabled(availableChosen);
    remove_->setEnabled(row >= 0);
    configureActive_->setEnabled(row >= 0);
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < active_->count());
}

void PluginListsPage::AddSelected() {
    const int row = available_->currentRow();
    if (row < 0 || static_cast<size_t>(row) >= modules_.size()) return;
    std::vector<DspModuleRef> refs = ActiveRefs();
    refs.push_back({modules_[static_cast<size_t>(row)].path, modules_[static_cast<size_t>(row)].module});
    ShowActive(refs);
    active_->setCurrentRow(active_->count() - 1);
}

void PluginListsPage::RemoveSelected() {
    const int row = active_->currentRow();
    if (row < 0) return;
    delete active_->takeItem(row);
    UpdateButtons();
}

void PluginListsPage::MoveSelected(int by) {
    const int row = active_->currentRow();
    const int to = row + by;
    if (row < 0 || to < 0 || to >= active_->count()) return;
    QListWidgetItem* item = active_->takeItem(row);
    active_->insertItem(to, item);
    active_->setCurrentRow(to);
}

bool PluginListsPage::ConfigureAvailable() {
    const int row = available_->currentRow();
    if (row < 0 || static_cast<size_t>(row) >= modules_.size()) return false;
    return Configure(modules_[static_cast<size_t>(row)]);
}

bool PluginListsPage::ConfigureActive() {
    const QListWidgetItem* item = active_->currentItem();
    return item && ConfigureRef(RefOf(item));
}

}  // namespace verdin
