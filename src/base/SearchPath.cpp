#include "SearchPath.h"

namespace verdin {

std::vector<std::string> SplitSearchPath(std::string_view path) {
    std::vector<std::string> out;
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find(';', start);
        if (end == std::string_view::npos) end = path.size();
        if (end > start) out.emplace_back(path.substr(start, end - start));
        start = end + 1;
    }
    return out;
}

std::string JoinPath(std::string_view directory, std::string_view name) {
    std::string out(directory);
    if (out.empty() || out.back() != '/') out += '/';
    out += name;
    return out;
}

}  // namespace verdin
