#include "shell/app/DBusInterfaces.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringDecoder>
#include <cstdio>

namespace verdin {

bool HandOverCommandText(const std::string& text) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(kBusName), QString::fromLatin1(kSystemPath),
                                                       QString::fromLatin1(kSystemInterface), QStringLiteral("Execute"));
    // A bus string is UTF-8: a name in another encoding arrives with replacement
    // characters, naming no file.
    QStringDecoder fromUtf8(QStringDecoder::Utf8);
    call << QString(fromUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size()))));
    // Without an instance the bus answers at once (no such name); a running instance
    // answers when it has run the text. The bus must not start a player for us: this
    // process becomes the player then, with its own options and environment.
    call.setAutoStartService(false);
    const QDBusMessage reply = bus.call(call, QDBus::Block, 30000);
    if (reply.type() != QDBusMessage::ReplyMessage) return false;
    if (fromUtf8.hasError())
        std::fputs("Verdin: names that are not UTF-8 cannot be handed to the running player; they were left out.\n", stderr);
    return true;
}

}  // namespace verdin
