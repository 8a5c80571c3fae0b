#include "DBusObjects.h"

#include "playlist/files/PlaylistFormat.h"
#include "base/Text.h"
#include "shell/app/CoreApplication.h"
#include "shell/app/DBusInterfaces.h"

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace verdin {

QDBusArgument& operator<<(QDBusArgument& argument, const RowReply& row) {
    argument.beginStructure();
    argument << row.row << row.kind << row.cells;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, RowReply& row) {
    argument.beginStructure();
    argument >> row.row >> row.kind >> row.cells;
    argument.endStructure();
    return argument;
}

SystemObject::SystemObject(CoreApplication& application, QObject* parent)
    : QObject(parent), application_(application) {}

void SystemObject::Execute(const QString& text) {
    application_.EnsureStarted();
    application_.GetPlayer().ExecuteCommandText(text.toStdString());
}

PlayerObject::PlayerObject(CoreApplication& application, QObject* parent)
    : QObject(parent), application_(application) {}

bool PlayerObject::Command(uint id) {
    application_.EnsureStarted();
    return application_.DispatchCommand(id);
}

RowReplies PlayerObject::Rows() {
    application_.EnsureStarted();
    const Player& player = application_.GetPlayer();
    RowReplies rows;
    const int count = player.List().RowCount();
    rows.reserve(count);
    for (int row = 0; row < count; ++row) {
        RowReply reply;
        reply.row = row;
        reply.kind = static_cast<int>(player.List().ItemAtRow(row).item->Kind());
        for (const std::string& cell : player.CellsOfRow(row)) reply.cells << QString::fromStdString(cell);
        rows << reply;
    }
    return rows;
}

int PlayerObject::CurrentRow() {
    application_.EnsureStarted();
    return application_.GetPlayer().CurrentRow();
}

void PlayerObject::PlayRow(int row) {
    application_.EnsureStarted();
    application_.GetPlayer().PlayRow(row);
}

QString PlayerObject::Status() {
    application_.EnsureStarted();
    return QString::fromStdString(application_.GetPlayer().StatusText());
}

QString PlayerObject::Caption() {
    application_.EnsureStarted();
    return QString::fromStdString(application_.GetPlayer().Caption());
}

QString PlayerObject::PlayerStatus() {
    application_.EnsureStarted();
    switch (application_.GetPlayer().Status()) {
        case verdin::PlayerStatus::Playing: return QStringLiteral("playing");
        case verdin::PlayerStatus::Paused: return QStringLiteral("paused");
        default: return QStringLiteral("stopped");
    }
}

uint PlayerObject::Position() {
    application_.EnsureStarted();
    return application_.GetPlayer().PositionMs();
}

void PlayerObject::SeekTo(uint milliseconds) {
    application_.EnsureStarted();
    application_.GetPlayer().SeekTo(milliseconds);
}

void PlayerObject::SeekBy(int milliseconds) {
    application_.EnsureStarted();
    application_.GetPlayer().SeekBy(milliseconds);
}

uint PlayerObject::Volume() {
    application_.EnsureStarted();
    return static_cast<uint>(std::lround(application_.GetPlayer().GetSettings().Volume() * 100.0 / 65535));
}

void PlayerObject::SetVolume(uint percent) {
    application_.EnsureStarted();
    Player& player = application_.GetPlayer();
    const long target = std::lround(std::min(percent, 100u) * 65535.0 / 100);
    player.ChangeVolume(static_cast<int>(target - player.GetSettings().Volume()));
}

QString PlayerObject::FormatStatus(const QString& statusTemplate) {
    application_.EnsureStarted();
    return QString::fromStdString(application_.GetPlayer().FormatStatus(statusTemplate.toStdString()));
}

void PlayerObject::SavePlaylist(const QString& path) {
    application_.EnsureStarted();
    const std::string name = path.toStdString();
    const std::string_view extension = ExtensionOf(std::string_view(name).substr(name.rfind('/') == std::string::npos ? 0 : name.rfind('/')));
    PlaylistFormat format = PlaylistFormat::kVdp;
    if (EqualsIgnoreCase(extension, ".m3u")) format = PlaylistFormat::kM3u;
    else if (EqualsIgnoreCase(extension, ".pls")) format = PlaylistFormat::kPls;
    if (!application_.GetPlayer().SavePlaylist(-1, name, static_cast<int>(format)))
        sendErrorReply(QStringLiteral("org.brimfell.Verdin.Error.SaveFailed"), QStringLiteral("Unable to save playlist"));
}

void PlayerObject::Quit() {
    // Answer first, then quit as the menu's "Exit" does (asking about unsaved playlists).
    QTimer::singleShot(0, &application_, [this] { application_.DispatchCommand(CommandFor(Action::kExit).ids[0]); });
}

Registration RegisterDBusInterfaces(CoreApplication& application) {
    qDBusRegisterMetaType<RowReply>();
    qDBusRegisterMetaType<RowReplies>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return Registration::kNoBus;
    auto* system = new SystemObject(application, &application);
    auto* player = new PlayerObject(application, &application);
    if (!bus.registerObject(QString::fromLatin1(kSystemPath), system, QDBusConnection::ExportAllSlots) ||
        !bus.registerObject(QString::fromLatin1(kPlayerPath), player, QDBusConnection::ExportAllSlots))
        return Registration::kNoBus;
    return bus.registerService(QString::fromLatin1(kBusName)) ? Registration::kRegistered : Registration::kNameTaken;
}

}  // namespace verdin
