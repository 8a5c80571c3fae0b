#pragma once
// The main window, "Verdin - Main Window": the tool bands (toolbars, status window,
// position and volume bars, analyzer and oscilloscope), the playlist container with the
// playlist view and its summary line, the menus and the accelerator table. It is a face of
// the player: every command goes through the command table, and what the window shows is
// read from the player's views whenever the player announces a change.
#include "shell/CommandTable.h"
#include "shell/Player.h"
#include "shell/ui/analyzer/ScopeDrawing.h"
#include "shell/ui/window/Menus.h"
#include "shell/ui/window/ToolBands.h"

#include <QMainWindow>
#include <memory>

class QLabel;
class QProgressBar;
class QStatusBar;

namespace verdin {

class AddCommands;
class InformationRetrieval;
class PlaylistModel;
class PlaylistView;
class PositionControl;
class Presentation;
class ScopeWindow;
class StatusWindow;
class VolumeControl;
class WindowApplication;
class WindowCommands;

// The identifiers of the tool bands (kept in "rebarBandArray").
enum BandId : int32_t {
    kTransportBand = 103,     // transport and mode buttons
    kWindowBand = 125,        // menus, playlist, window and exit buttons
    kPositionBand = 111,      // the position bar
    kVolumeBand = 116,        // the volume bar (shown with showVolumeControl)
    kStatusBand = 115,        // the status window
    kAnalyzerBand = 114,      // the frequency analyzer
    kOscilloscopeBand = 124,  // the oscilloscope
};

class MainWindow final : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(WindowApplication& application);
    ~MainWindow() override;

    // Title, status, position, volume and check marks from the player; as the changes
    // (PlayerChange bits) say, also the playlist view's rows, texts and current row, and
    // the position bar's range for a new track.
    void RefreshDisplays(unsigned changes);
    // The 10 ms display tick: analyzer and oscilloscope.
    void DisplayTick();
    // Runs a command-table identifier from a menu, key, button, plug-in or script.
    bool Dispatch(uint32_t id);
    bool Run(Action action);
    // Where insert and delete commands act.
    CommandContext Context() const;
    // Teardown: the column layout, the band layout and the placement into the settings.
    void StoreLayout();
    // Appends dropped files, folders and links, as a drop on the window does.
    void DropUrls(const QList<QUrl>& urls);
    // Open, add, insert and drop.
    AddCommands& Adding();

    Player& GetPlayer() { return player_; }
    WindowApplication& Application() { return application_; }
    PlaylistView& View() { return *view_; }
    PlaylistModel& Model() { return *model_; }
    StatusWindow& Status() { return *status_; }
    PositionControl& Position() { return *position_; }
    VolumeControl& Volume() { return *volume_; }
    ScopeWindow& Analyzer() { return *analyzer_; }
    ScopeWindow& Oscilloscope() { return *oscilloscope_; }
    InformationRetrieval& Retrieval() { return *retrieval_; }
    const MainMenus& Menus() const { return menus_; }
    ToolBands& Bands() { return bands_; }
    QWidget& PlaylistContainer() { return *container_; }
    QLabel& ListSummaryLabel() { return *listSummary_; }
    QLabel& SelectionSummaryLabel() { return *selectionSummary_; }
    QProgressBar& RetrievalProgress() { return *progress_; }
    bool VolumeControlEnabled() const { return volumeEnabled_; }
    // The mini window and the notification icon, and which window shows.
    Presentation& Compact() { return *compact_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    QMenu* createPopupMenu() override { return nullptr; }

private:
    void BuildBands();
    QWidget* BuildPlaylistContainer();
    ToolBand* AddButtonBand(int32_t id, const QString& title, std::initializer_list<uint32_t> buttons);
    void AddWidgetBand(int32_t id, const QString& title, QWidget* widget);
    void ApplySettings(bool force);
    void ApplyPlaylistShown(bool shown);
    void ApplyHeader();
    void UpdateHeightRule(bool bandsChanged);
    void UpdateSummaries(bool list);
    // The tracks added without their information go to the retrieval: in a few large jobs
    // while an addition is still going in, the rest once it is in.
    void ReadDeferredTracks();
    void UpdateCheckMarks();
    void CheckVolumeSupport();
    void ShowContextMenu(int row, const QPoint& globalPosition);
    void PaintAnalyzer(ScopePixels& pixels);
    void PaintOscilloscope(ScopePixels& pixels);

    WindowApplication& application_;
    Player& player_;
    int listener_ = 0;
    std::unique_ptr<WindowCommands> commands_;
    ToolBands bands_;
    MainMenus menus_;
    StatusWindow* status_ = nullptr;
    PositionControl* position_ = nullptr;
    VolumeControl* volume_ = nullptr;
    ScopeWindow* analyzer_ = nullptr;
    ScopeWindow* oscilloscope_ = nullptr;
    QWidget* container_ = nullptr;
    PlaylistView* view_ = nullptr;
    PlaylistModel* model_ = nullptr;
    QStatusBar* summaryBar_ = nullptr;
    QLabel* listSummary_ = nullptr;
    QLabel* selectionSummary_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QWidget* decoy_ = nullptr;
    InformationRetrieval* retrieval_ = nullptr;
    Presentation* compact_ = nullptr;
    std::vector<std::pair<uint32_t, QAction*>> checkButtons_;
    // Tracks added without their information, held back while an addition is still
    // going in, so that they are read in a few large jobs rather than many small ones.
    std::vector<DeferredTrack> deferred_;

    // What the window last applied from the settings.
    struct Applied {
        int32_t showPlaylist = -1;
        int32_t showVolumeControl = -1;
        int32_t frequencyAnalyzer = -1;
        int32_t oscilloscope = -1;
        int32_t alwaysOnTop = -1;
        BandArray bands{};
        // The header as the settings held it when last applied or stored; the user's
        // changes to the header go into the settings when the layout is stored.
        std::array<int32_t, 8> headerOrder{};
        std::array<int32_t, 8> headerWidth{};
    } applied_;
    int shownHeight_ = 0;       // the window's height before the playlist was hidden
    bool volumeEnabled_ = true;
    bool volumeWarningShown_ = false;

    // Analyzer and oscilloscope.
    ScopeColours colours_;
    AnalyzerHistory history_;
    ScopeCadence cadence_;
    const Stream* drawnStream_ = nullptr;
};

}  // namespace verdin
