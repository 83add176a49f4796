#pragma once

#include "platform/host_layout.h"
#include "platform/protected_places.h"
#include "smartclean/smart_scanner.h"
#include "support/fake_platform.h"
#include "support/temporary_tree.h"

#include <algorithm>
#include <string>
#include <vector>

namespace kestavon::test {

/// A home of a Linux desktop. Names that begin with "~/" lie in it, others below the folder that
/// stands for "/".
class NativeHome {
public:
    NativeHome()
    {
        environment.home = disk / "home/alice";
        environment.systemRoot = disk.path();
        disk.folder("home/alice");
    }

    void file(const std::string& name, std::int64_t bytes = 1) const
    {
        disk.file(below(name), bytes);
    }
    std::string path(const std::string& name) const { return disk / below(name); }
    HostLayout layout() const { return makeHostLayout(environment); }

    std::vector<CleanupCandidate> candidates(JunkCategory category) const
    {
        const auto places = layout();
        const SmartScanner scanner(places,
            {.clock = clock,
                .calendar = std::make_shared<SystemCalendar>(),
                .runningApplications = runningApplications,
                .protectedPlaces
                = std::make_shared<const ProtectedPlaces>(ProtectedPlaces::listsFor(places)),
                .trash = trash});
        return scanner.scanCategory(category);
    }

    /// The items' names with their labels, as "~/name: label", in the order of the scan.
    std::vector<std::string> scan(JunkCategory category) const
    {
        std::vector<std::string> items;
        for (const auto& candidate : candidates(category))
            items.push_back(shortened(candidate.record.path) + ": " + candidate.reason);
        return items;
    }

    /// What every category together would remove.
    std::vector<std::string> everything() const
    {
        std::vector<std::string> paths;
        for (const auto& category : allCases<JunkCategory>()) {
            for (const auto& candidate : candidates(category.value))
                paths.push_back(shortened(candidate.record.path));
        }
        return paths;
    }

    std::string shortened(const std::string& path) const
    {
        const auto home = disk / "home/alice";
        return path.starts_with(home) ? std::string("~").append(path, home.size())
                                      : path.substr(disk.path().size() + 1);
    }

    TemporaryTree disk;
    HostEnvironment environment;
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<FakeTrash> trash;
    std::shared_ptr<FakeRunningApplications> runningApplications
        = std::make_shared<FakeRunningApplications>();

private:
    static std::string below(const std::string& name)
    {
        return name.starts_with("~/") ? std::string("home/alice").append(name, 1) : name;
    }
};

} // namespace kestavon::test
