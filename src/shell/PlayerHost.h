#pragma once
// What the player core asks of whoever runs it: the headless application prints message
// boxes on standard error and keeps no windows; the window library shows boxes and
// redraws. Everything here is called on the user-interface thread.
#include <string>
#include <string_view>

namespace verdin {

enum class MessageIcon { kInformation, kWarning, kError, kQuestion };

// The answer a question takes where nobody can answer it (no window): Yes for what a
// command asked for on purpose, No where Yes would lose the user's unsaved work.
enum class Unanswered { kYes, kNo };

class PlayerHost {
public:
    virtual ~PlayerHost() = default;
    // A message box captioned "Verdin".
    virtual void ShowMessage(std::string_view text, MessageIcon icon) = 0;
    // A Yes/No question captioned "Verdin"; true for Yes.
    virtual bool AskYesNo(std::string_view text, MessageIcon icon, Unanswered unanswered) = 0;
    // The progress tick (100 ms) and the display tick (10 ms) start or stop.
    virtual void SetTimersRunning(bool running) = 0;
    // What was announced is drawn right now: the thread blocks next (building the sample
    // space), and its status must show meanwhile.
    virtual void RefreshNow() = 0;
    // A command needs a window and there is none (headless): say so.
    virtual void WindowCommandUnavailable(std::string_view command) = 0;
    // Asks the application to quit (after the quit confirmation).
    virtual void Quit() = 0;
};

}  // namespace verdin
