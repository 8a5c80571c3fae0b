#pragma once
// Finding the file a path names, spelled the way the file system spells it.
//
// The common case costs one stat: a path that exists as written is taken as it is (on
// the usual case-sensitive file systems that is already the spelling on disk). Only a
// path that does not exist as written is looked for without regard to letter case, one
// component at a time, as a playlist written on a case-insensitive system needs; each
// directory is listed at most once per FileLookup, so a playlist full of such entries
// does not list a directory per entry. Where several names differ only in case, the
// first in the listing's order (case-insensitive, ties byte-wise) wins.
#include "base/DirectoryListing.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace verdin {

class FileLookup {
public:
    // The path under which the file exists, or nothing when path names no file: it is
    // empty, holds a NUL, ends in "/", names a directory, or nothing on disk matches it.
    std::optional<std::string> Find(const std::string& path);

private:
    // A directory path as it exists on disk (no trailing "/" except for the root; empty
    // for the working directory), or nothing.
    std::optional<std::string> FindDirectory(const std::string& directory, int depth);
    // The first entry of the (existing) directory that matches name without regard to
    // case and is a directory or not, as asked.
    const std::string* MatchInDirectory(const std::string& directory, const std::string& name, bool wantDirectory);

    // Per directory listed: lower-cased name -> its entries with that name, in listing order.
    std::unordered_map<std::string, std::unordered_map<std::string, std::vector<DirectoryEntry>>> listings_;
};

}  // namespace verdin
