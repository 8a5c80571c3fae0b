#pragma once
// A private copy of a file, made beside it, changed, and then put in the original's place
// in one step: rename(2) within one directory either happens completely or not at all, so
// readers see the old file or the new one, never a mixture.
//
// The copy keeps the original's permission bits (and its owner where the process may set
// it). It is a hidden file ".<name>.XXXXXX<extension>" in the same directory, so the
// rename never crosses file systems, and it keeps the extension, for code that chooses a
// format by the name.
#include <string>

namespace verdin {

class FileReplacement {
public:
    // Copies the regular file at path (links already resolved). On failure error() says
    // why and no copy is left.
    explicit FileReplacement(const std::string& path);
    // Removes the copy unless it was committed.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    bool ok() const { return error_.empty(); }
    const std::string& error() const { return error_; }
    const std::string& copyPath() const { return copyPath_; }

    // Flushes the copy to disk and renames it over the original. Returns an error text,
    // empty on success; on failure the original is untouched and the copy removed.
    std::string Commit();

private:
    void Discard();

    std::string path_;
    std::string copyPath_;
    std::string error_;
    bool committed_ = false;
};

}  // namespace verdin
