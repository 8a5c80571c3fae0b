#pragma once
// The file and folder choosers of the dialogs, with the titles the player gives them
// ("Save Attachment As", "Import Equalizer Preset", "Select path to insert"...). Each
// returns the chosen path, or an empty text when the user cancelled.
//
// Filters are written the player's way, "description|patterns|..." ("Equalizer
// preset|*.eq|All files|*.*|"), and shown as Qt writes them.
#include <QString>

class QWidget;

namespace verdin {

// "Equalizer preset|*.eq|All files|*.*|" -> "Equalizer preset (*.eq);;All files (*)".
QString QtFileFilter(const QString& playerFilter);

QString ChooseFileToOpen(QWidget* parent, const QString& title, const QString& playerFilter,
                         const QString& directory = {});
// confirmOverwrite false: writing into an existing file is what the caller means to do
// (an export that adds a section), so no question is asked.
QString ChooseFileToSave(QWidget* parent, const QString& title, const QString& playerFilter,
                         const QString& suggested, bool confirmOverwrite);
QString ChooseDirectory(QWidget* parent, const QString& title, const QString& start = {});

}  // namespace verdin
