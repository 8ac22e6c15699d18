#pragma once

#include <string>
#include <string_view>

namespace tabrixdb::asp {

// A text, or HTML, as visitors may read it: paths below `root`, the site's real folder, become virtual ones;
// other paths of a disk, drive or share are cut to their last name. Absolute paths are known by the folders
// that systems have at their root, so an address of the site that begins like one is cut, too.
std::string without_disk_paths(std::string_view text, std::string_view root);

} // namespace tabrixdb::asp
