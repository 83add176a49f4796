#pragma once

#include "platform/host_layout.h"
#include "smartclean/smart_scanner.h"
#include "support/fake_platform.h"
#include "support/temporary_tree.h"

#include <ostream>
#include <string>
#include <vector>

namespace kestavon::test {

/// What the scanner found, as far as a test can know it beforehand.
struct FoundItem {
    std::string name; ///< below the attached disk
    std::int64_t bytes = 0;
    std::string reason;

    friend bool operator==(const FoundItem&, const FoundItem&) = default;
    friend std::ostream& operator<<(std::ostream& out, const FoundItem& item)
    {
        return out << item.name << " (" << item.bytes << " bytes, " << item.reason << ')';
    }
};

/// A Mac's disk that is attached here, with a home on it. Names of files are below the disk; those
/// that begin with "~/" are below the home.
class MacHome {
public:
    MacHome() { disk.folder("Users/alice/Library"); }

    /// Makes a file of `bytes` bytes, with the folders above it.
    void file(const std::string& name, std::int64_t bytes = 1) const
    {
        disk.file(below(name), bytes);
    }
    void folder(const std::string& name) const { disk.folder(below(name)); }
    std::string path(const std::string& name) const { return disk / below(name); }

    /// Installs an application whose Info.plist names this identifier.
    void install(const std::string& bundle, const std::string& identifier) const
    {
        disk.writeFile(below(bundle) + "/Contents/Info.plist",
            "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier
                + "</string></dict></plist>");
    }

    HostLayout layout() const { return makeHostLayout({.home = home, .systemRoot = disk.path()}); }
    SmartScannerTools tools() const
    {
        return {.clock = clock,
            .calendar = std::make_shared<SystemCalendar>(),
            .runningApplications = runningApplications};
    }
    SmartScanner scanner() const { return {layout(), tools()}; }

    std::vector<CleanupCandidate> candidates(
        JunkCategory category, const std::stop_token& stop = {}) const
    {
        return scanner().scanCategory(category, stop);
    }

    std::vector<FoundItem> scan(JunkCategory category, const std::stop_token& stop = {}) const
    {
        std::vector<FoundItem> items;
        for (const auto& candidate : candidates(category, stop)) {
            auto name = candidate.record.path;
            if (name.starts_with(home + '/'))
                name = std::string("~").append(name, home.size());
            else if (name.starts_with(disk.path()))
                name.erase(0, disk.path().size() + 1);
            items.push_back({std::move(name), candidate.estimatedBytes, candidate.reason});
        }
        return items;
    }

    TemporaryTree disk;
    std::string home = disk / "Users/alice"; ///< another spelling may be given
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<FakeRunningApplications> runningApplications
        = std::make_shared<FakeRunningApplications>();

private:
    static std::string below(const std::string& name)
    {
        return name.starts_with("~/") ? std::string("Users/alice").append(name, 1) : name;
    }
};

/// A token that was stopped long ago.
inline std::stop_token stopped()
{
    std::stop_source source;
    source.request_stop();
    return source.get_token();
}

} // namespace kestavon::test
