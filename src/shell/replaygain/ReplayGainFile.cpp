#include "shell/replaygain/ReplayGainFile.h"

#include <QFileInfo>
#include <QSettings>

#include <array>
#include <optional>

namespace verdin {

namespace {

constexpr std::array<const char*, 3> kModeNames = {"off", "track", "album"};

// A value of the group, or nothing when it is absent; `bad` collects the keys whose value
// is there but unusable.
class GroupReader {
public:
    explicit GroupReader(QSettings& file) : file_(file) {}

    std::optional<QString> Text(const char* key) {
        const QVariant value = file_.value(QStringLiteral("ReplayGain/") + key);
        if (!value.isValid()) return std::nullopt;
        return value.toString().trimmed().toLower();
    }
    void Reject(const char* key) { bad_ += (bad_.isEmpty() ? "" : ", ") + QString(key); }
    const QString& Rejected() const { return bad_; }

private:
    QSettings& file_;
    QString bad_;
};

void ReadMode(GroupReader& reader, ReplayGainSettings& settings) {
    const auto text = reader.Text("Mode");
    if (!text) return;
    for (size_t i = 0; i < kModeNames.size(); ++i)
        if (*text == kModeNames[i]) return void(settings.mode = static_cast<ReplayGainMode>(i));
    reader.Reject("Mode");
}

void ReadDb(GroupReader& reader, const char* key, double& db) {
    const auto text = reader.Text(key);
    if (!text) return;
    bool ok = false;
    const double value = text->toDouble(&ok);
    if (ok && value >= ReplayGainSettings::kMinDb && value <= ReplayGainSettings::kMaxDb) db = value;
    else reader.Reject(key);
}

void ReadSwitch(GroupReader& reader, const char* key, bool& on) {
    const auto text = reader.Text(key);
    if (!text) return;
    if (*text == "true" || *text == "false") on = *text == "true";
    else reader.Reject(key);
}

}  // namespace

std::string ReplayGainFilePath(const std::string& userDirectory) {
    return userDirectory + "/ReplayGain.ini";
}

ReplayGainLoad LoadReplayGainSettings(const std::string& userDirectory) {
    ReplayGainLoad load;
    const QString path = QString::fromStdString(ReplayGainFilePath(userDirectory));
    QSettings file(path, QSettings::IniFormat);
    // A file with bytes but no key of the group is not one of these settings (QSettings
    // skips what it cannot parse without saying so).
    const bool noKeys = !file.childGroups().contains(QStringLiteral("ReplayGain")) && QFileInfo(path).size() > 0;
    if (file.status() != QSettings::NoError || noKeys) {
        load.problem = "The ReplayGain settings in " + path.toStdString() + " cannot be read; ReplayGain is off.";
        return load;
    }
    GroupReader reader(file);
    ReadMode(reader, load.settings);
    ReadDb(reader, "PreAmp", load.settings.preAmpDb);
    ReadDb(reader, "UntaggedGain", load.settings.untaggedGainDb);
    ReadSwitch(reader, "PreventClipping", load.settings.preventClipping);
    if (!reader.Rejected().isEmpty())
        load.problem = "Invalid ReplayGain settings in " + path.toStdString() + " (" + reader.Rejected().toStdString() +
                       "); the defaults are used for them.";
    return load;
}

bool SaveReplayGainSettings(const ReplayGainSettings& settings, const std::string& userDirectory) {
    QSettings file(QString::fromStdString(ReplayGainFilePath(userDirectory)), QSettings::IniFormat);
    file.beginGroup(QStringLiteral("ReplayGain"));
    file.setValue(QStringLiteral("Mode"), QString(kModeNames[static_cast<size_t>(settings.mode)]));
    file.setValue(QStringLiteral("PreAmp"), QString::number(settings.preAmpDb));
    file.setValue(QStringLiteral("UntaggedGain"), QString::number(settings.untaggedGainDb));
    file.setValue(QStringLiteral("PreventClipping"), QString(settings.preventClipping ? "true" : "false"));
    file.endGroup();
    file.sync();
    return file.status() == QSettings::NoError;
}

}  // namespace verdin
