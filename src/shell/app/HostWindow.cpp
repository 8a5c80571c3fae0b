#include "HostWindow.h"

#include "plugins/library/PluginCallScope.h"

namespace verdin {

HostWindow::HostWindow(Player& player, Dispatch dispatch)
    : queries_(player), dispatch_(std::move(dispatch)), userThread_(std::this_thread::get_id()) {
    record_.sendMessage = &HostWindow::Send;
    record_.host = this;
    PluginCallScope::Watch(&HostWindow::PluginCallWatcher, this);
}

HostWindow::~HostWindow() {
    PluginCallScope::Watch(nullptr, nullptr);
    std::lock_guard lock(mutex_);
    closed_ = true;
    ReleaseWaiting();
}

intptr_t HostWindow::Send(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    auto* self = static_cast<HostWindow*>(window->host);
    if (std::this_thread::get_id() == self->userThread_) return self->Answer(msg, wParam, lParam);
    return self->WaitForAnswer(msg, wParam, lParam);
}

void HostWindow::PluginCallWatcher(void* context, bool entering) {
    auto* self = static_cast<HostWindow*>(context);
    std::lock_guard lock(self->mutex_);
    self->pluginCalls_ += entering ? 1 : -1;
    if (entering) self->ReleaseWaiting();
}

intptr_t HostWindow::Answer(uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    switch (msg) {
        case WM_COMMAND: return dispatch_(static_cast<uint32_t>(wParam & 0xFFFF)) ? 1 : 0;
        case WM_USER: return queries_.Answer(lParam, wParam);
        case WM_COPYDATA:
            return lParam ? queries_.TakeCopyData(*reinterpret_cast<const COPYDATASTRUCT*>(lParam)) : 0;
        default: return 0;
    }
}

intptr_t HostWindow::WaitForAnswer(uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    Message message{msg, wParam, lParam};
    std::unique_lock lock(mutex_);
    if (closed_ || pluginCalls_ > 0) return 0;
    waiting_.push_back(&message);
    if (waiting_.size() == 1) QMetaObject::invokeMethod(this, [this] { AnswerWaiting(); }, Qt::QueuedConnection);
    answered_.wait(lock, [&] { return message.answered; });
    return message.answer;
}

void HostWindow::AnswerWaiting() {
    std::unique_lock lock(mutex_);
    while (!waiting_.empty()) {
        Message* message = waiting_.front();
        waiting_.pop_front();
        // Answered without the lock: the answer may call into a plug-in, which releases
        // the others waiting.
        lock.unlock();
        const intptr_t answer = Answer(message->msg, message->wParam, message->lParam);
        lock.lock();
        message->answer = answer;
        message->answered = true;
        // Woken without the lock held, so that the waiter does not wake only to block on
        // it again: two switches fewer per question.
        lock.unlock();
        answered_.notify_all();
        lock.lock();
    }
}

void HostWindow::ReleaseWaiting() {
    for (Message* message : waiting_) message->answered = true;  // answer stays 0
    waiting_.clear();
    answered_.notify_all();
}

}  // namespace verdin
