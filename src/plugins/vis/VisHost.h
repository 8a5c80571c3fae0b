#pragma once
// The visualization host: the active modules of "visualizationPlugins", switched on and
// off as a whole, and the render tick that feeds them the analyzer's values.
//
// The on/off state is the setting "enableVisualizationPlugins", which the host is
// handed by reference and keeps true to what runs: switching on sets it, switching off
// clears it. Switching on activates every entry's module anew (Init) and restarts its
// elapsed time; switching off quits and unloads them. An entry whose library or module
// cannot be found stays in the list without an instance.
//
// Everything runs on the user-interface thread, so a switch can only meet a render tick
// from inside it: a module's Init, Render or Quit that sends the player a message which
// switches the modules (or a timer that fires while a module runs a loop of its own).
// The busy flag covers every stretch in which modules are called; a switch asked for
// meanwhile is carried out as soon as that stretch ends, and a tick that comes meanwhile
// does nothing. So no module is ever quit while one of its calls is running.
#include "plugins/library/ModuleListText.h"
#include "plugins/vis/VisFrame.h"
#include "plugins/vis/VisLibraryList.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

struct ActiveVisEntry {
    ModuleRef ref;  // the library path and module index as the setting names them
    std::unique_ptr<VisModuleInstance> instance;  // while switched on and running
    int32_t elapsedMs = 0;                       // since the switch-on, by ticks
};

class VisHost {
public:
    // A render tick stands for this many milliseconds.
    static constexpr int32_t kTickMs = 10;

    explicit VisHost(int32_t& enabled) : enabled_(enabled) {}
    // Quits every running module.
    ~VisHost();
    VisHost(const VisHost&) = delete;
    VisHost& operator=(const VisHost&) = delete;

    // Start-up, and Apply of the options page: enumerates searchPath (anew when it
    // differs from the last one) with parentWindow as the modules' hwndParent, and makes
    // one entry per piece of activeText, without instances. Running modules are switched
    // off first and on again afterwards.
    void Load(VerdinHostWindow* parentWindow, std::string_view searchPath, std::string_view activeText);
    // Start-up: when the setting is set, it is cleared and the modules switched on.
    void StartUp();

    // Does nothing when already on (off), and waits for a busy stretch to end (see above).
    void SwitchOn();
    void SwitchOff();
    bool On() const { return enabled_ != 0; }

    // Every 10 ms while a track is current. Only when switched on, with entries, and not
    // busy: each running module's elapsed time grows by 10 ms; once it has reached the
    // module's delayMs the module gets the format, the spectrum and waveform blocks its
    // spectrumNch and waveformNch ask for, and Render. A Render that answers non-zero
    // quits and unloads its module until the next switch-on.
    void RenderTick(const VisFrame& frame);

    const std::vector<ActiveVisEntry>& Entries() const { return entries_; }
    const VisLibraryList* Libraries() const { return libraries_.get(); }

private:
    enum class Pending { kNone, kOn, kOff };

    void SwitchOnNow();
    void SwitchOffNow();
    // Ends a busy stretch and carries out the switch asked for during it.
    void EndBusy();

    int32_t& enabled_;
    std::unique_ptr<VisLibraryList> libraries_;
    std::string searchPath_;  // the path libraries_ was enumerated on
    std::vector<ActiveVisEntry> entries_;
    bool busy_ = false;
    Pending pending_ = Pending::kNone;
};

}  // namespace verdin
