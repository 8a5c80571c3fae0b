#include "CoreApplication.h"

#include "settings/store/SettingsStore.h"
#include "shell/app/DBusInterfaces.h"
#include "shell/app/DBusObjects.h"
#include "shell/app/SignalWatcher.h"
#include "shell/mpris/MprisObject.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace verdin {

namespace {

// The process priority class of the settings (Windows priority-class values) as a
// nice value for the whole process. Raising it needs privileges; a refusal is ignored and
// the player runs at its normal priority.
void ApplyProcessPriorityClass(int32_t priorityClass) {
    struct Step {
        int32_t priorityClass;
        int nice;
    };
    static constexpr Step kSteps[] = {{64, 19},     {16384, 5},  {32, 0},
                                      {32768, -5},  {128, -10},  {256, -15}};
    for (const Step& step : kSteps)
        if (step.priorityClass == priorityClass) (void)::setpriority(PRIO_PROCESS, 0, step.nice);
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line)
        if (c == '\n' || c == '\r') c = ' ';
    return line;
}

}  // namespace

CoreApplication::CoreApplication(RunOptions options, QObject* parent)
    : QObject(parent), options_(std::move(options)), terminal_(options_.headless && ::isatty(STDOUT_FILENO)) {
    const SettingsEnvironment environment = CurrentSettingsEnvironment();
    LoadUserSettings(settings_, environment);
    core_ = std::make_unique<PlayerCore>(settings_, environment, *this);
    // Virtual: the window library runs the window commands itself.
    hostWindow_ = std::make_unique<HostWindow>(core_->Face(), [this](uint32_t id) { return DispatchCommand(id); });
    core_->Face().Listen([this](unsigned changes) {
        if (changes & kSettingsChanged) UpdateDisplayTimer();
        ShowProgressLine();
    });
    ApplyProcessPriorityClass(settings_.processPriorityClass);

    progressTimer_.setObjectName(QStringLiteral("117"));
    progressTimer_.setInterval(100);
    connect(&progressTimer_, &QTimer::timeout, this, &CoreApplication::ProgressTick);
    displayTimer_.setObjectName(QStringLiteral("126"));
    displayTimer_.setInterval(kDisplayStepMs);
    connect(&displayTimer_, &QTimer::timeout, this, &CoreApplication::DisplayTimerTick);
    WatchSignals();
}

CoreApplication::~CoreApplication() { TearDownOnce(); }

bool CoreApplication::Register() {
    const Registration registration = RegisterDBusInterfaces(*this);
    if (registration != Registration::kRegistered) return registration != Registration::kNameTaken;
    MprisHooks hooks;
    hooks.ensureStarted = [this] { EnsureStarted(); };
    hooks.canRaise = !options_.headless;
    hooks.raise = [this] { RaiseWindow(); };
    // Answer first, then quit as the command server's Quit does.
    hooks.quit = [this] {
        QTimer::singleShot(0, this, [this] { DispatchCommand(CommandFor(Action::kExit).ids[0]); });
    };
    mpris_ = RegisterMpris(core_->Face(), std::move(hooks));
    if (!mpris_)
        std::fputs("Verdin: the media controllers' bus name is taken; media keys and panels will not see "
                   "this player.\n", stderr);
    return true;
}

void CoreApplication::ScheduleStartUp() {
    startUpScheduled_ = true;
    QTimer::singleShot(0, this, [this] { EnsureStarted(); });
}

void CoreApplication::EnsureStarted() {
    if (!startUpScheduled_) return;
    startUpScheduled_ = false;
    StartUp();
}

void CoreApplication::StartUp() {
    core_->LoadPlugins(hostWindow_->Record());
    core_->StartUp(options_.commandText);
    if (options_.quitAfterPlay && !core_->Face().Playing() && !options_.commandText.empty()) {
        // The command line asked for something to play and nothing plays (nothing to
        // play, or it could not start): the run is over. Without a command line the
        // player waits for commands and ends when what they start has played.
        QTimer::singleShot(0, this, [this] { QuitAfterPlay(); });
    }
}

int CoreApplication::Run() {
    // Quit before the loop ran (a signal while start-up showed a message box): the loop
    // that took the quit is gone, so this one would wait for nothing.
    if (tornDown_) return 0;
    int code = 0;
    do {
        code = QCoreApplication::exec();
    } while (code == 0);
    TearDownOnce();
    return code == kQuitCode ? 0 : code;
}

