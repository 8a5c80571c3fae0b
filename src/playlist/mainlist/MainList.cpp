#include "MainList.h"

#include "base/DirectoryListing.h"
#include "engine/input/InputModuleList.h"
#include "playlist/RandomEntry.h"
#include "playlist/RandomEntryWalk.h"
#include "playlist/RowMove.h"
#include "playlist/TrackItem.h"
#include "playlist/files/DirectoryScan.h"
#include "playlist/files/PlaylistFormat.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/PlaylistWriter.h"
#include "playlist/files/RetrievalRule.h"
#include "settings/Settings.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace verdin {

MainList::MainList(const Settings& settings, const InputModuleList& modules) : settings_(settings), modules_(modules) {}

MainList::~MainList() = default;

bool MainList::Shuffle() const { return settings_.shuffleMode != 0; }

PlayOrder& MainList::Order() {
    if (orderStale_) {
        order_.Rebuild(tree_);
        order_.SetCursorToRow(currentRow_);
        orderStale_ = false;
    }
    return order_;
}

const std::vector<int>& MainList::ShuffledRows() { return Order().Rows(); }

void MainList::Announce(const ListChange& change) {
    // By index: a listener may add another one.
    for (size_t i = 0; i < listeners_.size(); ++i) listeners_[i](change);
}

// Finds the current entry again after an edit. An edit that frees the current entry
// forgets it first, so currentItem_ never names a freed entry here.
void MainList::FollowCurrentItem() {
    const int row = RowOfItem(tree_, currentItem_);
    if (row >= 0) {
        currentRow_ = row;
        return;
    }
    // The current entry was a playlist that was dissolved: the row stays where it was,
    // within the list.
    currentRow_ = std::max(0, std::min(currentRow_, tree_.RowCount() - 1));
    currentItem_ = ItemAt(currentRow_);
    currentGone_ = false;
}

void MainList::Edited(ListChange change, bool wasEmpty) {
    if (change.rows) orderStale_ = true;
    if (wasEmpty && tree_.PlayableCount() > 0) {
        currentRow_ = Shuffle() ? Order().First() : 0;
        currentItem_ = ItemAt(currentRow_);
        currentGone_ = false;
        change.current = true;
    }
    Announce(change);
}

void MainList::LoadFile(const std::string& fileName, int current) {
    tree_.Clear();
    deferred_.clear();
    // With retrieval deferred, a long saved list shows at once and its tracks are read
    // in the background, as added tracks are.
    const Settings loading = LoadingSettings();
    LoadPlaylistEntries(tree_, fileName, LoadContext{loading, modules_});
    NoteDeferred(tree_);
    tree_.SetFileName(fileName);
    tree_.SetModified(false);
    currentRow_ = current >= 0 && current < tree_.RowCount() ? current : 0;
    currentItem_ = ItemAt(currentRow_);
    currentGone_ = false;
    Edited({.rows = true, .current = true, .cleared = true}, false);
}

void MainList::Clear() {
    tree_.Clear();
    deferred_.clear();
    currentRow_ = 0;
    currentItem_ = nullptr;
    currentGone_ = false;
    Edited({.rows = true, .current = true, .cleared = true}, false);
}

void MainList::Load(Playlist& into, const std::vector<std::string>& paths) {
    const Settings loading = LoadingSettings();
    const LoadContext context{loading, modules_};
    for (const std::string& path : paths) {
        if (!IsDirectory(path)) {
            LoadItem(into, path, context);
            continue;
        }
        for (const std::string& file :
             ScanDirectory(path, settings_.recursiveAddDirectory != 0, modules_.SupportedExtensions()))
            LoadItem(into, file, context);
    }
}

// Deferred: loaded as if every retrieval were switched off, then listed (NoteDeferred).
Settings MainList::LoadingSettings() const {
    Settings loading = settings_;
    if (deferRetrieval_) loading.skipInfoForAnyFile = 1;
    return loading;
}

// Loaded into a scratch playlist first, then moved before the row, in order.
int MainList::Add(const std::vector<std::string>& paths, int atRow) {
    Playlist loaded;
    Load(loaded, paths);
    return AddLoaded(loaded, atRow);
}

