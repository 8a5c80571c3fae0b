#include "SettingsStore.h"

#include "base/Locations.h"

#include <QByteArray>
#include <QStandardPaths>
#include <QString>
#include <QVariant>

namespace verdin {

std::optional<std::string> QSettingsStorage::Read(const std::string& name) {
    const QVariant value = settings_.value(QString::fromStdString(name));
    if (!value.isValid()) return std::nullopt;
    if (value.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = value.toByteArray();
        return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
    }
    // A text, or something typed into the file by hand: its text. A number typed by hand
    // ("loopMode=1") is thereby one byte long and fails the size rule, as it should.
    const QByteArray utf8 = value.toString().toUtf8();
    return std::string(utf8.constData(), static_cast<size_t>(utf8.size()));
}

void QSettingsStorage::WriteText(const std::string& name, const std::string& text) {
    settings_.setValue(QString::fromStdString(name), QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void QSettingsStorage::WriteBinary(const std::string& name, const std::string& bytes) {
    settings_.setValue(QString::fromStdString(name), QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

bool QSettingsStorage::Commit() {
    settings_.sync();
    return settings_.status() == QSettings::NoError;
}

std::unique_ptr<QSettings> OpenUserSettingsStore() {
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QStringLiteral("Brimfell"), QStringLiteral("Verdin"));
}

SettingsEnvironment CurrentSettingsEnvironment() {
    SettingsEnvironment env;
    env.programDirectory = ProgramDirectory();
    env.userDirectory = UserDirectory();
    env.currentDirectory = CurrentDirectory();
    env.musicDirectory = QStandardPaths::writableLocation(QStandardPaths::MusicLocation).toStdString();
    return env;
}

void LoadUserSettings(Settings& settings, const SettingsEnvironment& environment) {
    auto store = OpenUserSettingsStore();
    QSettingsStorage storage(*store);
    LoadSettings(settings, storage, environment);
}

bool SaveUserSettings(const Settings& settings, const SettingsEnvironment& environment) {
    auto store = OpenUserSettingsStore();
    QSettingsStorage storage(*store);
    return SaveSettings(settings, storage, environment);
}

}  // namespace verdin
