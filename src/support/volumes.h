#pragma once
// The volumes that HFS paths begin with. One table maps a volume's name to its mount point. HFS paths are a spelling
// alone: "Name:folder:file" is "file" in "folder" below the mount point of the volume "Name"; a ":" in a POSIX name is
// a
// "/" in an HFS name and the other way round; an empty component goes up one folder. So pathWithHFS and
// hfsPathWithString are inverses on every existing item whose path is in NFC.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/values.h"

namespace vornaset {

struct Volume {
    String name;        ///< as HFS paths spell it: without ":"
    String mountPoint;  ///< an absolute POSIX path
    bool operator==(const Volume&) const = default;
};

/// The table in force. Until setVolumes is called, and after it was called with nothing, it is the machine's own,
/// looked up at most once a second: the root, and each file system of a device or a network that is mounted elsewhere.
/// Each is named by its label; without a label by the last component of its mount point, the root by "Root". Of several
/// that share a name the later mounted ones get " 1", " 2" and so on behind it.
std::vector<Volume> volumes();
/// Puts another table in force, for this process. Names must differ; of several on one mount point the first counts.
/// Not while another thread converts paths.
void setVolumes(std::vector<Volume> table);

/// The machine's table, made of the kernel's list of mounts (the form of /proc/self/mountinfo) and of labels by device.
std::vector<Volume> volumesOfMounts(std::string_view mounts, const std::map<std::string, std::string>& labels);

}  // namespace vornaset
