// The file type lists of input modules, and the loader with the small test plug-ins of
// tests/modules/loader_fixtures:
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

namespace verdin {
namespace {

using Names = std::vector<std::string>;

// The whole literal, its NUL included, in a buffer of exactly that size: reading past a
// list's end shows under the address sanitizer.
template <size_t N>
std::vector<char> ListBytes(const char (&literal)[N]) { return std::vector<char>(literal, literal + N); }

TEST(InputFileTypes, ListsPatternsAndExtensions) {
    using Filters = std::vector<FileTypeFilter>;
    const std::pair<std::vector<char>, Filters> lists[] = {
        {ListBytes("MPEG audio\0*.mp3;*.mp2\0WAV audio\0*.wav\0"), {{"MPEG audio", "*.mp3;*.mp2"}, {"WAV audio", "*.wav"}}},
        {ListBytes(""), {}},
        {ListBytes("Lonely\0"), {}},  // a description without patterns is dropped
        {ListBytes("A\0*.a\0B\0"), {{"A", "*.a"}}},
        {ListBytes("X\0 *.x ; *.Y\0"), {{"X", " *.x ; *.Y"}}},  // patterns kept as written
    };
    for (const auto& [list, filters] : lists) EXPECT_EQ(ParseFileTypeList(list.data()), filters) << list.data();
    EXPECT_TRUE(ParseFileTypeList(nullptr).empty());
    std::vector<char> endless(200 * 1024, 'x');  // the only NUL far beyond any real list
    endless.back() = '\0';
    EXPECT_TRUE(ParseFileTypeList(endless.data()).empty());

    for (const char* pattern : {"*.*", "*", "noext", "a.mp3", "*.", "*.tar.gz", "*.m?3", ""})
        EXPECT_EQ(ExtensionOfPattern(pattern), std::nullopt) << '"' << pattern << '"';
    EXPECT_EQ(ExtensionOfPattern(" *.MP3 "), ".MP3");
    std::vector<std::string> extensions = {".wav"};
    AppendPatternExtensions("*.mp3;*.mp2;;*.*;*.MP3;*.WAV", extensions);
    AppendPatternExtensions("*.mp1", extensions);
    EXPECT_EQ(extensions, (Names{".wav", ".mp3", ".mp2", ".mp1"}));
}

const std::string kModules = VERDIN_INPUT_TEST_MODULES;
const std::string kOrderA = kModules + "/order_a", kOrderB = kModules + "/order_b", kOdd = kModules + "/odd";

// What the test plug-ins report, handed to them as the main-window pointer.
struct EventLog : TestModuleLog {
    EventLog() : TestModuleLog{&Record} {}
    static void Record(TestModuleLog* log, const char* module, const char* event, void* instance) {
        static_cast<EventLog*>(log)->events.push_back({std::string(module) + ":" + event, instance});
    }
    // "module:event" for every event of the kind given (all when empty), in order.
    Names Of(const std::string& kind = "") const {
        Names out;
        for (const auto& [text, instance] : events)
            if (kind.empty() || text.ends_with(":" + kind)) out.push_back(text);
        return out;
    }
    std::vector<std::pair<std::string, void*>> events;
};

std::string DescriptionOf(InputModule* module) { return module ? module->ops->GetDescription(module) : "(none)"; }
Names Descriptions(const InputModuleList& list) {
    Names out;
    for (size_t i = 0; i < list.ModuleCount(); ++i) out.push_back(list.ModuleAt(i) ? DescriptionOf(list.ModuleAt(i)) : "(null)");
    return out;
}
// Whether the process still has the library mapped (without loading it).
bool IsLoaded(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);  // undo the reference RTLD_NOLOAD took
    return handle != nullptr;
}

TEST(InputModuleList, LoadsInPathOrderAndAsksTheFirstThatTakesAFile) {
    EventLog log;
    {
        InputModuleList list;
        EXPECT_EQ(list.LoadInputModules(kOrderA + ";" + kOrderB, &log), 4u);
        // Names sort without regard to case; the library without an entry point is freed.
        EXPECT_EQ(Descriptions(list), (Names{"alpha", "Beta", "gamma", "delta"}));
        EXPECT_FALSE(IsLoaded(kOrderA + "/wanting.so"));
        EXPECT_EQ(log.Of(), (Names{"alpha:entry", "Beta:entry", "gamma:entry", "delta:entry"}));
        void* delta = dlopen((kOrderB + "/delta.so").c_str(), RTLD_NOW | RTLD_NOLOAD);
        ASSERT_NE(delta, nullptr);
        dlclose(delta);
        EXPECT_EQ(log.events[3].second, delta);  // the entry point gets its own library's handle
        EXPECT_EQ(list.SupportedExtensions(), ".alp;.mp3;.bet;.gam;.del");
        EXPECT_EQ(list.FileTypeFilters(), (std::vector<FileTypeFilter>{{"alpha files", "*.alp;*.mp3"},
                                                                        {"Beta files", "*.bet;*.mp3"},
                                                                        {"gamma files", "*.gam"},
                                                                        {"delta files", "*.del;*.mp3"}}));
        log.events.clear();
        EXPECT_EQ(DescriptionOf(list.FindModuleFor("/music/song.MP3", 0)), "alpha");
        EXPECT_EQ(log.Of("IsOurFile"), (Names{"alpha:IsOurFile"}));  // later modules are not asked
        const std::pair<const char*, const char*> found[] = {
            {"x.bet", "Beta"}, {"x.GAM", "gamma"}, {"x.del", "delta"}, {"x.wnt", "(none)"}, {"noextension", "(none)"}};
        for (const auto& [path, module] : found) EXPECT_EQ(DescriptionOf(list.FindModuleFor(path, 0)), module) << path;

        InputModuleList reversed;
        reversed.LoadInputModules(kOrderB + ";" + kOrderA, &log);
        EXPECT_EQ(DescriptionOf(reversed.FindModuleFor("/music/song.mp3", 0)), "delta");
        reversed.UnloadInputModules();
        log.events.clear();
        list.LoadInputModules(kOrderB, &log);  // the old list goes before the new one comes
    }
    EXPECT_EQ(log.Of(), (Names{"alpha:Release", "Beta:Release", "gamma:Release", "delta:Release", "delta:entry",
                               "delta:Release"}));
    for (const char* name : {"/alpha.so", "/Beta.so", "/gamma.so"}) EXPECT_FALSE(IsLoaded(kOrderA + name)) << name;
}

TEST(InputModuleList, SearchPathsAndFilesThatGiveNoModule) {
    const test::TempDir dir;
    std::filesystem::create_directory(dir.file("plugins"));
    std::filesystem::create_directory(dir.file("plugins/a_directory.so"));
    std::ofstream(dir.file("plugins/b_text.so")) << "not a library";
    std::filesystem::copy_file(kOrderB + "/delta.so", dir.file("plugins/c_delta.SO"));
    std::ofstream(dir.file("plugins/d_other.txt")) << "not even named like one";
    const std::pair<std::string, size_t> paths[] = {
        {"", 0}, {";;;", 0}, {kModules + "/no_such_dir", 0}, {kOrderB + "/delta.so", 0},
        {kModules + "/no_such_dir;;" + kOrderB + ";", 1}, {dir.file("plugins"), 1},
    };
    for (const auto& [path, modules] : paths) {
        EventLog log;
        InputModuleList list;
        EXPECT_EQ(list.LoadInputModules(path, &log), modules) << path;
        EXPECT_EQ(list.FindModuleFor("x.del", 0) != nullptr, modules > 0) << path;
    }
    // The same library reached twice, directly or through a link: loaded and asked twice.
    std::filesystem::create_directory_symlink(kOrderB, dir.file("link_to_order_b"));
    for (const std::string& path : {kOrderB + ";" + kOrderB, kOrderB + ";" + dir.file("link_to_order_b")}) {
        EventLog log;
        {
            InputModuleList list;
            EXPECT_EQ(list.LoadInputModules(path, &log), 2u);
            EXPECT_EQ(Descriptions(list), (Names{"delta", "delta"}));
        }
        EXPECT_EQ(log.Of(), (Names{"delta:entry", "delta:entry", "delta:Release", "delta:Release"})) << path;
        EXPECT_FALSE(IsLoaded(kOrderB + "/delta.so"));
    }
}

TEST(InputModuleList, BrokenModulesAreToleratedButNeverCalled) {
    EventLog log;
    InputModuleList list;
    list.LoadInputModules(kOdd + ";" + kOrderB, &log);
    EXPECT_EQ(log.Of("entry"), (Names{"null_module:entry", "null_types:entry", "odd_types:entry", "delta:entry"}));
    EXPECT_EQ(Descriptions(list), (Names{"(null)", "null_types", "odd_types", "delta"}));
    EXPECT_EQ(DescriptionOf(list.FindModuleFor("x.nty", 0)), "null_types");
    EXPECT_EQ(list.FindModuleFor("x.nul", 0), nullptr);
    EXPECT_EQ(list.ModuleAt(4), nullptr);
    EXPECT_EQ(list.SupportedExtensions(), ".odd;.del;.mp3");
    EXPECT_EQ(list.FileTypeFilters(),
              (std::vector<FileTypeFilter>{{"Odd files", " *.odd ; *.* ;noext;;*.ODD"}, {"delta files", "*.del;*.mp3"}}));
    list.UnloadInputModules();
    EXPECT_EQ(log.Of("Release"), (Names{"null_types:Release", "odd_types:Release", "delta:Release"}));
    EXPECT_EQ(list.ModuleCount(), 0u);
    list.UnloadInputModules();  // nothing left to do
    EXPECT_EQ(log.Of("Release").size(), 3u);
    EXPECT_EQ(InputModuleList().SupportedExtensions(), "");
}

}  // namespace
}  // namespace verdin
