#include "shell/ui/dialogs/properties/PropertiesFlow.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "shell/Player.h"
#include "shell/ui/MessageBoxes.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

namespace verdin {

bool PrepareTrackForProperties(QWidget* parent, Player& player, int row, const TrackRecord& track) {
    if (!track.InfoRetrieved()) {
        if (!AskYesNoBox(parent, kRetrieveQuestion, MessageIcon::kQuestion)) return false;
        player.RereadTrack(row);
    }
    if (!track.Exists()) {
        ShowMessageBox(parent, kUnknownFileFormat, MessageIcon::kError);
        return false;
    }
    return true;
}

const TrackRecord* EvaluatedTrackOf(QWidget* parent, const RandomEntry& entry) {
    if (!entry.Picked()) {
        ShowMessageBox(parent, kNotEvaluated, MessageIcon::kInformation);
        return nullptr;
    }
    const TrackRecord* track = entry.PickedTrack();
    if (!track || track->IsNullTrack()) {
        ShowMessageBox(parent, kNothingMatches, MessageIcon::kInformation);
        return nullptr;
    }
    return track;
}

void ShowTrackProperties(QWidget* parent, Player& player, int row) {
    const ConstRowRef ref = player.List().ItemAtRow(row);
    if (!ref) return;
    if (ref.item->Kind() == ItemKind::kRandomEntry) {
        EditRandomEntry(parent, player, row);
        return;
    }
    if (ref.item->Kind() != ItemKind::kTrack) return;
    const TrackRecord& track = static_cast<const TrackItem*>(ref.item)->Track();
    if (!PrepareTrackForProperties(parent, player, row, track)) return;
    TrackPropertiesDialog dialog(parent, player, row, track);
    dialog.exec();
}

std::optional<std::string> AskRandomExpression(QWidget* parent, const Player& player, std::string_view expression) {
    RandomEntryDialog dialog(parent, player, std::string(expression));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.Expression();
}

void EditRandomEntry(QWidget* parent, Player& player, int row) {
    const ConstRowRef ref = player.List().ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kRandomEntry) return;
    const std::optional<std::string> expression =
        AskRandomExpression(parent, player, static_cast<const RandomEntry*>(ref.item)->Expression());
    if (expression) player.SetRandomExpression(row, *expression);
}

void ShowEvaluatedTrackProperties(QWidget* parent, Player& player, int row) {
    const ConstRowRef ref = player.List().ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kRandomEntry) return;
    const TrackRecord* track = EvaluatedTrackOf(parent, *static_cast<const RandomEntry*>(ref.item));
    if (!track || !PrepareTrackForProperties(parent, player, row, *track)) return;
    TrackPropertiesDialog dialog(parent, player, row, *track);
    dialog.exec();
}

}  // namespace verdin
