#include "shell/ui/dialogs/options/InputPage.h"

#include "engine/input/InputModuleList.h"
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/options/FileTypesBox.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace verdin {
namespace {

constexpr int kSearchPathLength = 4095;

QString DescriptionOf(InputModule* module) {
    const char* text = module && module->ops && module->ops->GetDescription ? module->ops->GetDescription(module) : nullptr;
    return text ? QString::fromUtf8(text) : QStringLiteral("(a plug-in without a description)");
}

}  // namespace

InputPage::InputPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("Input"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* plugins = new QGroupBox(QStringLiteral("Input plug-ins"), this);
    auto* grid = new QGridLayout(plugins);
    modules_ = new QListWidget(plugins);
    modules_->setObjectName(QStringLiteral("inputModules"));
    grid->addWidget(modules_, 0, 0, 3, 1);
    configure_ = new QPushButton(QStringLiteral("Configure"), plugins);
    about_ = new QPushButton(QStringLiteral("About"), plugins);
    grid->addWidget(configure_, 0, 1);
    grid->addWidget(about_, 1, 1);
    layout->addWidget(plugins, 1);

    auto* search = new QGroupBox(QStringLiteral("Search path for plug-ins"), this);
    auto* searchLayout = new QVBoxLayout(search);
    searchPath_ = new SearchPathField(QStringLiteral("Select directory for input plug-ins."),
                                      QLatin1String(kRestartNote), kSearchPathLength, search);
    searchPath_->Edit()->setObjectName(QStringLiteral("inputPluginsSearchPath"));
    searchLayout->addWidget(searchPath_);
    layout->addWidget(search);
    fileTypes_ = new FileTypesBox(player_.Modules(), this);
    layout->addWidget(fileTypes_);

    const InputModuleList& list = player_.Modules();
    for (size_t i = 0; i < list.ModuleCount(); ++i) modules_->addItem(DescriptionOf(list.ModuleAt(i)));
    connect(modules_, &QListWidget::currentRowChanged, this, &InputPage::SelectionChanged);
    connect(configure_, &QPushButton::clicked, this, &InputPage::ConfigureSelected);
    connect(about_, &QPushButton::clicked, this, &InputPage::AboutSelected);
    SelectionChanged();
    Load();
}

void InputPage::SelectionChanged() {
    InputModule* module = player_.Modules().ModuleAt(static_cast<size_t>(std::max(modules_->currentRow(), 0)));
    const bool selected = modules_->currentRow() >= 0 && module && module->ops;
    configure_->setEnabled(selected && module->ops->Configure);
    about_->setEnabled(selected && module->ops->About);
}

bool InputPage::ConfigureSelected() {
    if (modules_->currentRow() < 0) return false;
    InputModule* module = player_.Modules().ModuleAt(static_cast<size_t>(modules_->currentRow()));
    if (!module || !module->ops || !module->ops->Configure) return false;
    module->ops->Configure(module);
    return true;
}

bool InputPage::AboutSelected() {
    if (modules_->currentRow() < 0) return false;
    InputModule* module = player_.Modules().ModuleAt(static_cast<size_t>(modules_->currentRow()));
    if (!module || !module->ops || !module->ops->About) return false;
    module->ops->About(module);
    return true;
}

void InputPage::Load() {
    searchPath_->SetText(QString::fromStdString(CurrentSettings().inputPluginsSearchPath));
    fileTypes_->Load();
}

void InputPage::Apply(Settings& s) {
    s.inputPluginsSearchPath = searchPath_->Text().toStdString();
    fileTypes_->Apply();
}

}  // namespace verdin
