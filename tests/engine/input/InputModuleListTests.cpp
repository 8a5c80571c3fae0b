// The loader with the small test plug-ins of tests/modules/loader_fixtures:
//   order_a/  alpha.so (.alp .mp3)  Beta.so (.bet .mp3)  gamma.so (.gam)  wanting.so (no entry point)
//   order_b/  delta.so (.del .mp3)
//   odd/      null_module.so (entry returns NULL)  null_types.so (no file types)
//             odd_types.so (an untidy file type list)
#include "engine/input/InputModuleList.h"

#include "TempDir.h"
#include "TestModuleLog.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace verdin {
namespace {

const std::string kModules = VERDIN_INPUT_TEST_MODULES;
const std::string kOrderA = kModules + "/order_a";
const std::string kOrderB = kModules + "/order_b";
const std::string kOdd = kModules + "/odd";

struct Event {
    std::string module, event;
    void* instance;
};

// What the test plug-ins report; handed to them as the main-window pointer.
struct EventLog : TestModuleLog {
    EventLog() : TestModuleLog{&Record} {}
    static void Record(TestModuleLog* log, const char* module, const char* event, void* instance) {
        static_cast<EventLog*>(log)->events.push_back({module, event, instance});
    }
    // "module:event" for every event of the kind given (all events when empty), in order.
    std::vector<std::string> Of(const std::string& kind = "") const {
        std::vector<std::string> out;
        for (const Event& e : events)
            if (kind.empty() || e.event == kind) out.push_back(e.module + ":" + e.event);
        return out;
    }
    std::vector<Event> events;
};

std::vector<std::string> Descriptions(const InputModuleList& list) {
    std::vector<std::string> out;
    for (size_t i = 0; i < list.ModuleCount(); ++i) {
        InputModule* module = list.ModuleAt(i);
        out.push_back(module ? module->ops->GetDescription(module) : "(null)");
    }
    return out;
}

std::string DescriptionOf(InputModule* module) {
    return module ? module->ops->GetDescription(module) : "(none)";
}

// Whether the process still has the library mapped (without loading it).
bool IsLoaded(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);  // undo the reference RTLD_NOLOAD took
    return handle != nullptr;
}

using Names = std::vector<std::string>;

TEST(InputModuleList, LoadsDirectoriesInPathOrderAndNamesWithoutRegardToCase) {
    EventLog log;
    InputModuleList list;
    EXPECT_EQ(list.LoadInputModules(kOrderA + ";" + kOrderB, &log), 4u);
    EXPECT_EQ(Descriptions(list), (Names{"alpha", "Beta", "gamma", "delta"}));
    EXPECT_EQ(log.Of(), (Names{"alpha:entry", "Beta:entry", "gamma:entry", "delta:entry"}));

    InputModuleList reversed;
    reversed.LoadInputModules(kOrderB + ";" + kOrderA, &log);
    EXPECT_EQ(Descriptions(reversed), (Names{"delta", "alpha", "Beta", "gamma"}));
}

TEST(InputModuleList, EntryPointGetsItsOwnLibraryHandleAndTheMainWindow) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOrderB, &log);
    ASSERT_EQ(log.events.size(), 1u);  // once per library
    void* handle = dlopen((kOrderB + "/delta.so").c_str(), RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(handle, nullptr);
    dlclose(handle);
    EXPECT_EQ(log.events[0].instance, handle);
    // The main-window pointer reached the plug-in: it is the log it recorded into.
}

TEST(InputModuleList, FirstModuleFoundWinsAndLaterOnesAreNotAsked) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOrderA + ";" + kOrderB, &log);
    log.events.clear();

    EXPECT_EQ(DescriptionOf(list.FindModuleFor("/music/song.MP3", 0)), "alpha");
    EXPECT_EQ(log.Of("IsOurFile"), (Names{"alpha:IsOurFile"}));
    EXPECT_EQ(DescriptionOf(list.FindModuleFor("/music/song.mp3", 0)), "alpha");  // every time

    const struct {
        const char* path;
        const char* module;
    } cases[] = {
        {"x.bet", "Beta"}, {"x.GAM", "gamma"}, {"x.del", "delta"}, {"x.wnt", "(none)"}, {"x.none", "(none)"},
        {"noextension", "(none)"},
    };
    for (const auto& c : cases) EXPECT_EQ(DescriptionOf(list.FindModuleFor(c.path, 0)), c.module) << c.path;

    InputModuleList reversed;
    reversed.LoadInputModules(kOrderB + ";" + kOrderA, &log);
    EXPECT_EQ(DescriptionOf(reversed.FindModuleFor("/music/song.mp3", 0)), "delta");
}

TEST(InputModuleList, LibraryWithoutEntryPointIsSkippedAndFreed) {
    const std::string wanting = kOrderA + "/wanting.so";
    ASSERT_TRUE(std::filesystem::exists(wanting));
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOrderA, &log);
    EXPECT_EQ(Descriptions(list), (Names{"alpha", "Beta", "gamma"}));
    EXPECT_FALSE(IsLoaded(wanting));
    EXPECT_TRUE(IsLoaded(kOrderA + "/alpha.so"));
}

