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

/// One line that gives a user folder its place.
struct UserFolder {
    std::string_view variable; ///< "XDG_DOWNLOAD_DIR" and so on
    std::string path;
};

std::optional<UserFolder> userFolderOfLine(std::string_view line, const std::string& home)
{
    line = withoutLeadingBlanks(line);
    UserFolder folder;
    folder.variable = line.substr(0, line.find_first_of(" \t="));
    line = withoutLeadingBlanks(line.substr(folder.variable.size()));
    if (!folder.variable.starts_with("XDG_") || !folder.variable.ends_with("_DIR")
        || !take(line, "="))
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
    folder.path = normalisedPath(path.lexically_normal().native());
    return folder;
}

std::vector<UserFolder> userFoldersOf(std::string_view text, const std::string& home)
{
    std::vector<UserFolder> folders;
    while (!text.empty()) {
        const auto end = text.find('\n');
        if (auto folder = userFolderOfLine(text.substr(0, end), home))
            folders.push_back(std::move(*folder));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return folders;
}

} // namespace

std::vector<std::string> userFoldersNamedIn(std::string_view text, const std::string& home)
{
    std::vector<std::string> paths;
    for (auto& folder : userFoldersOf(text, home))
        paths.push_back(std::move(folder.path));
    return paths;
}

std::optional<std::string> downloadFolderNamedIn(std::string_view text, const std::string& home)
{
    std::optional<std::string> named;
    for (auto& folder : userFoldersOf(text, home)) {
        if (folder.variable == "XDG_DOWNLOAD_DIR")
            named = std::move(folder.path);
    }
    if (named && (*named == "/" || isAtOrBelow(home, *named)))
        return std::nullopt;
    return named;
}

} // namespace kestavon
