#pragma once

#include <string>

namespace kestavon {

/// The desktop around the program. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// Opens a URL with the desktop's handler for it. False when there is none, or the text is no
    /// URL; nothing is reported to the user.
    virtual bool openUrl(const std::string& url) = 0;
};

/// Hands URLs to xdg-open(1), without waiting for what it does with them.
class DesktopWorkspace final : public Workspace {
public:
    bool openUrl(const std::string& url) override;
};

} // namespace kestavon
