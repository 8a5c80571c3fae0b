#include "Menus.h"

#include "shell/CommandTable.h"

#include <vector>

namespace verdin {

namespace {

constexpr uint32_t kSeparator = 0;

struct Entry {
    uint32_t id;
    const char* text = nullptr;  // null: the command table's menu text
};

const std::vector<Entry> kFile = {
    {50012}, {50070}, {50058}, {kSeparator}, {50013}, {50071}, {50059}, {50103}, {50030},
    {kSeparator}, {50014}, {kSeparator}, {50001},
};
const std::vector<Entry> kMiscellaneous = {
    {50031}, {50111}, {50096}, {kSeparator}, {50052}, {50053}, {kSeparator}, {50054}, {50075}, {50114},
    {kSeparator}, {50095}, {kSeparator}, {50003},
};
const std::vector<Entry> kPlaylist = {
    {50089}, {kSeparator}, {50108}, {50109}, {kSeparator}, {50118}, {50119}, {kSeparator}, {50098}, {50104},
};
const std::vector<Entry> kTransport = {{104}, {106}, {107}, {108}, {110}};

// The context popups: what the row under the mouse allows, then inserting at it.
const std::vector<Entry> kInsertEntries = {
    {50021, "Insert File(s)...\tInsert"}, {50072}, {50060}, {50101}, {50029}, {50091},
};
const std::vector<Entry> kDeleteEntry = {{50023}};
const std::vector<Entry> kTrackHead = {{50019}, {50056}};
const std::vector<Entry> kPlaylistHead = {{50019}, {50017}, {50093}};
const std::vector<Entry> kRandomEntryHead = {{50019}, {50055, "Random Entry Properties...\tAlt + Enter"}, {50122}};
const std::vector<Entry> kGeneral = {
    {50037}, {50073}, {50061}, {kSeparator}, {50021}, {50072}, {50060}, {50101}, {50029}, {kSeparator},
    {50051}, {kSeparator}, {50118}, {50119}, {kSeparator}, {50108}, {50109},
};

// Entries whose state is a setting shown as a check mark.
bool IsCheckable(uint32_t id) {
    const CommandEntry* entry = FindCommand(id);
    if (!entry) return false;
    switch (entry->action) {
        case Action::kToggleLoop:
        case Action::kToggleShuffle:
        case Action::kToggleAnalyzer:
        case Action::kToggleOscilloscope:
        case Action::kToggleVisualization:
        case Action::kTogglePlaylist: return true;
        default: return false;
    }
}

void AddEntries(QMenu* menu, const std::vector<Entry>& entries, const CommandSink& run, MainMenus& menus) {
    for (const Entry& entry : entries) {
        if (entry.id == kSeparator) {
            menu->addSeparator();
            continue;
        }
        const uint32_t id = entry.id;
        QAction* action = menu->addAction(entry.text ? QString::fromLatin1(entry.text) : MenuEntryText(id));
        action->setData(id);
        if (IsCheckable(id)) {
            action->setCheckable(true);
            menus.checkable.emplace(id, action);
        }
        QObject::connect(action, &QAction::triggered, menu, [run, id] { run(id); });
    }
}

QMenu* Popup(QWidget* owner, const QString& title, std::initializer_list<const std::vector<Entry>*> parts,
             const CommandSink& run, MainMenus& menus) {
    auto* menu = new QMenu(title, owner);
    bool first = true;
    for (const std::vector<Entry>* part : parts) {
        if (!first) menu->addSeparator();
        first = false;
        AddEntries(menu, *part, run, menus);
    }
    return menu;
}

void SetDefault(QMenu* menu, uint32_t id) {
    for (QAction* action : menu->actions())
        if (action->data().toUInt() == id) menu->setDefaultAction(action);
}

}  // namespace

QString MenuEntryText(uint32_t id) {
    const CommandEntry* entry = FindCommand(id);
    return entry ? QString::fromLatin1(entry->menuText.data(), static_cast<qsizetype>(entry->menuText.size())) : QString();
}

MainMenus BuildMenus(QWidget* owner, const CommandSink& run) {
    MainMenus menus;
    menus.file = Popup(owner, QStringLiteral("File"), {&kFile}, run, menus);
    menus.miscellaneous = Popup(owner, QStringLiteral("Miscellaneous"), {&kMiscellaneous}, run, menus);
    menus.playlist = Popup(owner, QStringLiteral("Playlist"), {&kPlaylist}, run, menus);
    SetDefault(menus.file, 50012);
    SetDefault(menus.miscellaneous, 50031);
    SetDefault(menus.playlist, 50089);

    menus.notifyIcon = new QMenu(QStringLiteral("Notify Icon"), owner);
    menus.notifyIcon->addMenu(menus.file);
    menus.notifyIcon->addMenu(menus.miscellaneous);
    menus.notifyIcon->addMenu(menus.playlist);
    menus.notifyIcon->addSeparator();
    AddEntries(menus.notifyIcon, kTransport, run, menus);

    menus.trackContext = Popup(owner, QStringLiteral("Track"), {&kTrackHead, &kInsertEntries, &kDeleteEntry}, run, menus);
    menus.playlistContext =
        Popup(owner, QStringLiteral("Playlist"), {&kPlaylistHead, &kInsertEntries, &kDeleteEntry}, run, menus);
    menus.generalContext = Popup(owner, QStringLiteral("General"), {&kGeneral}, run, menus);
    menus.randomEntryContext =
        Popup(owner, QStringLiteral("Random entry"), {&kRandomEntryHead, &kInsertEntries, &kDeleteEntry}, run, menus);
    for (QMenu* context : {menus.trackContext, menus.playlistContext, menus.randomEntryContext}) SetDefault(context, 50019);
    return menus;
}

}  // namespace verdin
