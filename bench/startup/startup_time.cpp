// How long the player takes from its start until it answers on D-Bus: headless, and with
// its window (the window is shown before the player answers), with or without a playlist
// to load (the player loads its saved list before it answers). Runs the program several
// times in private directories on the session bus it is given and prints the median.
//
//   bench_startup <verdin program> [runs] [--window] [--list playlist.vdp]
//     --list  start with this playlist as the saved one (default.vdp of the private home)
// Run it inside `dbus-run-session` (and `xvfb-run -a` for --window).
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

bool Answers(QDBusConnection& bus) {
    const QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.brimfell.Verdin"), QStringLiteral("/Player"), QStringLiteral("org.brimfell.Verdin.Player"),
        QStringLiteral("PlayerStatus"));
    return bus.call(call, QDBus::Block, 1000).type() == QDBusMessage::ReplyMessage;
}

void Quit(QDBusConnection& bus) {
    bus.call(QDBusMessage::createMethodCall(QStringLiteral("org.brimfell.Verdin"), QStringLiteral("/Player"),
                                            QStringLiteral("org.brimfell.Verdin.Player"), QStringLiteral("Quit")),
             QDBus::Block, 5000);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_startup <verdin> [runs] [--window] [--list playlist.vdp]\n");
        return 2;
    }
    const QString program = QString::fromLocal8Bit(argv[1]);
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 9;
    bool window = false;
    QString list;
    for (int i = 3; i < argc; ++i) {
        const QString word = QString::fromLocal8Bit(argv[i]);
        if (word == QStringLiteral("--window")) window = true;
        else if (word == QStringLiteral("--list") && i + 1 < argc) list = QString::fromLocal8Bit(argv[++i]);
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        std::fprintf(stderr, "no session bus: run inside dbus-run-session\n");
        return 2;
    }
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QTemporaryDir home;
        QProcess player;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
        player.setProcessEnvironment(environment);
        const QString userDirectory = home.filePath(QStringLiteral("data/Brimfell/Verdin"));
        if (!list.isEmpty() && !(QDir().mkpath(userDirectory) &&
                                 QFile::copy(list, userDirectory + QStringLiteral("/default.vdp")))) {
            std::fprintf(stderr, "cannot copy %s into the private home\n", qPrintable(list));
            return 1;
        }
        player.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QElapsedTimer clock;
        clock.start();
        player.start(program, window ? QStringList{} : QStringList{QStringLiteral("--headless")});
        if (!player.waitForStarted(5000)) return 1;
        while (!Answers(bus)) {
            if (clock.elapsed() > 20000) {
                std::fprintf(stderr, "the player did not answer\n");
                return 1;
            }
        }
        times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        Quit(bus);
        player.waitForFinished(10000);
    }
    std::sort(times.begin(), times.end());
    std::printf("%s%s: answers D-Bus after %.1f ms (median of %d; best %.1f, worst %.1f) — target %s\n",
                window ? "with window" : "headless", list.isEmpty() ? "" : " and the list", times[times.size() / 2],
                runs, times.front(), times.back(),
                !window ? "<= 8 ms" : list.isEmpty() ? "window shown <= 100 ms" : "<= 150 ms");
    return 0;
}
