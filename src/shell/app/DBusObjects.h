#pragma once
// The objects behind the player's bus interfaces (DBusInterfaces.h).
#include <QDBusArgument>
#include <QDBusContext>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace verdin {

class CoreApplication;

// One row of Rows(): (iias).
struct RowReply {
    int row = 0;
    int kind = 0;
    QStringList cells;
};
using RowReplies = QList<RowReply>;

QDBusArgument& operator<<(QDBusArgument& argument, const RowReply& row);
const QDBusArgument& operator>>(const QDBusArgument& argument, RowReply& row);

class SystemObject : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.brimfell.Verdin.System")
public:
    SystemObject(CoreApplication& application, QObject* parent);
public slots:
    void Execute(const QString& text);

private:
    CoreApplication& application_;
};

class PlayerObject : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.brimfell.Verdin.Player")
public:
    PlayerObject(CoreApplication& application, QObject* parent);
public slots:
    bool Command(uint id);
    verdin::RowReplies Rows();
    int CurrentRow();
    void PlayRow(int row);
    QString Status();
    QString Caption();
    QString PlayerStatus();
    uint Position();
    void SeekTo(uint milliseconds);
    void SeekBy(int milliseconds);
    uint Volume();
    void SetVolume(uint percent);
    QString FormatStatus(const QString& statusTemplate);
    void SavePlaylist(const QString& path);
    void Quit();

private:
    CoreApplication& application_;
};

}  // namespace verdin

Q_DECLARE_METATYPE(verdin::RowReply)
Q_DECLARE_METATYPE(verdin::RowReplies)
