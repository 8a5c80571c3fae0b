#pragma once
// The plug-in host pages: "Digital Signal Processing (DSP)", "Visualization" and
// "General Purpose".
//
// DSP: Apply hands the search path and the active list to the player, which enumerates
// a changed path anew, rebuilds the DSP host's active list (running streams switch to it
// at once) and "dspPlugins".
// Visualization: the libraries with "winampVisGetHeader" on the path, found as the host
// finds them; Apply hands the search path and the list to the player, which restarts
// running modules with a changed list or path.
// General purpose: the libraries with "winampGetGeneralPurposePlugin" on the stored path;
// a changed "generalPurposePluginsSearchPath" takes effect at the next start.
#include "plugins/dsp/DspForward.h"
#include "plugins/vis/VisLibraryList.h"
#include "shell/ui/dialogs/options/OptionsPage.h"
#include "shell/ui/dialogs/options/PluginListsPage.h"

#include <memory>

class QListWidget;

namespace verdin {

class SearchPathField;

class DspPage : public PluginListsPage {
    Q_OBJECT
public:
    explicit DspPage(Player& player, QWidget* parent = nullptr);
    ~DspPage() override;
    void Load() override;
    void Apply(Settings& s) override;

protected:
    std::vector<AvailableModule> FindModules(const std::string& searchPath) override;
    QString ActiveText(const DspModuleRef& ref) const override;
    bool Configure(const AvailableModule& module) override;
    bool ConfigureRef(const DspModuleRef& ref) override;

private:
    std::unique_ptr<DspLibraryList> libraries_;
};

class VisualizationPage : public PluginListsPage {
    Q_OBJECT
public:
    explicit VisualizationPage(Player& player, QWidget* parent = nullptr);
    ~VisualizationPage() override;
    void Load() override;
    void Apply(Settings& s) override;

protected:
    std::vector<AvailableModule> FindModules(const std::string& searchPath) override;
    QString ActiveText(const DspModuleRef& ref) const override;
    bool Configure(const AvailableModule& module) override;
    bool ConfigureRef(const DspModuleRef& ref) override;

private:
    std::unique_ptr<VisLibraryList> libraries_;
};

class GeneralPurposePage : public OptionsPage {
    Q_OBJECT
public:
    explicit GeneralPurposePage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;

    QListWidget* Available() const { return available_; }
    SearchPathField* SearchPath() const { return searchPath_; }

private:
    QListWidget* available_ = nullptr;
    SearchPathField* searchPath_ = nullptr;
};

}  // namespace verdin
