#include "shell/ui/dialogs/properties/PropertiesFlow.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "shell/PlayerCore.h"
#include "shell/ui/dialogs/Dialogs.h"
#include "shell/ui/dialogs/properties/RandomEntryDialog.h"
#include "shell/ui/dialogs/properties/TrackPropertiesDialog.h"

namespace verdin {

bool PrepareTrackForProperties(PlayerCore& core, TrackRecord& track) {
    PlayerHost& host = core.Host();
    if (!track.InfoRetrieved()) {
        if (!host.AskYesNo(kRetrieveQuestion, MessageIcon::kQuestion)) return false;
        track.RetrieveInformation(core.Modules(), core.GetSettings().ignoreID3Tags != 0);
        host.Refresh(true);
    }
    if (!track.Exists()) {
        host.ShowMessage(kUnknownFileFormat, MessageIcon::kError);
        return false;
    }
    return true;
}

TrackRecord* EvaluatedTrackOf(PlayerCore& core, const RandomEntry& entry) {
    if (!entry.Picked()) {
        core.Host().ShowMessage(kNotEvaluated, MessageIcon::kInformation);
        return nullptr;
    }
    TrackRecord* track = entry.PickedTrack();
    if (!track || track->IsNullTrack()) {
        core.Host().ShowMessage(kNothingMatches, MessageIcon::kInformation);
        return nullptr;
    }
    return track;
}

void ShowTrackProperties(QWidget* parent, PlayerCore& core, int row) {
    const RowRef ref = core.MainPlaylist().ItemAtRow(row);
    if (!ref) return;
    if (ref.item->Kind() == ItemKind::kRandomEntry) {
        EditRandomEntry(parent, core, *static_cast<RandomEntry*>(ref.item));
        return;
    }
    if (ref.item->Kind() != ItemKind::kTrack) return;
    TrackRecord& track = static_cast<TrackItem*>(ref.item)->Track();
    if (!PrepareTrackForProperties(core, track)) return;
    TrackPropertiesDialog dialog(parent, core, track);
    dialog.exec();
}

bool EditRandomEntry(QWidget* parent, PlayerCore& core, RandomEntry& entry) {
    RandomEntryDialog dialog(parent, core, entry.Expression());
    if (dialog.exec() != QDialog::Accepted) return false;
    const std::string expression = dialog.Expression();
    if (expression == entry.Expression()) return false;
    entry.SetExpression(expression);
    core.Host().Refresh(true);
    return true;
}

void ShowEvaluatedTrackProperties(QWidget* parent, PlayerCore& core, int row) {
    const RowRef ref = core.MainPlaylist().ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kRandomEntry) return;
    TrackRecord* track = EvaluatedTrackOf(core, *static_cast<const RandomEntry*>(ref.item));
    if (!track || !PrepareTrackForProperties(core, *track)) return;
    TrackPropertiesDialog dialog(parent, core, *track);
    dialog.exec();
}

}  // namespace verdin
