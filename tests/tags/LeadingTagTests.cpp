#include "tags/LeadingTag.h"

#include <gtest/gtest.h>

#include <vector>

namespace verdin {
namespace {

TEST(LeadingTag, MeasuresHeaderBodyAndFooter) {
    struct Row {
        std::vector<std::uint8_t> head;
        bool found;
        std::uint32_t size;
        TagVersion version;
    };
    const Row rows[] = {
        {{'I', 'D', '3', 3, 0, 0, 0, 0, 0x01, 0x79}, true, 10 + 0xF9, {2, 3, 0}},
        {{'I', 'D', '3', 4, 0, 0x10, 0, 0, 0, 100}, true, 10 + 100 + 10, {2, 4, 0}},  // footer
        {{'I', 'D', '3', 3, 0, 0x10, 0, 0, 0, 100}, true, 10 + 100, {2, 3, 0}},       // no footer before 2.4
        {{'I', 'D', '3', 2, 1, 0, 0x7F, 0x7F, 0x7F, 0x7F}, true, 10 + 0x0FFFFFFF, {2, 2, 1}},
        {{'I', 'D', '3', 3, 0, 0, 0, 0, 0x81, 0}, false, 0, {}},  // not synchsafe
        {{'I', 'D', '3', 0xFF, 0, 0, 0, 0, 0, 0}, false, 0, {}},
        {{'I', 'D', '3', 3, 0xFF, 0, 0, 0, 0, 0}, false, 0, {}},
        {{'I', 'D', '3', 3, 0, 0, 0, 0, 0}, false, 0, {}},  // too short
        {{'T', 'A', 'G', 3, 0, 0, 0, 0, 0, 0}, false, 0, {}},
        {{}, false, 0, {}},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const LeadingTag tag = ParseLeadingTag(rows[i].head);
        EXPECT_EQ(tag.found, rows[i].found) << "row " << i;
        EXPECT_EQ(tag.completeSize, rows[i].size) << "row " << i;
        EXPECT_EQ(tag.version, rows[i].version) << "row " << i;
    }
}

}  // namespace
}  // namespace verdin
