#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace verdin::test {

// Whole-file helpers; they throw std::runtime_error when the file cannot be used,
// so a broken fixture fails the test loudly instead of passing on empty data.
std::string ReadFile(const std::string& path);
std::vector<uint8_t> ReadBytes(const std::string& path);
void WriteFile(const std::string& path, const std::string& contents);
void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);
bool FileExists(const std::string& path);

}  // namespace verdin::test
