#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/linux/removal/tree_survey.h"

#include <vector>

namespace kestavon {

/// Goes from folder to folder of a surveyed tree, or of its copy, with few of them open at a time,
/// however deep it is. No path is ever put together: one step down is one name, one step up is
/// "..", and after each step the folder must be the expected one.
class TreeCursor {
public:
    /// `identities` names the folders by number; it may still be growing, and outlives the cursor.
    TreeCursor(
        const TreeSurvey& survey, const std::vector<Identity>& identities, FileDescriptor top);

    /// The opened folder's descriptor, valid until the next call; -1 with `errno` when the folder
    /// cannot be reached: ESTALE when another lies there now.
    int go(std::uint32_t folder);

private:
    struct Step {
        std::uint32_t folder;
        FileDescriptor descriptor; ///< none for most folders far above
    };

    int leave(); // One level up; an error number or 0.
    int enter(std::uint32_t folder); // One level down.
    bool isExpected(int descriptor, std::uint32_t folder) const;

    const TreeSurvey& m_survey;
    const std::vector<Identity>& m_identities;
    std::vector<Step> m_steps; ///< from the top to where the cursor is
};

/// The identities of the surveyed folders, by number.
std::vector<Identity> folderIdentities(const TreeSurvey& survey);

/// Opens a folder for listing without following a link.
Result<FileDescriptor, int> openFolderIn(int parent, const char* name);

} // namespace kestavon
