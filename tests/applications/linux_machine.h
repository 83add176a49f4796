#pragma once

#include "platform/host_layout.h"
#include "support/temporary_tree.h"

#include <string>

namespace kestavon::test {

/// A disk that stands for a whole machine, with a home on it that is empty.
class LinuxMachine {
public:
    LinuxMachine() { disk.folder("home/alice"); }

    /// An entry of the desktop's; `more` are further lines.
    void entry(const std::string& path, const std::string& name, const std::string& exec,
        const std::string& more = "") const
    {
        disk.writeFile(path,
            "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n" + more);
    }
    HostLayout layout() const
    {
        return makeHostLayout({.home = disk / "home/alice", .systemRoot = disk.path()});
    }

    TemporaryTree disk;
};

} // namespace kestavon::test
