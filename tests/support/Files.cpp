#include "Files.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>

namespace verdin::test {

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<uint8_t> ReadBytes(const std::string& path) {
    std::string s = ReadFile(path);
    return std::vector<uint8_t>(s.begin(), s.end());
}

void WriteFile(const std::string& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("cannot write " + path);
    out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    if (!out) throw std::runtime_error("short write to " + path);
}

void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    WriteFile(path, std::string(bytes.begin(), bytes.end()));
}

bool FileExists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0;
}

}  // namespace verdin::test
