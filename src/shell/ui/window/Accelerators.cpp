#include "Accelerators.h"

#include <QAction>
#include <QWidget>

namespace verdin {

QList<QKeySequence> KeySequences(std::string_view key) {
    const QString text = QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
    QList<QKeySequence> sequences{QKeySequence::fromString(text, QKeySequence::PortableText)};
    if (text.endsWith(QLatin1String("Return"))) {
        QString keypad = text;
        keypad.replace(QLatin1String("Return"), QLatin1String("Enter"));
        sequences.push_back(QKeySequence::fromString(keypad, QKeySequence::PortableText));
    }
    return sequences;
}

int InstallAccelerators(QWidget& window, const std::function<void(Action)>& run) {
    int installed = 0;
    for (const CommandEntry& entry : CommandTable()) {
        if (entry.key.empty()) continue;
        auto* action = new QAction(&window);
        action->setShortcuts(KeySequences(entry.key));
        action->setShortcutContext(Qt::WindowShortcut);
        action->setObjectName(QString::fromLatin1(entry.key.data(), static_cast<qsizetype>(entry.key.size())));
        const Action what = entry.action;
        QObject::connect(action, &QAction::triggered, &window, [run, what] { run(what); });
        window.addAction(action);
        ++installed;
    }
    return installed;
}

}  // namespace verdin
