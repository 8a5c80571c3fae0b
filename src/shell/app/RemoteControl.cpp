#include "RemoteControl.h"

#include "shell/CommandTable.h"
#include "shell/app/DBusInterfaces.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

namespace verdin {

namespace {

using Kind = RemoteRequest::Kind;

class RemotePlayer {
public:
    explicit RemotePlayer(QDBusConnection bus) : bus_(std::move(bus)) {}

    // The reply's first value; nothing (and the reason printed) when the call failed.
    std::optional<QVariant> Call(const char* method, const QVariantList& arguments = {}) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(QString::fromLatin1(kBusName), QString::fromLatin1(kPlayerPath),
                                           QString::fromLatin1(kPlayerInterface), QString::fromLatin1(method));
        call.setArguments(arguments);
        call.setAutoStartService(false);
        const QDBusMessage reply = bus_.call(call, QDBus::Block, 30000);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            std::fprintf(stderr, "Verdin: the running player did not answer %s: %s\n", method,
                         qPrintable(reply.errorMessage()));
            return std::nullopt;
        }
        return reply.arguments().value(0);
    }

    bool Command(Action action) { return Call("Command", {static_cast<uint>(CommandFor(action).ids[0])}).has_value(); }

    bool Run(const RemoteRequest& request) {
        switch (request.kind) {
            case Kind::kPlay:
            case Kind::kPause:
            case Kind::kPlayPause: return Transport(request.kind);
            case Kind::kStop: return Command(Action::kStop);
            case Kind::kNext: return Command(Action::kNextTrack);
            case Kind::kPrevious: return Command(Action::kPreviousTrack);
            case Kind::kSeek: {
                const double ms = std::round(request.amount * 1000);
                if (request.relative) return Call("SeekBy", {static_cast<int>(std::clamp(ms, -2e9, 2e9))}).has_value();
                return Call("SeekTo", {static_cast<uint>(std::clamp(ms, 0.0, 4e9))}).has_value();
            }
            case Kind::kVolume: return Volume(request);
            case Kind::kCurrent: {
                const QString format = QString::fromStdString(request.format);
                const std::optional<QVariant> text = format.isEmpty() ? Call("Caption") : Call("FormatStatus", {format});
                if (text) std::printf("%s\n", qPrintable(text->toString()));
                return text.has_value();
            }
        }
        return false;
    }

private:
    // Play resumes a paused track rather than starting it again; pause leaves a stopped
    // player alone.
    bool Transport(Kind kind) {
        const std::optional<QVariant> status = Call("PlayerStatus");
        if (!status) return false;
        const QString now = status->toString();
        if (now == QLatin1String("stopped")) return kind == Kind::kPause || Command(Action::kPlay);
        const bool paused = now == QLatin1String("paused");
        if ((kind == Kind::kPlay && !paused) || (kind == Kind::kPause && paused)) return true;
        return Command(Action::kPauseResume);
    }

    bool Volume(const RemoteRequest& request) {
        double percent = request.amount;
        if (request.relative) {
            const std::optional<QVariant> now = Call("Volume");
            if (!now) return false;
            percent += now->toUInt();
        }
        return Call("SetVolume", {static_cast<uint>(std::lround(std::clamp(percent, 0.0, 100.0)))}).has_value();
    }

    QDBusConnection bus_;
};

}  // namespace

int RunRemoteRequests(const std::vector<RemoteRequest>& requests) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(QString::fromLatin1(kBusName)).value()) {
        std::fputs("Verdin: no running player to control.\n", stderr);
        return 1;
    }
    RemotePlayer player(bus);
    for (const RemoteRequest& request : requests)
        if (!player.Run(request)) return 1;
    return 0;
}

}  // namespace verdin