int MainList::AddLoaded(Playlist& loaded, int atRow) {
    const int added = static_cast<int>(loaded.ItemCount());
    if (added == 0) return 0;
    for (size_t i = 0; i < loaded.ItemCount(); ++i) NoteDeferred(*loaded.ItemAt(i));
    const bool wasEmpty = tree_.PlayableCount() == 0;
    const int rowsBefore = tree_.RowCount();
    int insertedAt = rowsBefore;
    if (const RowRef ref = tree_.ItemAtRow(atRow)) {
        insertedAt = atRow;
        ref.holder->InsertItems(ref.index, loaded.TakeAllItems());
    } else {
        tree_.InsertItems(tree_.ItemCount(), loaded.TakeAllItems());
    }
    if (currentItem_ && currentRow_ >= insertedAt) currentRow_ += tree_.RowCount() - rowsBefore;
    if (!currentItem_) currentItem_ = ItemAt(currentRow_);
    Edited({.rows = true}, wasEmpty);
    return added;
}

void MainList::Insert(int atRow, std::unique_ptr<PlaylistItem> item) {
    if (!item) return;
    const bool wasEmpty = tree_.PlayableCount() == 0;
    InsertItemAtRow(tree_, atRow, std::move(item));
    FollowCurrentItem();
    Edited({.rows = true}, wasEmpty);
}

void MainList::AddNewPlaylist(int atRow, std::string_view fileName) {
    const bool wasEmpty = tree_.PlayableCount() == 0;
    verdin::AddNewPlaylist(tree_, atRow, fileName);
    FollowCurrentItem();
    Edited({.rows = true}, wasEmpty);
}

void MainList::Delete(const std::vector<int>& rows) {
    // The rows that go, as ranges: a deleted playlist takes the rows of its items along.
    std::vector<int> sorted = rows;
    std::sort(sorted.begin(), sorted.end());
    std::vector<std::pair<int, int>> ranges;  // first row, row count
    for (int row : sorted) {
        if (!ranges.empty() && row < ranges.back().first + ranges.back().second) continue;
        const RowRef ref = tree_.ItemAtRow(row);
        if (!ref) continue;
        const int count = 1 + (ref.item->Kind() == ItemKind::kPlaylist ? static_cast<Playlist*>(ref.item)->RowCount() : 0);
        ranges.emplace_back(row, count);
    }
    if (ranges.empty()) return;
    // Where the current row ends up: moved up by the rows deleted before it, or, when its
    // entry goes, onto the entry that followed it.
    int removedBefore = 0;
    int takenOver = -1;
    for (const auto& [first, count] : ranges) {
        if (first + count <= currentRow_) {
            removedBefore += count;
        } else {
            if (first <= currentRow_) takenOver = first - removedBefore;
            break;
        }
    }
    bool gone = takenOver >= 0;
    currentRow_ = gone ? takenOver : currentRow_ - removedBefore;
    verdin::DeleteRows(tree_, sorted);
    // The pass through the shuffled order goes on without the deleted rows.
    if (!orderStale_)
        for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) order_.RowsRemoved(range->first, range->second);
    const int count = tree_.RowCount();
    if (currentRow_ >= count) {
        // Nothing followed the current entry: moving on passes the end of the list.
        currentRow_ = std::max(0, count - 1);
        gone = false;
    }
    currentItem_ = ItemAt(currentRow_);
    currentGone_ = gone && currentItem_;
    Announce({.rows = true, .current = true});
}

void MainList::Move(const std::vector<int>& rows, int beforeRow) {
    if (MoveRows(tree_, rows, beforeRow) < 0) return;
    FollowCurrentItem();
    Edited({.rows = true, .current = true}, false);
}

void MainList::Incorporate(const std::vector<int>& rows, std::string_view fileName) {
    if (IncorporateIntoNewPlaylist(tree_, rows, fileName) < 0) return;
    FollowCurrentItem();
    Edited({.rows = true, .current = true}, false);
}

void MainList::DropPlaylist(int row) {
    // The dropped playlist itself goes: when it is the current entry, the row stays.
    const PlaylistItem* current = currentItem_;
    if (row == currentRow_) currentItem_ = nullptr;
    if (!verdin::DropPlaylist(tree_, row)) {
        currentItem_ = current;
        return;
    }
    FollowCurrentItem();
    Edited({.rows = true, .current = true}, false);
}

void MainList::Flatten() {
    // Every nested playlist goes: when one is the current entry, the row stays.
    if (currentItem_ && currentItem_->Kind() == ItemKind::kPlaylist) currentItem_ = nullptr;
    FlattenMainPlaylist(tree_);
    FollowCurrentItem();
    Edited({.rows = true, .current = true}, false);
}

void MainList::Sort(const SortKey& key) {
    SortPlaylist(tree_, key);
    FollowCurrentItem();
    Edited({.rows = true, .current = true}, false);
}

