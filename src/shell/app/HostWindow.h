#pragma once
// The record every hosted plug-in gets as its window (hwndParent), and what answers it:
// WM_COMMAND runs a command-table identifier as a menu or key would, WM_USER queries and
// WM_COPYDATA blocks go to PluginQueries; any other message answers 0. The same record
// serves the windowed and the headless player.
//
// Threads: answers are made on the user-interface thread (the one that made the object).
// A message sent from another thread is queued for it, and the sender waits. While the
// user-interface thread is inside a call into a plug-in (PluginCallScope), such a
// message answers 0 at once, and those already waiting are released with 0: a plug-in
// that waits for its own thread there cannot deadlock the two.
#include "shell/app/PluginQueries.h"

#include <verdin/window.h>

#include <QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace verdin {

class HostWindow : public QObject {
public:
    using Dispatch = std::function<bool(uint32_t id)>;

    HostWindow(Player& player, Dispatch dispatch);
    ~HostWindow() override;

    VerdinHostWindow* Record() { return &record_; }

private:
    struct Message {
        uint32_t msg;
        uintptr_t wParam;
        intptr_t lParam;
        intptr_t answer = 0;
        bool answered = false;
    };

    static intptr_t Send(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam, intptr_t lParam);
    static void PluginCallWatcher(void* context, bool entering);
    intptr_t Answer(uint32_t msg, uintptr_t wParam, intptr_t lParam);
    intptr_t WaitForAnswer(uint32_t msg, uintptr_t wParam, intptr_t lParam);
    void AnswerWaiting();
    // Answers every waiting message with 0 (mutex_ held).
    void ReleaseWaiting();

    PluginQueries queries_;
    Dispatch dispatch_;
    VerdinHostWindow record_{};
    const std::thread::id userThread_;
    std::mutex mutex_;  // guards the members below
    std::condition_variable answered_;
    std::deque<Message*> waiting_;
    int pluginCalls_ = 0;
    bool closed_ = false;
};

}  // namespace verdin
