#include "tags/GenreTable.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(ContentType, ResolvesReferencesThroughTheGenreTable) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"(125)", "Dance Hall "},
        {"(0)", "Blues "},
        {"(12)", "Other"},
        {"(RX)", "Remix "},
        {"(CR)", "Cover "},
        {"(RX)(17)Metal", "Remix Rock Metal"},
        {"(4)Eurodisco", "Disco Eurodisco"},
        {"(17)Rock", "Rock "},       // the free text only repeats the genre
        {"(17)rock", "Rock "},
        {"Rock", "Rock"},            // plain text stays as written
        {"((live)", "(live)"},       // escaped parenthesis
        {"(17)((live)", "Rock (live)"},
        {"(200)", "(200)"},          // outside the table: as written
        {"(1234)", "(1234)"},
        {"(XX)Jazz", "(XX)Jazz"},
        {"(17", "(17"},              // unclosed
        {"()", "()"},
        {"(", "("},
        {"", ""},
    };
    for (const auto& [raw, shown] : rows) EXPECT_EQ(ResolveContentType(raw), shown) << raw;
}

TEST(ContentType, BuildsTheTextualFormFromValueLists) {
    using V = std::vector<std::string>;
    const std::pair<V, std::string_view> rows[] = {
        {V{"17"}, "(17)"},
        {V{"RX", "17", "Metal"}, "(RX)(17)Metal"},
        {V{"Metal", "17"}, "(17)Metal"},
        {V{"Rock", "Pop"}, "Rock/Pop"},
        {V{"(live)"}, "((live)"},
        {V{"", "Jazz"}, "Jazz"},
        {V{}, ""},
    };
    for (const auto& [values, raw] : rows) EXPECT_EQ(ContentTypeFromValues(values), raw) << raw;
    // What is built reads back as the values said.
    EXPECT_EQ(ResolveContentType(ContentTypeFromValues({"(live)"})), "(live)");
    EXPECT_EQ(ResolveContentType(ContentTypeFromValues({"CR", "125"})), "Cover Dance Hall ");
}

}  // namespace
}  // namespace verdin