bool MainList::SetExpression(int row, std::string_view expression) {
    const RowRef ref = tree_.ItemAtRow(row);
    if (!ref || ref.item->Kind() != ItemKind::kRandomEntry) return false;
    auto& entry = static_cast<RandomEntry&>(*ref.item);
    if (entry.Expression() == expression) return false;
    entry.SetExpression(expression);
    if (ref.holder != &tree_) ref.holder->SetModified(true);
    Announce({.texts = true, .current = row == currentRow_});
    return true;
}

bool MainList::Save(int row, const std::string& fileName, int format) {
    Playlist* playlist = &tree_;
    if (row >= 0) {
        const RowRef ref = tree_.ItemAtRow(row);
        if (!ref || ref.item->Kind() != ItemKind::kPlaylist) return false;
        playlist = static_cast<Playlist*>(ref.item);
    }
    const bool saved = SavePlaylist(*playlist, fileName, static_cast<PlaylistFormat>(format));
    // A saved playlist shows its new name and no longer the mark of unsaved changes.
    Announce({.texts = true});
    return saved;
}

void MainList::NoteDeferred(const PlaylistItem& item) {
    if (!deferRetrieval_) return;
    if (item.Kind() == ItemKind::kTrack) {
        const auto& track = static_cast<const TrackItem&>(item);
        if (ShouldRetrieveOnAdd(track.Track(), settings_)) deferred_.push_back(&track);
    } else if (item.Kind() == ItemKind::kPlaylist) {
        const auto& playlist = static_cast<const Playlist&>(item);
        for (size_t i = 0; i < playlist.ItemCount(); ++i) NoteDeferred(*playlist.ItemAt(i));
    }
}

std::vector<DeferredTrack> MainList::TakeDeferred() {
    std::vector<DeferredTrack> tracks;
    if (deferred_.empty()) return tracks;
    // Listed items may have gone since: only those still found in the tree are handed
    // out, and nothing listed is touched before it is found.
    std::unordered_set<const PlaylistItem*> listed(deferred_.begin(), deferred_.end());
    deferred_.clear();
    const int rows = tree_.RowCount();
    for (int row = 0; row < rows && !listed.empty(); ++row) {
        const RowRef ref = tree_.ItemAtRow(row);
        if (listed.erase(ref.item) == 0) continue;
        tracks.push_back({row, static_cast<const TrackItem*>(ref.item)->Track().FullName()});
    }
    return tracks;
}

void MainList::Fill(std::vector<RetrievedTrack> tracks) {
    bool filled = false;
    auto fill = [&](int row, const TrackRecord& record) {
        const RowRef ref = tree_.ItemAtRow(row);
        if (!ref || ref.item->Kind() != ItemKind::kTrack) return false;
        TrackRecord& track = static_cast<TrackItem*>(ref.item)->Track();
        if (track.FullName() != record.FullName()) return false;
        if (!track.InfoRetrieved()) track = record;
        filled = true;
        return true;
    };
    // Rows may have moved since the tracks were listed: every track of the name that
    // still lacks its information gets it then (a file may be in the list more than once).
    std::unordered_map<std::string, std::vector<int>> rowsByName;
    for (RetrievedTrack& retrieved : tracks) {
        if (!retrieved.record || fill(retrieved.rowHint, *retrieved.record)) continue;
        if (rowsByName.empty()) {
            const int rows = tree_.RowCount();
            for (int row = 0; row < rows; ++row)
                if (const RowRef ref = tree_.ItemAtRow(row); ref.item->Kind() == ItemKind::kTrack)
                    rowsByName[static_cast<const TrackItem*>(ref.item)->Track().FullName()].push_back(row);
        }
        if (auto found = rowsByName.find(retrieved.record->FullName()); found != rowsByName.end())
            for (int row : found->second) fill(row, *retrieved.record);
    }
    if (filled) Announce({.texts = true});
}

TrackRecord* MainList::TrackAt(int row) {
    const RowRef ref = tree_.ItemAtRow(row);
    if (!ref) return nullptr;
    if (ref.item->Kind() == ItemKind::kTrack) return &static_cast<TrackItem*>(ref.item)->Track();
    if (ref.item->Kind() == ItemKind::kRandomEntry) return static_cast<RandomEntry*>(ref.item)->PickedTrack();
    return nullptr;
}

bool MainList::Reread(int row) {
    TrackRecord* track = TrackAt(row);
    if (!track || track->IsNullTrack()) return false;
    track->RetrieveInformation(modules_, settings_.ignoreID3Tags != 0);
    Announce({.texts = true, .current = row == currentRow_});
    return true;
}

