#include "engine/output/PulseApi.h"
#include "PulseConnection.h"

#include <pulse/error.h>
#include <pulse/introspect.h>

#include <poll.h>

#include <algorithm>
#include <vector>

namespace verdin {

namespace {

constexpr const char* kClientName = "Verdin";

int MillisecondsUntil(PulseDeadline deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<int64_t>(left.count(), 0, 100));
}

}  // namespace

std::unique_ptr<PulseConnection> PulseConnection::Connect(PulseDeadline deadline,
                                                          std::string* error) {
    if (!Pulse()) {
        *error = kPulseLibraryMissing;
        return nullptr;
    }
    std::unique_ptr<PulseConnection> c(new PulseConnection);
    c->loop_ = Pulse()->pa_mainloop_new();
    if (!c->loop_) {
        *error = "cannot make a PulseAudio main loop";
        return nullptr;
    }
    Pulse()->pa_mainloop_set_poll_func(c->loop_, &PulseConnection::PollWithWakeup, c.get());
    c->context_ = Pulse()->pa_context_new(Pulse()->pa_mainloop_get_api(c->loop_), kClientName);
    if (!c->context_) {
        *error = "cannot make a PulseAudio context";
        return nullptr;
    }
    if (Pulse()->pa_context_connect(c->context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        *error = "no PulseAudio server: " + c->LastError();
        return nullptr;
    }
    const bool ready = c->RunUntil(
        [&] { return Pulse()->pa_context_get_state(c->context_) == PA_CONTEXT_READY; }, deadline);
    if (!ready) {
        *error = "no PulseAudio server answers: " + c->LastError();
        return nullptr;
    }
    return c;
}

PulseConnection::~PulseConnection() {
    if (context_) {
        Pulse()->pa_context_disconnect(context_);
        Pulse()->pa_context_unref(context_);
    }
    if (loop_) Pulse()->pa_mainloop_free(loop_);
}

bool PulseConnection::Alive() const {
    return context_ && Pulse()->pa_context_get_state(context_) == PA_CONTEXT_READY;
}

std::string PulseConnection::LastError() const {
    return context_ ? Pulse()->pa_strerror(Pulse()->pa_context_errno(context_)) : "no context";
}

int PulseConnection::PollWithWakeup(struct pollfd* fds, unsigned long count, int timeout,
                                    void* self) {
    const WakeupSignal* wakeup = static_cast<PulseConnection*>(self)->wakeup_;
    if (!wakeup) return poll(fds, count, timeout);
    std::vector<struct pollfd> all(fds, fds + count);
    all.push_back({wakeup->Fd(), POLLIN, 0});
    const int rc = poll(all.data(), all.size(), timeout);
    if (rc < 0) return rc;
    std::copy(all.begin(), all.begin() + static_cast<long>(count), fds);
    if (all.back().revents & POLLIN) {
        wakeup->Drain();
        return rc - 1;
    }
    return rc;
}

bool PulseConnection::Iterate(int timeoutMs) {
    if (Pulse()->pa_mainloop_prepare(loop_, timeoutMs * 1000) < 0) return false;
    if (Pulse()->pa_mainloop_poll(loop_) < 0) return false;
    return Pulse()->pa_mainloop_dispatch(loop_) >= 0;
}

bool PulseConnection::RunUntil(const std::function<bool()>& done, PulseDeadline deadline) {
    while (!done()) {
        const pa_context_state_t state = Pulse()->pa_context_get_state(context_);
        if (state == PA_CONTEXT_FAILED || state == PA_CONTEXT_TERMINATED) return false;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        if (!Iterate(MillisecondsUntil(deadline))) return false;
    }
    return true;
}

namespace {

struct SinkQuery {
    std::string defaultSink;
    std::vector<OutputDeviceEntry> sinks;
    int pending = 2;
};

void OnServerInfo(pa_context*, const pa_server_info* info, void* data) {
    auto* q = static_cast<SinkQuery*>(data);
    if (info && info->default_sink_name) q->defaultSink = info->default_sink_name;
    --q->pending;
}

void OnSinkInfo(pa_context*, const pa_sink_info* info, int eol, void* data) {
    auto* q = static_cast<SinkQuery*>(data);
    if (eol != 0) {
        --q->pending;
        return;
    }
    if (info) q->sinks.push_back({info->name ? info->name : "",
                                  info->description ? info->description : ""});
}

}  // namespace

std::vector<OutputDeviceEntry> PulseConnection::Sinks(PulseDeadline deadline) {
    SinkQuery query;
    pa_operation* server = Pulse()->pa_context_get_server_info(context_, &OnServerInfo, &query);
    pa_operation* sinks = Pulse()->pa_context_get_sink_info_list(context_, &OnSinkInfo, &query);
    bool done = false;
    if (server && sinks) done = RunUntil([&] { return query.pending == 0; }, deadline);
    // Cancel before the query goes out of scope, so no late callback can reach it.
    for (pa_operation* op : {server, sinks}) {
        if (!op) continue;
        Pulse()->pa_operation_cancel(op);
        Pulse()->pa_operation_unref(op);
    }
    if (!done) return {};
    std::stable_partition(query.sinks.begin(), query.sinks.end(),
                          [&](const OutputDeviceEntry& e) { return e.name == query.defaultSink; });
    return query.sinks;
}

std::vector<OutputDeviceEntry> ListPulseDevices() {
    const PulseDeadline deadline = std::chrono::steady_clock::now() + kPulseConnectTimeout;
    std::string error;
    auto connection = PulseConnection::Connect(deadline, &error);
    if (!connection) return {};
    return connection->Sinks(deadline);
}

}  // namespace verdin
