#include "shell/ui/dialogs/options/PluginPages.h"

#include "plugins/dsp/DspConfigure.h"
#include "plugins/dsp/DspLibraryList.h"
#include "plugins/library/ModuleConfigure.h"
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/options/InputPage.h"
#include "shell/ui/dialogs/options/OptionWidgets.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace verdin {
namespace {

QString Text(const std::string& text) { return QString::fromStdString(text); }

QString ModuleText(const std::string& library, const std::string& module) { return Text(library + ": " + module); }

QString MissingText(const DspModuleRef& ref) {
    return QStringLiteral("%1,%2 (not found)").arg(Text(ref.libraryPath)).arg(ref.moduleIndex);
}

// "Available plug-ins": one row per module of every library found.
std::vector<AvailableModule> ModulesOf(const std::vector<ModuleLibrary>& found) {
    std::vector<AvailableModule> modules;
    for (size_t i = 0; i < found.size(); ++i)
        for (size_t m = 0; m < found[i].moduleDescriptions.size(); ++m)
            modules.push_back({i, static_cast<int>(m), found[i].path,
                               ModuleText(found[i].description, found[i].moduleDescriptions[m])});
    return modules;
}

// "Active modules": the module's texts, or the entry as it stands when not found.
template <typename Kind>
QString ActiveTextOf(const ModuleLibraryList<Kind>* libraries, const DspModuleRef& ref) {
    const ModuleLibrary* library = libraries ? libraries->LibraryByPath(ref.libraryPath) : nullptr;
    if (!library || ref.moduleIndex < 0 || static_cast<size_t>(ref.moduleIndex) >= library->moduleDescriptions.size())
        return MissingText(ref);
    return ModuleText(library->description, library->moduleDescriptions[static_cast<size_t>(ref.moduleIndex)]);
}

// The parent window record plug-ins get: the one the player's plug-ins were loaded with.
VerdinHostWindow* PluginParent(const Player& player) {
    return player.DspLibraries() ? player.DspLibraries()->parentWindow() : nullptr;
}

constexpr int kSearchPathLength = 4095;

}  // namespace

DspPage::DspPage(Player& player, QWidget* parent)
    : PluginListsPage(QStringLiteral("Digital Signal Processing (DSP)"),
                      {QStringLiteral("Available plug-ins"),
                       QStringLiteral("Active modules (modules will be applied in this order)"),
                       QStringLiteral("Select directory for DSP plug-ins.")},
                      player, parent) {
    Load();
}

DspPage::~DspPage() = default;

std::vector<AvailableModule> DspPage::FindModules(const std::string& searchPath) {
    libraries_ = std::make_unique<DspLibraryList>(PluginParent(player_), searchPath);
    return ModulesOf(libraries_->libraries());
}

QString DspPage::ActiveText(const DspModuleRef& ref) const { return ActiveTextOf(libraries_.get(), ref); }

bool DspPage::Configure(const AvailableModule& module) {
    return libraries_ && ConfigureDspModule(*libraries_, module.library, module.module);
}

bool DspPage::ConfigureRef(const DspModuleRef& ref) {
    return libraries_ && ConfigureDspModuleByPath(*libraries_, ref.libraryPath, ref.moduleIndex);
}

void DspPage::Load() {
    const Settings& s = CurrentSettings();
    ShowSearchPath(s.dspPluginsSearchPath);
    ShowActive(ParseDspPlugins(s.dspPlugins));
}

void DspPage::Apply(Settings& s) {
    s.dspPluginsSearchPath = SearchPathText();
    s.dspPlugins = FormatDspPlugins(ActiveRefs());
}

VisualizationPage::VisualizationPage(Player& player, QWidget* parent)
    : PluginListsPage(QStringLiteral("Visualization"),
                      {QStringLiteral("Available plug-ins (select the active module)"), QStringLiteral("Active modules"),
                       QStringLiteral("Select directory for Visualization plug-ins.")},
                      player, parent) {
    Load();
}

VisualizationPage::~VisualizationPage() = default;

std::vector<AvailableModule> VisualizationPage::FindModules(const std::string& searchPath) {
    libraries_ = std::make_unique<VisLibraryList>(PluginParent(player_), searchPath);
    return ModulesOf(libraries_->libraries());
}

QString VisualizationPage::ActiveText(const DspModuleRef& ref) const { return ActiveTextOf(libraries_.get(), ref); }

bool VisualizationPage::Configure(const AvailableModule& module) {
    return libraries_ && ConfigureModule(*libraries_, module.library, module.module);
}

bool VisualizationPage::ConfigureRef(const DspModuleRef& ref) {
    return libraries_ && ConfigureModuleByPath(*libraries_, ref.libraryPath, ref.moduleIndex);
}

void VisualizationPage::Load() {
    const Settings& s = CurrentSettings();
    ShowSearchPath(s.visualizationPluginsSearchPath);
    ShowActive(ParseDspPlugins(s.visualizationPlugins));
}

void VisualizationPage::Apply(Settings& s) {
    s.visualizationPluginsSearchPath = SearchPathText();
    s.visualizationPlugins = FormatDspPlugins(ActiveRefs());
}

GeneralPurposePage::GeneralPurposePage(Player& player, QWidget* parent)
    : OptionsPage(QStringLiteral("General Purpose"), player, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* availableBox = new QGroupBox(QStringLiteral("Available plug-ins"), this);
    auto* availableLayout = new QVBoxLayout(availableBox);
    available_ = new QListWidget(availableBox);
    available_->setObjectName(QStringLiteral("available"));
    availableLayout->addWidget(available_);
    auto* configure = new QPushButton(QStringLiteral("Configure"), availableBox);
    configure->setObjectName(QStringLiteral("configure"));
    connect(configure, &QPushButton::clicked, this, [this] {
        if (available_->currentRow() >= 0) player_.ConfigureGeneralPlugin(static_cast<size_t>(available_->currentRow()));
    });
    availableLayout->addWidget(configure, 0, Qt::AlignRight);
    layout->addWidget(availableBox, 1);
    auto* searchBox = new QGroupBox(QStringLiteral("Search path for plug-ins"), this);
    auto* searchLayout = new QVBoxLayout(searchBox);
    searchPath_ = new SearchPathField(QStringLiteral("Select directory for General Purpose plug-ins."),
                                      QLatin1String(kRestartNote), kSearchPathLength, searchBox);
    searchPath_->Edit()->setObjectName(QStringLiteral("searchPath"));
    searchLayout->addWidget(searchPath_);
    layout->addWidget(searchBox);
    Load();
}

void GeneralPurposePage::Load() {
    const Settings& s = CurrentSettings();
    searchPath_->SetText(Text(s.generalPurposePluginsSearchPath));
    // The plug-ins running: a changed path is only searched at the next start.
    available_->clear();
    for (const std::string& description : player_.GeneralPlugins()) available_->addItem(Text(description));
}

void GeneralPurposePage::Apply(Settings& s) { s.generalPurposePluginsSearchPath = searchPath_->Text().toStdString(); }

}  // namespace verdin
