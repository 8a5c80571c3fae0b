#include "shell/ui/dialogs/properties/PropertiesFlow.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "shell/Player.h"
#include "shell/ui/MessageBoxes.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/common/KeptRow.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

namespace verdin {

bool PrepareTrackForProperties(QWidget* parent, Player& player, const KeptRow& kept, const TrackRecord& track) {
    if (!track.InfoRetrieved()) {
        if (!AskYesNoBox(parent, kRetrieveQuestion, MessageIcon::kQuestion) || kept.Row() < 0) return false;
        player.RereadTrack(kept.Row());
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
    KeptRow kept(player, row);
    if (!PrepareTrackForProperties(parent, player, kept, track)) return;
    TrackPropertiesDialog dialog(parent, player, kept, track);
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
    const KeptRow kept(player, row);
    const std::optional<std::string> expression =
        AskRandomExpression(parent, player, static_cast<const RandomEntry*>(ref.item)->Expression());
    if (expression && kept.Row() >= 0) player.SetRandomExpression(kept.Row(), *expression);
}

void ShowEvaluatedTrackProperties(QWidget* parent, Player& player, int row) {
    const ConstRowRef ref = player.List().ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kRandomEntry) return;
    const TrackRecord* track = EvaluatedTrackOf(parent, *static_cast<const RandomEntry*>(ref.item));
    if (!track) return;
    KeptRow kept(player, row, track);
    if (!PrepareTrackForProperties(parent, player, kept, *track)) return;
    TrackPropertiesDialog dialog(parent, player, kept, *track);
    dialog.exec();
}

}  // namespace verdin
