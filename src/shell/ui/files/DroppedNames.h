#pragma once
// What a name dropped on the window stands for. A symbolic link is followed to what it
// finally names; a desktop link file (".desktop" with Type=Link) to the address in its
// URL key, a local file when that is a "file:" address. Anything that cannot be resolved
// (a dangling link, a desktop file that is no link) stands for itself.
#include <QList>
#include <QUrl>
#include <string>
#include <vector>

namespace verdin {

std::string ResolveDroppedName(const std::string& name);

// The names of dropped URLs in the order given: local files as paths (not yet resolved),
// other addresses (http, ...) as they are.
std::vector<std::string> DroppedNames(const QList<QUrl>& urls);

}  // namespace verdin
