#include "core/model/questions.h"

#include "platform/byte_count.h"

namespace kestavon::questions {

namespace {

constexpr auto deletionMessage
    = "This cannot be undone. Files will be permanently removed from your Mac.";

} // namespace

Question removeFiles(ActionKind action, std::size_t count)
{
    if (action == ActionKind::trash) {
        return {
            .title = "Move " + std::to_string(count) + " files to Trash?",
            .message = "Files will be moved to the Trash. You can restore them from there.",
            .action = "Move to Trash",
        };
    }
    return {
        .title = "Permanently delete " + std::to_string(count) + " files?",
        .message = deletionMessage,
        .action = "Delete Forever",
    };
}

Question moveToSafeArea(std::size_t count)
{
    return {
        .title = "Move " + std::to_string(count) + " items to Safe Area?",
        .message = "Files go to Safe Area — you can restore or permanently delete them from there.",
        .action = "Move to Safe Area",
    };
}

Question mergeDuplicates(bool toTrash, std::size_t groups)
{
    if (toTrash) {
        return {
            .title = "Merge " + std::to_string(groups) + " duplicate groups?",
            .message = "The newest copy in each group is kept. All other copies move to the Trash.",
            .action = "Merge & Move Copies to Trash",
            .destructive = true,
        };
    }
    return {
        .title = "Permanently delete duplicate copies?",
        .message = "This cannot be undone. All duplicate copies except the newest will be "
                   "permanently deleted.",
        .action = "Merge & Delete Forever",
        .destructive = true,
    };
}

Question cleanAllJunk(std::int64_t totalBytes)
{
    return {
        .title = "Clean all " + fileByteCount(totalBytes) + " of junk?",
        .message
        = "All items move to Safe Area. You can restore or permanently delete them from there.",
        .action = "Move Everything to Safe Area",
        .destructive = true,
    };
}

Question restoreAll(std::size_t count)
{
    return {
        .title = "Restore all " + std::to_string(count) + " items?",
        .message = "Files will be moved back to their original locations.",
        .action = "Restore All",
    };
}

Question deleteAll(std::size_t count)
{
    return {
        .title = "Permanently delete all " + std::to_string(count) + " items?",
        .message = deletionMessage,
        .action = "Delete All Forever",
        .destructive = true,
    };
}

Question uninstall(const std::string& name, bool appOnly)
{
    return {
        .title = "Uninstall \"" + name + "\"?",
        .message = "The app and its leftover files will be moved to the Trash.",
        .action = appOnly ? "Move App Only to Trash" : "Move App + All Leftovers to Trash",
        .destructive = true,
    };
}

Question removeLeftovers(const std::string& name)
{
    return {
        .title = "Remove leftovers of \"" + name + "\"?",
        .message = "Its leftover files will be moved to the Trash. The app itself is not touched.",
        .action = "Move All Leftovers to Trash",
        .destructive = true,
    };
}

Question deleteHeld(const std::string& name)
{
    return {
        .title = "Permanently delete \"" + name + "\"?",
        .message = deletionMessage,
        .action = "Delete Forever",
        .destructive = true,
    };
}

} // namespace kestavon::questions
