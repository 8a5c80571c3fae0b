#include "AddCommands.h"

#include "base/DirectoryListing.h"
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/files/DirectoryScan.h"
#include "playlist/files/PlaylistLoader.h"
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/files/DroppedNames.h"
#include "shell/ui/files/FileDialogs.h"
#include "shell/ui/files/OpenFilters.h"

#include <QTimer>
#include <algorithm>

namespace verdin {

void AddCommands::KeepInitialDirectory(const std::string& directory) {
    if (directory != player_.GetSettings().initialDirectory)
        player_.ChangeSettings([&](Settings& settings) { settings.initialDirectory = directory; });
}

void AddCommands::OpenFiles() {
    std::string directory = player_.GetSettings().initialDirectory;
    std::vector<std::string> files =
        AskFiles(&owner_, "Open File(s)", OpenFileFilters(player_.Modules().FileTypeFilters()), directory);
    if (files.empty()) return;
    KeepInitialDirectory(directory);
    Open(files);
}

void AddCommands::OpenDirectory() {
    std::string directory = player_.GetSettings().initialDirectory;
    const std::optional<std::string> chosen = AskDirectory(&owner_, "Select directory to open", directory);
    if (!chosen) return;
    KeepInitialDirectory(directory);
    Open({*chosen});
}

void AddCommands::OpenUrl() {
    const std::optional<std::string> url = AskUrl(&owner_, "Open URL");
    if (url) Open({*url});
}

void AddCommands::AddFiles(int atRow) {
    std::string directory = player_.GetSettings().initialDirectory;
    std::vector<std::string> files =
        AskFiles(&owner_, "Add File(s)", OpenFileFilters(player_.Modules().FileTypeFilters()), directory);
    if (files.empty()) return;
    KeepInitialDirectory(directory);
    Add(files, atRow);
}

void AddCommands::AddDirectory(int atRow) {
    std::string directory = player_.GetSettings().initialDirectory;
    const std::optional<std::string> chosen = AskDirectory(&owner_, "Select directory to add", directory);
    if (!chosen) return;
    KeepInitialDirectory(directory);
    Add({*chosen}, atRow);
}

void AddCommands::AddUrl(int atRow) {
    const std::optional<std::string> url = AskUrl(&owner_, "Add URL");
    if (url) Add({*url}, atRow);
}

void AddCommands::SaveMainPlaylistAs() {
    std::string directory = player_.GetSettings().initialDirectory;
    const std::optional<PlaylistSaveChoice> choice = AskPlaylistFile(&owner_, directory);
    if (!choice) return;
    KeepInitialDirectory(directory);
    // The player says "Unable to save playlist" when the file cannot be written.
    player_.SavePlaylist(-1, choice->fileName, choice->format);
}

void AddCommands::Drop(const QList<QUrl>& urls) { DropNames(DroppedNames(urls)); }

void AddCommands::DropNames(const std::vector<std::string>& names) {
    player_.ClearReplacedByShell();
    Queue(names, true, -1, false);
}

AddCommands::AddCommands(Player& player, QWidget& dialogOwner) : player_(player), owner_(dialogOwner) {
    listener_ = player_.Listen([this](unsigned changes) {
        if (changes & kListReplaced && !pending_.empty()) {
            pending_.clear();
            ++generation_;
        }
    });
}

AddCommands::~AddCommands() {
    player_.StopListening(listener_);
    // The reading touches nothing of ours but its result; its message to sliceContext_
    // is dropped with it.
    if (reading_.valid()) reading_.wait();
}

void AddCommands::Open(const std::vector<std::string>& paths) {
    player_.ClearList();
    Queue(paths, false, -1, true);
}

void AddCommands::Add(const std::vector<std::string>& paths, int atRow) { Queue(paths, false, atRow, false); }

void AddCommands::Queue(const std::vector<std::string>& paths, bool dropped, int atRow, bool play) {
    Addition addition;
    for (const std::string& path : paths) addition.names.push_back({path, dropped});
    addition.atRow = atRow;
    addition.play = play;
    pending_.push_back(std::move(addition));
    if (pending_.size() == 1) RunSlice();
}

// An insertion goes on before the same entry: after what the earlier slices put there.
void AddCommands::AddToFront(const std::function<void(int atRow)>& add) {
    Addition& addition = pending_.front();
    const int before = player_.List().RowCount();
    add(addition.atRow < 0 ? -1 : addition.atRow + addition.rowsAdded);
    addition.rowsAdded += player_.List().RowCount() - before;
}

void AddCommands::RunSlice() {
    if (pending_.empty() || reading_.valid()) return;
    Addition& addition = pending_.front();
    std::vector<std::string> slice;
    std::string playlistFile;
    while (slice.size() < kSlice && !addition.names.empty() && playlistFile.empty()) {
        Name name = std::move(addition.names.front());
        addition.names.pop_front();
        std::string path = name.dropped ? ResolveDroppedName(name.path) : std::move(name.path);
        if (IsDirectory(path)) {
            // A directory's files take its place, ahead of the names after it.
            std::vector<std::string> files = ScanDirectory(path, player_.GetSettings().recursiveAddDirectory != 0,
                                                           player_.Modules().SupportedExtensions());
            for (auto file = files.rbegin(); file != files.rend(); ++file) addition.names.push_front({*file, false});
        } else if (IsPlaylistFileName(path)) {
            playlistFile = std::move(path);
        } else {
            slice.push_back(std::move(path));
        }
    }
    if (!slice.empty()) AddToFront([&](int atRow) { player_.AddPaths(slice, atRow); });
    if (!playlistFile.empty()) {
        StartReading(playlistFile);
        return;
    }
    if (!addition.names.empty()) {
        QTimer::singleShot(0, &sliceContext_, [this] { RunSlice(); });
        return;
    }
    const bool play = addition.play;
    pending_.pop_front();
    if (play) player_.Execute(Action::kPlay);
    if (!pending_.empty()) QTimer::singleShot(0, &sliceContext_, [this] { RunSlice(); });
    else if (idle_) idle_();
}

// Only the file system and the new playlist are touched on the worker: no information
// is read, so no input module is asked.
void AddCommands::StartReading(const std::string& playlistFile) {
    reading_ = std::async(std::launch::async, [this, playlistFile, generation = generation_,
                                              &modules = player_.Modules()] {
        Settings noRetrieval;
        noRetrieval.skipInfoForAnyFile = 1;
        auto loaded = std::make_unique<Playlist>();
        LoadItem(*loaded, playlistFile, LoadContext{noRetrieval, modules});
        QMetaObject::invokeMethod(&sliceContext_, [this, generation] { ReadingDone(generation); }, Qt::QueuedConnection);
        return loaded;
    });
}

void AddCommands::ReadingDone(unsigned generation) {
    std::unique_ptr<Playlist> loaded = reading_.get();
    // Additions dropped meanwhile (the list was replaced) take what was read with them.
    if (generation == generation_) AddToFront([&](int atRow) { player_.AddLoaded(*loaded, atRow); });
    RunSlice();
}

}  // namespace verdin
