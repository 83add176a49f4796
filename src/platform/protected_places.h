#pragma once

#include "platform/file_error.h"
#include "platform/host_layout.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// The places that a machine needs to run, or a person needs to stay that person: never moved,
/// never removed, whatever was selected. Immutable: share it between threads freely.
class ProtectedPlaces {
public:
    struct Lists {
        std::vector<std::string> withContents; ///< protected with all that lies below
        std::vector<std::string> exceptions; ///< below one of the above, and yet not protected
        std::vector<std::string> foldersOnly; ///< protected themselves; what lies in them is not
        std::vector<std::string> folderNames; ///< folders of these names are no items of their own
        std::string systemRoot = "/"; ///< the folder that stands for "/" of an attached disk
    };

    explicit ProtectedPlaces(Lists lists);

    /// The lists for this machine and `layout`. Looks at the disk: the home's user folders.
    static Lists listsFor(const HostLayout& layout);

    /// Why the machine refuses to move or remove `path`: nothing when it does not. Asks twice: for
    /// the path as it is written, and for the path with its folder's links resolved. The last
    /// component is never followed. Mount points and what is no absolute path are refused too.
    std::optional<FileError> refusal(const std::string& path) const;

    /// Whether a selected item may be moved or removed: neither `refusal` nor the rule
    /// `isSafeToRemove` stands against it, as written and as resolved.
    bool mayRemove(const std::string& path) const;

private:
    struct Forms;
    Forms formsOf(const std::string& path) const;
    std::optional<FileError> refusal(const Forms& forms) const;
    bool isListed(const std::string& path) const;
    bool passesRemovalRule(const std::string& path) const;

    Lists m_lists;
};

} // namespace kestavon
