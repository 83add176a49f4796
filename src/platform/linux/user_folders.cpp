#include "platform/linux/user_folders.h"

#include "core/domain/removal_guard.h"
#include "platform/host_layout.h"

#include <filesystem>

namespace kestavon {

namespace {

std::string_view withoutLeadingBlanks(std::string_view text)
{
    const auto start = text.find_first_not_of(" \t");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// Takes `word` off the front of `text`; false when `text` does not begin with it.
bool take(std::string_view& text, std::string_view word)
{
    if (!text.starts_with(word))
        return false;
    text.remove_prefix(word.size());
    return true;
}

/// What stands between the quotes, the shell's backslashes resolved; `text` follows the first.
std::optional<std::string> quotedText(std::string_view text)
{
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"')
            return value;
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        value += text[i];
    }
    return std::nullopt;
}

std::optional<std::string> downloadFolderOfLine(std::string_view line, const std::string& home)
{
    line = withoutLeadingBlanks(line);
    if (!take(line, "XDG_DOWNLOAD_DIR"))
        return std::nullopt;
    line = withoutLeadingBlanks(line);
    if (!take(line, "="))
        return std::nullopt;
    line = withoutLeadingBlanks(line);
    if (!take(line, "\""))
        return std::nullopt;
    const bool isInHome = take(line, "$HOME");
    const auto value = quotedText(line);
    if (!value || (!value->starts_with('/') && !(isInHome && value->empty())))
        return std::nullopt;
    // People write these lines by hand: "$HOME//Downloads/." is the same folder.
    const auto path = std::filesystem::path(isInHome ? home + *value : *value);
    return normalisedPath(path.lexically_normal().native());
}

} // namespace

std::optional<std::string> downloadFolderNamedIn(std::string_view text, const std::string& home)
{
    std::optional<std::string> folder;
    while (!text.empty()) {
        const auto end = text.find('\n');
        if (auto named = downloadFolderOfLine(text.substr(0, end), home))
            folder = std::move(named);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    if (folder && (*folder == "/" || isAtOrBelow(home, *folder)))
        return std::nullopt;
    return folder;
}

} // namespace kestavon
