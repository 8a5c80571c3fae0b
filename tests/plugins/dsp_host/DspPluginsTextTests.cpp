// The "dspPlugins" text: "%s,%d;" pieces read back into library paths and module indices.
#include "plugins/dsp/DspPluginsText.h"

#include <gtest/gtest.h>

#include <climits>

namespace verdin {
namespace {

struct ParseCase {
    std::string text;
    std::vector<DspModuleRef> expected;
};

TEST(DspPluginsText, ParsesPiecesInOrder) {
    const ParseCase cases[] = {
        {"", {}},
        {";;;", {}},
        {"x.so,1;y.so;", {{"x.so", 1}, {"y.so", 0}}},
        {"/p/a.so,0;;/p/a.so,0;", {{"/p/a.so", 0}, {"/p/a.so", 0}}},
        {"/p/a.so,3", {{"/p/a.so", 3}}},                   // the last piece needs no ";"
        {"/odd,dir/a.so,2;", {{"/odd,dir/a.so", 2}}},      // split at the last comma
        {"/odd,dir/a.so;", {{"/odd", 0}}},                 // ... even when that is wrong
        {"a.so,;", {{"a.so", 0}}},                         // no number
        {"a.so,x7;", {{"a.so", 0}}},
        {"a.so, 4;", {{"a.so", 4}}},                       // leading blanks, as atoi
        {"a.so,5x;", {{"a.so", 5}}},                       // trailing rubbish ignored
        {"a.so,-2;", {{"a.so", -2}}},
        {"a.so,99999999999;", {{"a.so", INT_MAX}}},        // saturates
        {",1;", {{"", 1}}},
        {" ;", {{" ", 0}}},                                // only empty pieces are skipped
    };
    for (const ParseCase& c : cases) EXPECT_EQ(ParseDspPlugins(c.text), c.expected) << "\"" << c.text << "\"";
}

TEST(DspPluginsText, FormatsOnePiecePerEntry) {
    EXPECT_EQ(FormatDspPlugins({}), "");
    const std::vector<DspModuleRef> entries = {{"/p/x.so", 1}, {"/p/y.so", 0}, {"/p/x.so", 1}, {"/odd,dir/z.so", -3}};
    const std::string text = FormatDspPlugins(entries);
    EXPECT_EQ(text, "/p/x.so,1;/p/y.so,0;/p/x.so,1;/odd,dir/z.so,-3;");
    EXPECT_EQ(ParseDspPlugins(text), entries);
}

}  // namespace
}  // namespace verdin
