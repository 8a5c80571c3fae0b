#pragma once
// Making the player the user's default application for file extensions, and giving them
// back. On this desktop a default belongs to a MIME type: the user's mimeapps.list names
// a desktop entry for it under [Default Applications]. An extension stands for its MIME
// type, so extensions of one type (".aif" and ".aiff") are associated together.
//
//   State: none when the type has no default (or an empty one), yes when it is the
//     extension's class entry (DesktopEntries.h), no when it is another program's.
//   Associate: the default becomes the class entry; a previous default of another program
//     is kept in the backup list, but only then, so a repeated association keeps the
//     first foreign owner.
//   Unassociate: nothing when the default is not the class entry (another program took
//     the type meanwhile); else the backed-up owner comes back, or, without one (or when
//     the backup names one of the player's own classes), the default and the backup go.
//
// Every call reads the files and writes what it changed at once; a file that cannot be
// read counts as empty. The calls return false when a file could not be written.
#include "system/DesktopPlaces.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

enum class AssociationState { kNone, kNo, kYes };

// The MIME type of an extension (with its dot).
using MimeTypeOf = std::function<std::string(std::string_view extension)>;

class Associations {
public:
    Associations(DesktopPlaces places, std::string program, MimeTypeOf mimeTypeOf);

    AssociationState State(std::string_view extension) const;
    bool Associate(std::string_view extension);
    bool Unassociate(std::string_view extension);
    // Gives back every type whose default is one of the player's classes, as Unassociate.
    bool UnassociateAll();

    // Writes both class entries, for the MIME types of these extensions; removes them.
    bool RegisterClasses(const std::vector<std::string>& extensions);
    bool RemoveClasses();
    // The folder verbs count as present when "Verdin.Play" is.
    bool FolderVerbsPresent() const;
    bool SetFolderVerbs(bool present);

private:
    bool Unassociate(const std::string& mimeType, std::string_view className);
    std::string EntryPath(std::string_view name) const;

    DesktopPlaces places_;
    std::string program_;
    MimeTypeOf mimeTypeOf_;
};

}  // namespace verdin
