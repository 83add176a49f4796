#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kestavon {

/// Lets the user pick one folder. Main thread.
class FolderPicker {
public:
    using Done = std::function<void(std::optional<std::string> path)>;

    virtual ~FolderPicker() = default;
    /// Shows the choice, starting at `folder`, and later calls `done` on the main thread with the
    /// chosen absolute path, or with nothing when the user cancelled.
    virtual void pickFolder(const std::string& folder, Done done) = 0;
};

} // namespace kestavon
