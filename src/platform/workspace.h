#pragma once

#include "core/domain/result.h"

#include <string>

namespace kestavon {

/// The desktop around the program. Any thread but the main one: finding out what opens something,
/// and whether it did, takes a moment.
class Workspace {
public:
    /// Done, or why not: one sentence for a person.
    using Opened = Result<Done, std::string>;

    virtual ~Workspace() = default;

    /// Opens a URL with the desktop's program for it.
    virtual Opened openUrl(const std::string& url) = 0;
    /// Opens the file or folder at an absolute path with the desktop's program for it. The path's
    /// bytes count, whether they are text or not.
    virtual Opened openItem(const std::string& path) = 0;
};

/// Hands URLs to xdg-open(1). It hears of failures that show within a moment and does not wait for
/// the program that was opened.
class DesktopWorkspace final : public Workspace {
public:
    Opened openUrl(const std::string& url) override;
    Opened openItem(const std::string& path) override;
};

/// The URL that names the file at an absolute path, every byte of it: what is not a plain letter,
/// digit or mark stands as %XX.
std::string fileUrl(const std::string& path);

} // namespace kestavon
