#include "MainWindow.h"

#include "playlist/Playlist.h"
#include "shell/ui/WindowHost.h"
#include "shell/ui/analyzer/ScopeWindow.h"
#include "shell/ui/compact/Presentation.h"
#include "shell/ui/controls/PositionControl.h"
#include "shell/ui/controls/ScrollCodes.h"
#include "shell/ui/controls/StatusWindow.h"
#include "shell/ui/controls/VolumeControl.h"
#include "shell/ui/playlist/InformationRetrieval.h"
#include "shell/ui/playlist/PlaylistModel.h"
#include "shell/ui/playlist/PlaylistView.h"
#include "shell/ui/window/Accelerators.h"
#include "shell/ui/window/Icons.h"
#include "shell/ui/window/WindowCommands.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QMimeData>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

namespace verdin {

namespace {

constexpr int kMinimumWidth = 200;
constexpr int kMinimumHeightWithPlaylist = 150;
// Tracks read per retrieval job while a long addition is still going in.
constexpr size_t kRetrievalBatch = 2048;
constexpr char kVolumeWarning[] =
    "Your output device does not support volume changes. The volume control will be disabled.";

QString Text(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

bool ValidOrder(const std::array<int32_t, 8>& order) {
    std::array<bool, 8> seen{};
    for (int32_t column : order) {
        if (column < 0 || column >= 8 || seen[static_cast<size_t>(column)]) return false;
        seen[static_cast<size_t>(column)] = true;
    }
    return true;
}

}  // namespace

MainWindow::MainWindow(WindowApplication& application)
    : application_(application),
      player_(application.GetPlayer()),
      commands_(std::make_unique<WindowCommands>(*this)),
      bands_(*this) {
    setObjectName(QStringLiteral("Verdin - Main Window"));
    setWindowTitle(QStringLiteral("Retrieving track information..."));
    setMinimumSize(kMinimumWidth, kMinimumHeightWithPlaylist);
    setAcceptDrops(true);
    setWindowIcon(TrackRowIcon(*this));
    // Tracks come in without their information; the retrieval below reads it off the
    // user-interface thread.
    player_.SetDeferredRetrieval(true);

    menus_ = BuildMenus(this, [this](uint32_t id) { Dispatch(id); });
    BuildBands();
    setCentralWidget(BuildPlaylistContainer());
    decoy_ = new QWidget(this);
    decoy_->setObjectName(QStringLiteral("Verdin - Visualization Plug-in Decoy"));
    decoy_->hide();

    retrieval_ = new InformationRetrieval(player_, this);
    connect(retrieval_, &InformationRetrieval::Progress, this, [this](size_t done, size_t total) {
        progress_->setVisible(total > 0);
        if (total == 0) return;
        progress_->setMaximum(static_cast<int>(total));
        progress_->setValue(static_cast<int>(done));
    });
    Adding().OnIdle([this] { ReadDeferredTracks(); });
    InstallAccelerators(*this, [this](Action action) { Run(action); });
    colours_ = MakeScopeColours(palette());

    const WindowPlacement& placement = player_.GetSettings().mainWindowPlacement;
    if (placement.length != 0 && placement.right > placement.left && placement.bottom > placement.top)
        setGeometry(placement.left, placement.top, placement.right - placement.left, placement.bottom - placement.top);
    else
        resize(780, 520);
    ApplySettings(true);
    view_->setFocus();
    compact_ = new Presentation(*this);
    listener_ = player_.Listen([this](unsigned changes) { RefreshDisplays(changes); });
}

MainWindow::~MainWindow() { player_.StopListening(listener_); }

// The bands. Button identifiers are the command table's; 0 is a separator.
void MainWindow::BuildBands() {
    AddButtonBand(kTransportBand, QStringLiteral("Transport"), {104, 106, 107, 108, 110, 0, 114, 119});
    AddButtonBand(kWindowBand, QStringLiteral("Window"), {112, 113, 121, 0, 118, 128, 131, 0, 122, 125, 124});
    position_ = new PositionControl(player_);
    AddWidgetBand(kPositionBand, QStringLiteral("Position"), position_);
    volume_ = new VolumeControl(player_);
    AddWidgetBand(kVolumeBand, QStringLiteral("Volume"), volume_);
    status_ = new StatusWindow;
    AddWidgetBand(kStatusBand, QStringLiteral("Status"), status_);
    analyzer_ = new ScopeWindow(QStringLiteral("Verdin - Frequency Analyzer"));
    analyzer_->SetPainter([this](ScopePixels& pixels) { PaintAnalyzer(pixels); });
    AddWidgetBand(kAnalyzerBand, QStringLiteral("Frequency Analyzer"), analyzer_);
    oscilloscope_ = new ScopeWindow(QStringLiteral("Verdin - Oscilloscope"));
    oscilloscope_->SetPainter([this](ScopePixels& pixels) { PaintOscilloscope(pixels); });
    AddWidgetBand(kOscilloscopeBand, QStringLiteral("Oscilloscope"), oscilloscope_);
    connect(position_, &PositionControl::StatusChanged, this,
            [this] { status_->SetText(QString::fromStdString(player_.StatusText())); });
}

ToolBand* MainWindow::AddButtonBand(int32_t id, const QString& title, std::initializer_list<uint32_t> buttons) {
    auto* band = new ToolBand(id, title, this);
    for (uint32_t button : buttons) {
        if (button == 0) {
            band->addSeparator();
            continue;
        }
        auto* action = new QAction(ButtonIcon(button, *this), Text(ButtonToolTip(button)).section(QLatin1Char(','), 0, 0),
                                   band);
        action->setObjectName(QStringLiteral("button-%1").arg(button));
        action->setToolTip(Text(ButtonToolTip(button)));
        QMenu* menu = button == 112 ? menus_.file : button == 113 ? menus_.miscellaneous
                                                  : button == 121 ? menus_.playlist : nullptr;
        if (const CommandEntry* entry = FindCommand(button)) {
            const Action what = entry->action;
            action->setCheckable(what == Action::kToggleLoop || what == Action::kToggleShuffle ||
                                 what == Action::kToggleAnalyzer || what == Action::kToggleOscilloscope ||
                                 what == Action::kToggleVisualization || what == Action::kTogglePlaylist);
            if (action->isCheckable()) checkButtons_.emplace_back(button, action);
            connect(action, &QAction::triggered, this, [this, button] {
                // Next track with Shift held crossfades.
                if (button == 110 && (QApplication::keyboardModifiers() & Qt::ShiftModifier))
                    Run(Action::kNextTrackCrossfade);
                else
                    Dispatch(button);
            });
        }
        if (menu) {
            auto* tool = new QToolButton(band);
            tool->setDefaultAction(action);
            tool->setMenu(menu);
            tool->setPopupMode(button == 121 ? QToolButton::MenuButtonPopup : QToolButton::InstantPopup);
            tool->setObjectName(action->objectName());
            band->addWidget(tool);
        } else {
            band->addAction(action);
            if (QWidget* tool = band->widgetForAction(action)) tool->setObjectName(action->objectName());
        }
    }
    bands_.Add(band);
    addToolBar(Qt::TopToolBarArea, band);
    return band;
}

void MainWindow::AddWidgetBand(int32_t id, const QString& title, QWidget* widget) {
    auto* band = new ToolBand(id, title, this);
    band->addWidget(widget);
    bands_.Add(band);
    addToolBar(Qt::TopToolBarArea, band);
}

QWidget* MainWindow::BuildPlaylistContainer() {
    container_ = new QWidget(this);
    container_->setObjectName(QStringLiteral("Verdin - Playlist Container"));
    auto* layout = new QVBoxLayout(container_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    model_ = new PlaylistModel(player_, this);
    model_->SetIcons(PlaylistRowIcon(*this), TrackRowIcon(*this));
    view_ = new PlaylistView(container_);
    view_->setModel(model_);
    model_->SetShownRows([this] { return view_->ShownRows(); });
    layout->addWidget(view_, 1);

    summaryBar_ = new QStatusBar(container_);
    summaryBar_->setObjectName(QStringLiteral("msctls_statusbar32"));
    listSummary_ = new QLabel(summaryBar_);
    listSummary_->setMinimumWidth(120);
    selectionSummary_ = new QLabel(summaryBar_);
    summaryBar_->addWidget(listSummary_);
    summaryBar_->addWidget(selectionSummary_, 1);
    progress_ = new QProgressBar(summaryBar_);
    progress_->setFormat(QStringLiteral("Retrieving information, please wait... %v/%m"));
    progress_->setMinimumWidth(260);
    progress_->hide();
    summaryBar_->addPermanentWidget(progress_);
    layout->addWidget(summaryBar_);

    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { UpdateSummaries(false); });
    connect(view_, &PlaylistView::PlaySelectedRequested, this, [this] { Run(Action::kPlaySelected); });
    connect(view_, &PlaylistView::PlayRowRequested, this, [this](int row) { player_.PlayRow(row); });
    connect(view_, &PlaylistView::ContextMenuRequested, this, &MainWindow::ShowContextMenu);
    connect(view_, &PlaylistView::FilesDropped, this, &MainWindow::DropUrls);
    connect(model_, &PlaylistModel::MoveRequested, this,
            [this](const std::vector<int>& rows, int beforeRow) { player_.MoveRows(rows, beforeRow); });
    return container_;
}

bool MainWindow::Dispatch(uint32_t id) {
    const CommandEntry* entry = FindCommand(id);
    return entry && Run(entry->action);
}

bool MainWindow::Run(Action action) {
    const CommandContext context = Context();
    player_.ClearReplacedByShell();
    if (commands_->Run(action, context)) return true;
    return player_.Execute(action, context);
}

CommandContext MainWindow::Context() const {
    CommandContext context;
    context.viewHasFocus = focusWidget() == view_;
    context.selectedRows = view_->SelectedRows();
    return context;
}

void MainWindow::RefreshDisplays(unsigned changes) {
    if (changes & kRowsChanged) {
        model_->Resync();
        ReadDeferredTracks();
    } else {
        // The settings hold the templates the row texts are made with.
        if (changes & (kTextsChanged | kSettingsChanged)) model_->TextsChanged();
        model_->CurrentRowMoved();
    }
    if (changes & (kRowsChanged | kTextsChanged | kSettingsChanged)) UpdateSummaries(true);
    if (changes & kTrackChanged) {
        const auto [maximum, page] = player_.PositionRange();
        position_->SetRange(maximum, page);
    }
    const QString caption = QString::fromStdString(player_.Caption());
    if (windowTitle() != caption) setWindowTitle(caption);
    status_->SetText(QString::fromStdString(player_.StatusText()));
    position_->Refresh();
    volume_->Refresh();
    ApplySettings(false);
    UpdateCheckMarks();
    CheckVolumeSupport();
    if (!player_.CurrentStream() && drawnStream_) {
        // Playback ended: the pictures go empty.
        drawnStream_ = nullptr;
        analyzer_->update();
        oscilloscope_->update();
    }
}

void MainWindow::ReadDeferredTracks() {
    std::vector<DeferredTrack> taken = player_.TakeDeferredTracks();
    deferred_.insert(deferred_.end(), std::make_move_iterator(taken.begin()), std::make_move_iterator(taken.end()));
    if (!deferred_.empty() && (!Adding().Busy() || deferred_.size() >= kRetrievalBatch))
        retrieval_->Enqueue(std::exchange(deferred_, {}));
}

void MainWindow::ApplySettings(bool force) {
    const Settings& settings = player_.GetSettings();
    bool bandsChanged = false;
    if (force || settings.rebarBandArray != applied_.bands) {
        bands_.Apply(settings.rebarBandArray);
        applied_.bands = settings.rebarBandArray;
        bandsChanged = true;
    }
    auto showBand = [&](int32_t id, int32_t setting, int32_t& applied) {
        if (!force && setting == applied) return;
        applied = setting;
        bands_.Band(id)->setVisible(setting != 0);
        bandsChanged = true;
    };
    showBand(kVolumeBand, settings.showVolumeControl, applied_.showVolumeControl);
    showBand(kAnalyzerBand, settings.frequencyAnalyzer, applied_.frequencyAnalyzer);
    showBand(kOscilloscopeBand, settings.oscilloscope, applied_.oscilloscope);
    if (force || settings.showPlaylist != applied_.showPlaylist) ApplyPlaylistShown(settings.showPlaylist != 0);
    else if (bandsChanged) UpdateHeightRule(true);
    if (force || settings.playlistHeaderOrder != applied_.headerOrder || settings.playlistHeaderWidth != applied_.headerWidth)
        ApplyHeader();
    if (force || settings.normalWindowAlwaysOnTop != applied_.alwaysOnTop) {
        applied_.alwaysOnTop = settings.normalWindowAlwaysOnTop;
        const bool wasVisible = isVisible();
        setWindowFlag(Qt::WindowStaysOnTopHint, settings.normalWindowAlwaysOnTop != 0);
        // Changing a window's flags hides it.
        if (wasVisible) show();
    }
}

void MainWindow::ApplyPlaylistShown(bool shown) {
    applied_.showPlaylist = shown ? 1 : 0;
    if (shown == !container_->isHidden()) return;
    if (!shown) {
        shownHeight_ = height();
        container_->hide();
    } else {
        container_->show();
        setMinimumHeight(kMinimumHeightWithPlaylist);
        setMaximumHeight(QWIDGETSIZE_MAX);
        if (shownHeight_ > 0) resize(width(), shownHeight_);
    }
    UpdateHeightRule(true);
}

// With the playlist hidden the window is exactly as tall as its bands: it cannot be
// resized vertically (nor maximized taller).
void MainWindow::UpdateHeightRule(bool bandsChanged) {
    if (!container_->isHidden()) return;
    // After a layout pass the bands' heights are known already; after a change of the
    // settings they are measured now.
    if (bandsChanged) layout()->invalidate();
    const int bars = layout()->minimumSize().height();
    if (bars > 0 && (minimumHeight() != bars || maximumHeight() != bars)) setFixedHeight(bars);
}

void MainWindow::ApplyHeader() {
    const Settings& settings = player_.GetSettings();
    QHeaderView* header = view_->header();
    for (int column = 0; column < kPlaylistColumns; ++column) {
        const int32_t width = settings.playlistHeaderWidth[static_cast<size_t>(column)];
        if (width > 0) header->resizeSection(column, width);
    }
    if (ValidOrder(settings.playlistHeaderOrder))
        for (int position = 0; position < kPlaylistColumns; ++position)
            header->moveSection(header->visualIndex(settings.playlistHeaderOrder[static_cast<size_t>(position)]), position);
    applied_.headerOrder = settings.playlistHeaderOrder;
    applied_.headerWidth = settings.playlistHeaderWidth;
}

void MainWindow::StoreLayout() {
    // The bands as they are now, even if a move has not been laid out yet.
    layout()->activate();
    bands_.FitLines(width());
    QRect normal = normalGeometry();
    if (!normal.isValid()) normal = geometry();
    // Placed with the height it has while the playlist shows.
    if (container_->isHidden() && shownHeight_ > 0) normal.setHeight(shownHeight_);
    WindowPlacement placement;
    placement.length = 44;
    placement.showCmd = isMaximized() ? 3 : isMinimized() ? 2 : 1;
    placement.minX = placement.minY = placement.maxX = placement.maxY = -1;
    placement.left = normal.left();
    placement.top = normal.top();
    placement.right = normal.left() + normal.width();
    placement.bottom = normal.top() + normal.height();
    const QHeaderView* header = view_->header();
    player_.ChangeSettings([&](Settings& settings) {
        for (int i = 0; i < kPlaylistColumns; ++i) {
            settings.playlistHeaderOrder[static_cast<size_t>(i)] = header->logicalIndex(i);
            settings.playlistHeaderWidth[static_cast<size_t>(i)] = header->sectionSize(i);
        }
        settings.rebarBandArray = bands_.Read(applied_.bands);
        settings.mainWindowPlacement = placement;
    });
    const Settings& stored = player_.GetSettings();
    applied_.headerOrder = stored.playlistHeaderOrder;
    applied_.headerWidth = stored.playlistHeaderWidth;
    applied_.bands = stored.rebarBandArray;
}

void MainWindow::UpdateSummaries(bool list) {
    const Playlist& main = player_.List();
    if (list) listSummary_->setText(QString::fromStdString(ListSummary(main)));
    selectionSummary_->setText(QString::fromStdString(SelectionSummary(main, view_->SelectedRows())));
}

void MainWindow::UpdateCheckMarks() {
    const Settings& settings = player_.GetSettings();
    auto state = [&settings](uint32_t id) {
        switch (FindCommand(id)->action) {
            case Action::kToggleLoop: return settings.loopMode != 0;
            case Action::kToggleShuffle: return settings.shuffleMode != 0;
            case Action::kToggleAnalyzer: return settings.frequencyAnalyzer != 0;
            case Action::kToggleOscilloscope: return settings.oscilloscope != 0;
            case Action::kToggleVisualization: return settings.enableVisualizationPlugins != 0;
            case Action::kTogglePlaylist: return settings.showPlaylist != 0;
            default: return false;
        }
    };
    for (auto& [id, action] : menus_.checkable) action->setChecked(state(id));
    for (auto& [id, action] : checkButtons_) action->setChecked(state(id));
}

void MainWindow::CheckVolumeSupport() {
    const Stream* stream = player_.CurrentStream();
    if (!stream) return;
    const bool supported = stream->CanSetVolume();
    if (supported == volumeEnabled_) return;
    volumeEnabled_ = supported;
    volume_->setEnabled(supported);
    if (!supported) {
        // Not inside the refresh that noticed it: the box runs an event loop of its own.
        QTimer::singleShot(0, this, [this] { application_.ShowMessage(kVolumeWarning, MessageIcon::kWarning); });
    }
}

void MainWindow::ShowContextMenu(int row, const QPoint& globalPosition) {
    const ConstRowRef ref = player_.List().ItemAtRow(row);
    QMenu* menu = menus_.generalContext;
    if (ref) {
        switch (ref.item->Kind()) {
            case ItemKind::kTrack: menu = menus_.trackContext; break;
            case ItemKind::kPlaylist: menu = menus_.playlistContext; break;
            case ItemKind::kRandomEntry: menu = menus_.randomEntryContext; break;
        }
    }
    menu->popup(globalPosition);
}

void MainWindow::DisplayTick() {
    const Stream* stream = player_.CurrentStream();
    if (stream != drawnStream_) {
        // A new track: its pictures start from nothing.
        drawnStream_ = stream;
        history_.Clear();
        cadence_.TrackStarted();
    }
    const Settings& settings = player_.GetSettings();
    const bool analyzerShown = settings.frequencyAnalyzer != 0;
    const bool oscilloscopeShown = settings.oscilloscope != 0;
    if (!stream) {
        if (analyzerShown) analyzer_->Refresh();
        if (oscilloscopeShown) oscilloscope_->Refresh();
        return;
    }
    const ScopeCadence::Tick tick = cadence_.Advance(analyzerShown);
    if (!tick.redraw || settings.minimized || settings.miniWindowMode || isMinimized()) return;
    if ((analyzerShown && tick.computeSpectrum) || oscilloscopeShown) player_.TakeAnalyzerSnapshot();
    if (analyzerShown) analyzer_->Refresh();
    if (oscilloscopeShown) oscilloscope_->Refresh();
}

void MainWindow::PaintAnalyzer(ScopePixels& pixels) {
    const Stream* stream = player_.CurrentStream();
    SpectrumSource spectrum;
    if (stream && player_.GetSettings().frequencyAnalyzer)
        spectrum = [stream](int channel, int bin) { return stream->GetAnalyzerValue(channel, bin); };
    verdin::PaintAnalyzer(pixels, colours_, history_, spectrum);
}

void MainWindow::PaintOscilloscope(ScopePixels& pixels) {
    const Stream* stream = player_.CurrentStream();
    WaveformSource waveform;
    if (stream && player_.GetSettings().oscilloscope)
        waveform = [stream](int channel, int index) { return stream->GetWaveformValue(channel, index); };
    verdin::PaintOscilloscope(pixels, colours_, stream ? static_cast<int>(stream->Info().sampleRate) : 0, waveform);
}

void MainWindow::DropUrls(const QList<QUrl>& urls) { commands_->Adding().Drop(urls); }

AddCommands& MainWindow::Adding() { return commands_->Adding(); }

void MainWindow::closeEvent(QCloseEvent* event) {
    // The quit confirmation decides; the application quits itself when it may.
    event->ignore();
    Run(Action::kExit);
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        colours_ = MakeScopeColours(palette());
        analyzer_->update();
        oscilloscope_->update();
    }
    // The title bar's minimize: the window goes behind the notification icon.
    if (event->type() == QEvent::WindowStateChange && isMinimized() && compact_) compact_->MinimizedByDesktop();
}

bool MainWindow::event(QEvent* event) {
    const bool handled = QMainWindow::event(event);
    // The bands may have moved onto more or fewer lines, or to other line mates.
    if (event->type() == QEvent::LayoutRequest) {
        bands_.FitLines(width());
        UpdateHeightRule(false);
    }
    return handled;
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    bands_.FitLines(width());
    // The decoy covers the window for the plug-ins that look at it.
    decoy_->setGeometry(rect());
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasUrls()) return;
    // Always a copy: the program the files come from must not delete them.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void MainWindow::dragMoveEvent(QDragMoveEvent* event) {
    if (!event->mimeData()->hasUrls()) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void MainWindow::dropEvent(QDropEvent* event) {
    if (!event->mimeData()->hasUrls()) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    DropUrls(event->mimeData()->urls());
}

}  // namespace verdin
