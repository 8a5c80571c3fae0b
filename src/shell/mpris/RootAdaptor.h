#pragma once
// org.mpris.MediaPlayer2: who the player is and what it opens (the file types of the
// loaded input modules, as MIME types), raising its window and quitting.
#include <QDBusAbstractAdaptor>
#include <QStringList>

namespace verdin {

class MprisObject;

class RootAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ CanQuit)
    Q_PROPERTY(bool CanRaise READ CanRaise)
    Q_PROPERTY(bool HasTrackList READ HasTrackList)
    Q_PROPERTY(QString Identity READ Identity)
    Q_PROPERTY(QString DesktopEntry READ DesktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ SupportedUriSchemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ SupportedMimeTypes)
public:
    explicit RootAdaptor(MprisObject& object);

    bool CanQuit() const { return true; }
    bool CanRaise() const;
    bool HasTrackList() const { return true; }
    QString Identity() const { return QStringLiteral("Verdin"); }
    QString DesktopEntry() const { return QStringLiteral("verdin"); }
    // Only local files: no input module shipped with the player opens URLs.
    QStringList SupportedUriSchemes() const { return {QStringLiteral("file")}; }
    QStringList SupportedMimeTypes() const;

public slots:
    void Raise();
    void Quit();

private:
    MprisObject& object_;
};

}  // namespace verdin
