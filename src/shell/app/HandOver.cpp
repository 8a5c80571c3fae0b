#include "shell/app/DBusInterfaces.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace verdin {

bool HandOverCommandText(const std::string& text) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(kBusName), QString::fromLatin1(kSystemPath),
                                                       QString::fromLatin1(kSystemInterface), QStringLiteral("Execute"));
    call << QString::fromStdString(text);
    // Without an instance the bus answers at once (no such name); a running instance
    // answers when it has run the text.
    const QDBusMessage reply = bus.call(call, QDBus::Block, 30000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

}  // namespace verdin