void MainList::LearnLength(const std::string& fullName, uint32_t milliseconds) {
    // Rounding of the decoder's and the header's sums differs by a few milliseconds; an
    // estimate worth replacing is off by much more.
    constexpr uint32_t kTolerance = 500;
    TrackRecord* track = TrackAt(currentRow_);
    if (milliseconds == 0 || !track || track->FullName() != fullName || !track->InfoRetrieved()) return;
    TrackInfo info = track->Info();
    if (info.duration + kTolerance > milliseconds && milliseconds + kTolerance > info.duration) return;
    info.duration = milliseconds;
    // Without a length the module could not tell the rate either: the file's average.
    if (info.bitrate >= -1 && info.bitrate <= 1 && info.fileSize > track->AudioStart())
        info.bitrate = static_cast<int32_t>(uint64_t{info.fileSize - track->AudioStart()} * 8000 / milliseconds);
    track->SetInfo(info);
    Announce({.texts = true, .current = true});
}

void MainList::RereadAll() {
    const int rows = tree_.RowCount();
    for (int row = 0; row < rows; ++row) {
        const RowRef ref = tree_.ItemAtRow(row);
        if (ref && ref.item->Kind() == ItemKind::kTrack)
            static_cast<TrackItem*>(ref.item)->Track().RetrieveInformation(modules_, settings_.ignoreID3Tags != 0);
    }
    Announce({.texts = true, .current = true});
}

const TrackRecord* MainList::TrackToPlay(int row) {
    const RowRef ref = tree_.ItemAtRow(row);
    if (!ref || !ref.item->IsPlayable()) return nullptr;
    if (ref.item->Kind() == ItemKind::kRandomEntry)
        return samples_.Resolve(static_cast<RandomEntry&>(*ref.item), settings_.vdpHistory);
    TrackRecord& track = static_cast<TrackItem*>(ref.item)->Track();
    // Added without its information: read now, so its title shows as it starts.
    if (deferRetrieval_ && !track.InfoRetrieved()) {
        RetrieveOnAdd(track, settings_, modules_);
        Announce({.texts = true, .current = row == currentRow_});
    }
    return &track;
}

void MainList::SetCurrent(int row) {
    currentRow_ = row;
    currentItem_ = ItemAt(row);
    currentGone_ = false;
    if (!orderStale_) order_.SetCursorToRow(row);
    Announce({.current = true});
}

PlayOrder::Move MainList::MoveOn(bool loop, bool deleteFinished) {
    const PlaylistItem* finished = currentGone_ ? nullptr : currentItem_;
    PlayOrder::Move move;
    if (Shuffle()) move = Order().MoveOn(tree_, currentRow_, true, loop);
    // Moving on from an entry that was deleted: the one that took its place comes next.
    else move = order_.MoveOn(tree_, currentGone_ ? currentRow_ - 1 : currentRow_, false, loop);
    currentRow_ = move.row;
    currentItem_ = ItemAt(currentRow_);
    currentGone_ = false;
    ListChange change{.current = true};
    if (deleteFinished && finished) {
        const int row = RowOfItem(tree_, finished);
        if (const RowRef ref = tree_.ItemAtRow(row)) {
            ref.holder->RemoveItem(ref.index);
            if (!orderStale_) order_.RowsRemoved(row, 1);
            if (currentRow_ > row) --currentRow_;
            change.rows = true;
        }
    }
    Announce(change);
    return move;
}

int MainList::Following(bool loop) {
    if (Shuffle()) return Order().Following(tree_, currentRow_, true, loop);
    return order_.Following(tree_, currentGone_ ? currentRow_ - 1 : currentRow_, false, loop);
}

void MainList::MoveBack(bool loop) {
    currentRow_ = Shuffle() ? Order().Previous(tree_, currentRow_, true, loop)
                            : order_.Previous(tree_, currentRow_, false, loop);
    currentItem_ = ItemAt(currentRow_);
    currentGone_ = false;
    Announce({.current = true});
}

void MainList::ShuffleChanged() { orderStale_ = true; }

bool MainList::HasRandomEntries() const { return ContainsRandomEntry(tree_); }

void MainList::ResetRandomEntries() { verdin::ResetRandomEntries(tree_); }

bool MainList::RecreateSampleSpace(const SampleSpaceOptions& options) {
    // The entries' picks point into the space about to be replaced.
    verdin::ResetRandomEntries(tree_);
    const bool found = samples_.CreateSampleSpace(settings_.sampleSpaceSearchPath,
                                                  settings_.recurseSampleSpaceSearchPath != 0,
                                                  modules_.SupportedExtensions(), modules_, options);
    Announce({.texts = true, .current = true});
    return found;
}

}  // namespace verdin