TEST(InputModuleList, PathsWithoutUsableDirectoriesLoadNothing) {
    const struct {
        const char* label;
        std::string path;
        size_t modules;
    } cases[] = {
        {"empty", "", 0},
        {"only a separator", ";", 0},
        {"only separators", ";;;", 0},
        {"missing directory", kModules + "/no_such_dir", 0},
        {"missing directory, then a real one", kModules + "/no_such_dir;;" + kOrderB + ";", 1},
        {"a file instead of a directory", kOrderB + "/delta.so", 0},
    };
    for (const auto& c : cases) {
        EventLog log;
        InputModuleList list;
        EXPECT_EQ(list.LoadInputModules(c.path, &log), c.modules) << c.label;
        EXPECT_EQ(list.ModuleCount(), c.modules) << c.label;
        EXPECT_EQ(list.FindModuleFor("x.del", 0) != nullptr, c.modules > 0) << c.label;
    }
}

TEST(InputModuleList, SameLibraryReachedTwiceIsLoadedAndAskedTwice) {
    const verdin::test::TempDir dir;
    std::filesystem::create_directory_symlink(kOrderB, dir.file("link_to_order_b"));
    for (const std::string& path : {kOrderB + ";" + kOrderB, kOrderB + ";" + dir.file("link_to_order_b")}) {
        SCOPED_TRACE(path);
        EventLog log;
        {
            InputModuleList list;
            EXPECT_EQ(list.LoadInputModules(path, &log), 2u);
            EXPECT_EQ(Descriptions(list), (Names{"delta", "delta"}));
            EXPECT_EQ(log.Of("entry"), (Names{"delta:entry", "delta:entry"}));
        }
        EXPECT_EQ(log.Of("Release"), (Names{"delta:Release", "delta:Release"}));
        EXPECT_FALSE(IsLoaded(kOrderB + "/delta.so"));
    }
}

TEST(InputModuleList, UnloadReleasesEachModuleOnceInListOrderThenFreesIt) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOrderA + ";" + kOrderB, &log);
    log.events.clear();
    list.UnloadInputModules();
    EXPECT_EQ(log.Of(), (Names{"alpha:Release", "Beta:Release", "gamma:Release", "delta:Release"}));
    EXPECT_EQ(list.ModuleCount(), 0u);
    for (const char* name : {"/alpha.so", "/Beta.so", "/gamma.so"}) EXPECT_FALSE(IsLoaded(kOrderA + name)) << name;
    EXPECT_EQ(list.FindModuleFor("x.mp3", 0), nullptr);

    list.UnloadInputModules();  // a second unload has nothing left to do
    EXPECT_EQ(log.Of("Release").size(), 4u);
}

TEST(InputModuleList, DestructorUnloadsAndLoadingAgainReplacesTheList) {
    EventLog log;
    {
        InputModuleList list;
        list.LoadInputModules(kOrderA, &log);
        list.LoadInputModules(kOrderB, &log);  // the first list goes before the second comes
        EXPECT_EQ(Descriptions(list), (Names{"delta"}));
    }
    EXPECT_EQ(log.Of(), (Names{"alpha:entry", "Beta:entry", "gamma:entry", "alpha:Release", "Beta:Release",
                               "gamma:Release", "delta:entry", "delta:Release"}));
}

TEST(InputModuleList, FilesThatAreNotPluginsAreSkipped) {
    const verdin::test::TempDir dir;
    std::filesystem::create_directory(dir.file("a_directory.so"));
    std::ofstream(dir.file("b_text.so")) << "not a library";
    std::filesystem::copy_file(kOrderB + "/delta.so", dir.file("c_delta.SO"));
    std::ofstream(dir.file("d_other.txt")) << "not even named like one";
    EventLog log;
    InputModuleList list;
    EXPECT_EQ(list.LoadInputModules(dir.str(), &log), 1u);
    EXPECT_EQ(Descriptions(list), (Names{"delta"}));
}

TEST(InputModuleList, NullModuleIsKeptButNeverCalled) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOdd, &log);
    EXPECT_EQ(log.Of("entry"), (Names{"null_module:entry", "null_types:entry", "odd_types:entry"}));
    EXPECT_EQ(Descriptions(list), (Names{"(null)", "null_types", "odd_types"}));
    EXPECT_EQ(DescriptionOf(list.FindModuleFor("x.nty", 0)), "null_types");
    EXPECT_EQ(list.FindModuleFor("x.nul", 0), nullptr);
    EXPECT_EQ(list.ModuleAt(3), nullptr);
    list.UnloadInputModules();
    EXPECT_EQ(log.Of("Release"), (Names{"null_types:Release", "odd_types:Release"}));
}

TEST(InputModuleList, ExtensionsAndFiltersFollowModuleOrder) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOrderA + ";" + kOrderB, &log);
    EXPECT_EQ(list.SupportedExtensions(), ".alp;.mp3;.bet;.gam;.del");
    const std::vector<FileTypeFilter> expected = {
        {"alpha files", "*.alp;*.mp3"},
        {"Beta files", "*.bet;*.mp3"},
        {"gamma files", "*.gam"},
        {"delta files", "*.del;*.mp3"},
    };
    EXPECT_EQ(list.FileTypeFilters(), expected);
}

TEST(InputModuleList, UntidyOrMissingFileTypeListsAreTolerated) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOdd + ";" + kOrderB, &log);
    EXPECT_EQ(list.SupportedExtensions(), ".odd;.del;.mp3");
    const std::vector<FileTypeFilter> expected = {
        {"Odd files", " *.odd ; *.* ;noext;;*.ODD"},
        {"delta files", "*.del;*.mp3"},
    };
    EXPECT_EQ(list.FileTypeFilters(), expected);

    InputModuleList none;
    EXPECT_EQ(none.SupportedExtensions(), "");
    EXPECT_TRUE(none.FileTypeFilters().empty());
}

}  // namespace
}  // namespace verdin
