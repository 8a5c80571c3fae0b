// The loader of input modules and their file type lists, with the small test plug-ins of
// tests/modules/loader_fixtures:
//   order_a/  alpha.so (.alp .mp3)  Beta.so (.bet .mp3)  gamma.so (.gam)  wanting.so (no entry point)
//   order_b/  delta.so (.del .mp3)
//   odd/      null_module.so (entry returns NULL)  null_types.so (no file types)  odd_types.so (an untidy list)
#include "engine/input/InputModuleList.h"

#include "TempDir.h"
#include "TestModuleLog.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <map>

namespace verdin {
namespace {

using Names = std::vector<std::string>;
using Filters = std::vector<FileTypeFilter>;
const std::string kModules = VERDIN_INPUT_TEST_MODULES;
const std::string kOrderA = kModules + "/order_a", kOrderB = kModules + "/order_b", kOdd = kModules + "/odd";

// What the test plug-ins report, handed to them as the main-window pointer: "module:event"
// in order, and the library handle each one's entry point received.
struct EventLog : TestModuleLog {
    EventLog() : TestModuleLog{&Record} {}
    static void Record(TestModuleLog* log, const char* module, const char* event, void* instance) {
        static_cast<EventLog*>(log)->events.push_back(std::string(module) + ":" + event);
        static_cast<EventLog*>(log)->instances[module] = instance;
    }
    Names Of(const std::string& kind) const {
        Names out;
        std::copy_if(events.begin(), events.end(), std::back_inserter(out), [&](const std::string& e) { return e.ends_with(":" + kind); });
        return out;
    }
    Names events;
    std::map<std::string, void*> instances;
};

std::string DescriptionOf(InputModule* module) { return module ? module->ops->GetDescription(module) : "(none)"; }
// The library's handle while the process has it mapped (without loading it), else null.
void* Loaded(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);  // undo the reference RTLD_NOLOAD took
    return handle;
}

TEST(InputModuleList, LoadsInPathOrderAndAsksTheFirstThatTakesAFile) {
    EventLog log;
    {
        InputModuleList list;
        EXPECT_EQ(list.LoadInputModules(kOrderA + ";" + kOrderB, &log), 4u);
        // Names sort without regard to case (the type lists follow the list's order); the
        // library without an entry point is freed.
        EXPECT_EQ(log.events, (Names{"alpha:entry", "Beta:entry", "gamma:entry", "delta:entry"}));
        EXPECT_TRUE(Loaded(kOrderA + "/wanting.so") == nullptr && log.instances["delta"] == Loaded(kOrderB + "/delta.so"));  // its own handle
        EXPECT_EQ(list.SupportedExtensions(), ".alp;.mp3;.bet;.gam;.del");
        EXPECT_EQ(list.FileTypeFilters(), (Filters{{"alpha files", "*.alp;*.mp3"}, {"Beta files", "*.bet;*.mp3"}, {"gamma files", "*.gam"}, {"delta files", "*.del;*.mp3"}}));
        log.events.clear();
        EXPECT_EQ(DescriptionOf(list.FindModuleFor("/music/song.MP3", 0)), "alpha");
        EXPECT_EQ(log.events, (Names{"alpha:IsOurFile"}));  // later modules are not asked
        const std::pair<const char*, const char*> found[] = {{"x.bet", "Beta"}, {"x.GAM", "gamma"}, {"x.del", "delta"}, {"x.wnt", "(none)"}, {"noextension", "(none)"}};
        for (const auto& [path, module] : found) EXPECT_EQ(DescriptionOf(list.FindModuleFor(path, 0)), module) << path;
        InputModuleList reversed;
        reversed.LoadInputModules(kOrderB + ";" + kOrderA, &log);
        EXPECT_EQ(DescriptionOf(reversed.FindModuleFor("/music/song.mp3", 0)), "delta");
        reversed.UnloadInputModules();
        log.events.clear();
        list.LoadInputModules(kOrderB, &log);  // the old list goes before the new one comes
    }
    EXPECT_EQ(log.events, (Names{"alpha:Release", "Beta:Release", "gamma:Release", "delta:Release", "delta:entry", "delta:Release"}));
    for (const char* name : {"/alpha.so", "/Beta.so", "/gamma.so"}) EXPECT_EQ(Loaded(kOrderA + name), nullptr) << name;
}

TEST(InputModuleList, SearchPathsAndFilesThatGiveNoModule) {
    const test::TempDir dir;
    std::filesystem::create_directories(dir.file("plugins/a_directory.so"));
    for (const char* name : {"plugins/b_text.so", "plugins/d_other.txt"}) std::ofstream(dir.file(name)) << "not a library";
    std::filesystem::copy_file(kOrderB + "/delta.so", dir.file("plugins/c_delta.SO"));
    const std::pair<std::string, size_t> paths[] = {  // empty pieces of the path: SplitSearchPath's (tests/base)
        {";;;", 0}, {kOrderB + "/delta.so", 0}, {kModules + "/no_such_dir;;" + kOrderB + ";", 1}, {dir.file("plugins"), 1},
        {kOrderB + ";" + kOrderB, 2},  // reached twice: loaded twice
    };
    for (const auto& [path, modules] : paths) {
        EventLog log;
        {
            InputModuleList list;
            EXPECT_EQ(list.LoadInputModules(path, &log), modules) << path;
            EXPECT_EQ(list.FindModuleFor("x.del", 0) != nullptr, modules > 0) << path;
        }
        EXPECT_EQ(std::pair(log.Of("entry").size(), log.Of("Release").size()), std::pair(modules, modules));
        EXPECT_EQ(Loaded(kOrderB + "/delta.so"), nullptr);
    }
}

TEST(InputModuleList, BrokenModulesAreToleratedButNeverCalledAndUntidyTypeListsAreRead) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOdd + ";" + kOrderB, &log);
    EXPECT_EQ(log.Of("entry"), (Names{"null_module:entry", "null_types:entry", "odd_types:entry", "delta:entry"}));
    EXPECT_TRUE(list.ModuleCount() == 4 && list.ModuleAt(0) == nullptr && list.ModuleAt(4) == nullptr);
    EXPECT_TRUE(DescriptionOf(list.FindModuleFor("x.nty", 0)) == "null_types" && list.FindModuleFor("x.nul", 0) == nullptr);
    // Patterns kept as written; extensions trimmed, in their case, once, only from "*.ext".
    EXPECT_EQ(list.SupportedExtensions(), ".Odd;.del;.mp3");
    EXPECT_EQ(list.FileTypeFilters(), (Filters{{"Odd files", " *.Odd ; *.* ;noext;;*.ODD;*.tar.gz;*.m?3;*.;a.mp3"}, {"delta files", "*.del;*.mp3"}}));
    list.UnloadInputModules();
    EXPECT_TRUE(log.Of("Release") == (Names{"null_types:Release", "odd_types:Release", "delta:Release"}) && list.ModuleCount() == 0);
    list.UnloadInputModules();  // nothing left to do
    EXPECT_EQ(std::pair(log.Of("Release").size(), InputModuleList().SupportedExtensions()), std::pair(size_t(3), std::string()));
    std::vector<char> endless(200 * 1024, 'x');  // a list whose only NUL lies far beyond any real list
    endless.back() = '\0';
    EXPECT_TRUE(ParseFileTypeList(endless.data()).empty());
}

}  // namespace
}  // namespace verdin
