#include "RootAdaptor.h"

#include "engine/input/InputModuleList.h"
#include "shell/Player.h"
#include "shell/mpris/MprisObject.h"

#include <QMimeDatabase>

namespace verdin {

RootAdaptor::RootAdaptor(MprisObject& object) : QDBusAbstractAdaptor(&object), object_(object) {}

bool RootAdaptor::CanRaise() const { return object_.Hooks().canRaise; }

QStringList RootAdaptor::SupportedMimeTypes() const {
    const std::string extensions = object_.Ready().Modules().SupportedExtensions();
    const QMimeDatabase database;
    QStringList types;
    for (const QString& extension : QString::fromStdString(extensions).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        for (const QMimeType& type : database.mimeTypesForFileName(QStringLiteral("x") + extension))
            if (!types.contains(type.name())) types << type.name();
    }
    return types;
}

void RootAdaptor::Raise() {
    if (object_.Hooks().raise) object_.Hooks().raise();
}

void RootAdaptor::Quit() {
    if (object_.Hooks().quit) object_.Hooks().quit();
}

}  // namespace verdin
