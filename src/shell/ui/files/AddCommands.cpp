#include "AddCommands.h"

#include "base/DirectoryListing.h"
#include "settings/store/SettingsStore.h"
#include "shell/DirectoryScan.h"
#include "shell/PlayerCore.h"
#include "shell/ui/files/DroppedNames.h"
#include "shell/ui/files/FileDialogs.h"
#include "shell/ui/files/OpenFilters.h"

#include <QTimer>
#include <algorithm>

namespace verdin {

void AddCommands::OpenFiles() {
    std::vector<std::string> files = AskFiles(&owner_, "Open File(s)", OpenFileFilters(core_.Modules().FileTypeFilters()),
                                              core_.GetSettings().initialDirectory);
    if (files.empty()) return;
    SaveInitialDirectory();
    Open(files);
}

void AddCommands::OpenDirectory() {
    const std::optional<std::string> directory =
        AskDirectory(&owner_, "Select directory to open", core_.GetSettings().initialDirectory);
    if (!directory) return;
    SaveInitialDirectory();
    Open({*directory});
}

void AddCommands::OpenUrl() {
    const std::optional<std::string> url = AskUrl(&owner_, "Open URL");
    if (url) Open({*url});
}

void AddCommands::AddFiles(int atRow) {
    std::vector<std::string> files = AskFiles(&owner_, "Add File(s)", OpenFileFilters(core_.Modules().FileTypeFilters()),
                                              core_.GetSettings().initialDirectory);
    if (files.empty()) return;
    SaveInitialDirectory();
    Add(files, atRow);
}

void AddCommands::AddDirectory(int atRow) {
    const std::optional<std::string> directory =
        AskDirectory(&owner_, "Select directory to add", core_.GetSettings().initialDirectory);
    if (!directory) return;
    SaveInitialDirectory();
    Add({*directory}, atRow);
}

void AddCommands::AddUrl(int atRow) {
    const std::optional<std::string> url = AskUrl(&owner_, "Add URL");
    if (url) Add({*url}, atRow);
}

void AddCommands::SaveMainPlaylistAs() {
    const std::optional<PlaylistSaveChoice> choice = AskPlaylistFile(&owner_, core_.GetSettings().initialDirectory);
    if (!choice) return;
    SaveInitialDirectory();
    // The core says "Unable to save playlist" when the file cannot be written.
    core_.SaveMainPlaylistAs(choice->fileName, choice->format);
}

void AddCommands::Drop(const QList<QUrl>& urls) { DropNames(DroppedNames(urls)); }

void AddCommands::DropNames(const std::vector<std::string>& names) {
    core_.ClearReplacedByShell();
    Queue(names, true, -1, core_.MainPlaylist().PlayableCount() == 0, false);
}

AddCommands::~AddCommands() = default;

void AddCommands::Open(const std::vector<std::string>& paths) {
    core_.Stop();
    core_.MainPlaylist().Clear();
    core_.SetCurrentRow(0);
    core_.ListChanged();
    Queue(paths, false, -1, true, true);
}

void AddCommands::Add(const std::vector<std::string>& paths, int atRow) {
    Queue(paths, false, atRow, core_.MainPlaylist().PlayableCount() == 0, false);
}

void AddCommands::Queue(const std::vector<std::string>& paths, bool dropped, int atRow, bool wasEmpty, bool play) {
    Addition addition;
    for (const std::string& path : paths) addition.names.push_back({path, dropped});
    addition.atRow = atRow;
    addition.wasEmpty = wasEmpty;
    addition.play = play;
    pending_.push_back(std::move(addition));
    if (pending_.size() == 1) RunSlice();
}

void AddCommands::RunSlice() {
    if (pending_.empty()) return;
    Addition& addition = pending_.front();
    std::vector<std::string> slice;
    while (slice.size() < kSlice && !addition.names.empty()) {
        Name name = std::move(addition.names.front());
        addition.names.pop_front();
        const std::string path = name.dropped ? ResolveDroppedName(name.path) : std::move(name.path);
        if (!IsDirectory(path)) {
            slice.push_back(path);
            continue;
        }
        // A directory's files take its place, ahead of the names after it.
        std::vector<std::string> files = ScanDirectory(path, core_.GetSettings().recursiveAddDirectory != 0,
                                                       core_.Modules().SupportedExtensions());
        for (auto file = files.rbegin(); file != files.rend(); ++file) addition.names.push_front({*file, false});
    }
    // An insertion goes on before the same entry: after what the earlier slices put there.
    const int before = core_.MainPlaylist().RowCount();
    if (!slice.empty()) core_.AddPaths(slice, addition.atRow < 0 ? -1 : addition.atRow + addition.rowsAdded);
    addition.rowsAdded += core_.MainPlaylist().RowCount() - before;
    if (!addition.names.empty()) {
        QTimer::singleShot(0, &sliceContext_, [this] { RunSlice(); });
        return;
    }
    const Addition done = std::move(addition);
    pending_.pop_front();
    core_.CommitAdditions(done.wasEmpty);
    if (done.play) core_.Play();
    if (!pending_.empty()) QTimer::singleShot(0, &sliceContext_, [this] { RunSlice(); });
}

void AddCommands::SaveInitialDirectory() { SaveUserSettings(core_.GetSettings(), core_.Environment()); }

}  // namespace verdin
