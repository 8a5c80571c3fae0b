#pragma once
// The shape the DSP and visualization pages share: the modules of the libraries found on
// a search path ("Available plug-ins"), the active modules in their order, and the
// search path with "Browse" and "Refresh". Active modules are "%s,%d;" pieces (library
// path, module index); one whose library is not on the path any more keeps its entry.
//
// A page of this kind says how libraries are found and configured and what Apply does.
#include "plugins/dsp/DspPluginsText.h"
#include "shell/ui/dialogs/options/OptionsPage.h"

#include <string>
#include <vector>

class QListWidget;
class QPushButton;

namespace verdin {

class SearchPathField;

struct PluginListsTexts {
    QString available;   // "Available plug-ins"
    QString active;      // "Active modules (modules will be applied in this order)"
    QString browse;      // the folder chooser's title
};

// One module the libraries offer.
struct AvailableModule {
    size_t library = 0;    // index among the libraries found
    int module = 0;        // index within its library
    std::string path;      // the library's path
    QString text;          // "library description: module description"
};

class PluginListsPage : public OptionsPage {
    Q_OBJECT
public:
    PluginListsPage(const QString& title, const PluginListsTexts& texts, Player& player, QWidget* parent = nullptr);

    QListWidget* Available() const { return available_; }
    QListWidget* Active() const { return active_; }
    SearchPathField* SearchPath() const { return searchPath_; }
    // The active list as it stands on the page.
    std::vector<DspModuleRef> ActiveRefs() const;

    // The buttons' actions.
    void AddSelected();
    void RemoveSelected();
    void MoveSelected(int by);
    bool ConfigureAvailable();
    bool ConfigureActive();
    // Finds the libraries on the path in the field again.
    void Refresh();

protected:
    // The modules of the libraries on searchPath, in the order found.
    virtual std::vector<AvailableModule> FindModules(const std::string& searchPath) = 0;
    // The text an active entry shows: its module's, when the libraries have it.
    virtual QString ActiveText(const DspModuleRef& ref) const = 0;
    virtual bool Configure(const AvailableModule& module) = 0;
    virtual bool ConfigureRef(const DspModuleRef& ref) = 0;

    // Subclasses call these from Load.
    void ShowSearchPath(const std::string& path);
    void ShowActive(const std::vector<DspModuleRef>& refs);
    std::string SearchPathText() const;

private:
    void UpdateButtons();
    void FillAvailable();

    std::vector<AvailableModule> modules_;
    QListWidget* available_ = nullptr;
    QListWidget* active_ = nullptr;
    SearchPathField* searchPath_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* configureAvailable_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* configureActive_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
};

}  // namespace verdin
