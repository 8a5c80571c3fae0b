#pragma once
// SIGINT, SIGTERM and SIGHUP (the end of a session) turned into a Qt signal on the main
// thread, so they run the same orderly teardown as a quit: the handler only writes a
// byte to a socket that the event loop watches.
#include <QObject>

class QSocketNotifier;

namespace verdin {

class SignalWatcher : public QObject {
    Q_OBJECT
public:
    explicit SignalWatcher(QObject* parent);
    ~SignalWatcher() override;

signals:
    void TerminationRequested();

private:
    void Drain();
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace verdin