void CoreApplication::TearDownOnce() {
    if (tornDown_ || !core_) return;
    // Quitting before the start-up ran: nothing was loaded, and saving now would write an
    // empty playlist over the user's.
    if (startUpScheduled_) {
        tornDown_ = true;
        return;
    }
    tornDown_ = true;
    progressTimer_.stop();
    displayTimer_.stop();
    StoreWindowState();
    core_->TearDown();
    if (terminal_ && !lastProgressLine_.empty()) std::fputs("\n", stdout);
}

void CoreApplication::Quit() {
    TearDownOnce();
    QCoreApplication::exit(kQuitCode);
}

void CoreApplication::QuitNow() { Quit(); }

void CoreApplication::QuitAfterPlay() {
    // A run that was to play something and reported an error ends with a failure status,
    // so that a script can tell (no sound device, an unreadable file).
    TearDownOnce();
    QCoreApplication::exit(errorReported_ ? kPlayFailedCode : kQuitCode);
}

bool CoreApplication::DispatchCommand(uint32_t id) { return core_->Face().Execute(id); }

void CoreApplication::WatchSignals() {
    auto* watcher = new SignalWatcher(this);
    connect(watcher, &SignalWatcher::TerminationRequested, this, &CoreApplication::QuitNow);
}

void CoreApplication::ProgressTick() {
    if (core_->Face().Playing()) playedSomething_ = true;
    core_->ProgressTick();
    if (options_.quitAfterPlay && playedSomething_ && !core_->Face().Playing()) QuitAfterPlay();
}

void CoreApplication::ShowMessage(std::string_view text, MessageIcon icon) {
    if (icon == MessageIcon::kError) errorReported_ = true;
    if (terminal_ && !lastProgressLine_.empty()) std::fputs("\n", stdout), lastProgressLine_.clear();
    std::fprintf(stderr, "Verdin: %s\n", OneLine(text).c_str());
}

bool CoreApplication::AskYesNo(std::string_view text, MessageIcon icon, Unanswered unanswered) {
    // Without a window nobody can answer: the question is printed with the answer taken.
    const bool yes = unanswered == Unanswered::kYes;
    ShowMessage(std::string(text) + (yes ? " Yes" : " No"), icon);
    return yes;
}

void CoreApplication::SetTimersRunning(bool running) {
    timersRunning_ = running;
    if (running) {
        if (!progressTimer_.isActive()) progressTimer_.start();
    } else {
        progressTimer_.stop();
    }
    UpdateDisplayTimer();
}

void CoreApplication::UpdateDisplayTimer() {
    // The 10 ms tick draws the analyzer and the oscilloscope and feeds the visualization
    // modules; without windows and modules there is nothing to do, and waking 100 times a
    // second for nothing costs processor time.
    const bool wanted = timersRunning_ && !tornDown_ &&
                        (!options_.headless || core_->Face().GetSettings().enableVisualizationPlugins != 0);
    // The pictures change every third step; only visualization modules render on every
    // one. Without them the timer fires every 30 ms and runs its three steps at once: the
    // same pictures at the same times, a third of the wake-ups.
    const bool modules = core_->Face().GetSettings().enableVisualizationPlugins != 0;
    displayTimer_.setInterval(modules ? kDisplayStepMs : 3 * kDisplayStepMs);
    if (wanted && !displayTimer_.isActive()) displayTimer_.start();
    if (!wanted) displayTimer_.stop();
}

void CoreApplication::DisplayTimerTick() {
    for (int step = 0; step < displayTimer_.interval() / kDisplayStepMs; ++step) {
        DisplayTick();
        core_->VisualizationTick();
    }
}

void CoreApplication::RefreshNow() {}

void CoreApplication::WindowCommandUnavailable(std::string_view command) {
    std::string name(command);
    const size_t tab = name.find('\t');
    if (tab != std::string::npos) name = name.substr(0, tab) + " (" + name.substr(tab + 1) + ")";
    while (!name.empty() && name.front() == ' ') name.erase(0, 1);
    std::fprintf(stderr, "Verdin: \"%s\" needs a window; running without windows, it does nothing.\n", name.c_str());
}

// On a terminal the headless player keeps one line up to date: the status line.
void CoreApplication::ShowProgressLine() {
    if (!terminal_ || !core_ || !core_->StartupDone()) return;
    const std::string line = core_->Face().StatusText();
    if (line == lastProgressLine_) return;
    lastProgressLine_ = line;
    std::fprintf(stdout, "\r%s\x1b[K", line.c_str());
    std::fflush(stdout);
}

}  // namespace verdin
