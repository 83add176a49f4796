#include "platform/workspace.h"

#include "core/domain/removal_guard.h"
#include "platform/linux/desktop_program.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <string_view>

#include <sys/stat.h>

namespace kestavon {

namespace {

bool isAlphanumeric(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// The part before the colon (RFC 3986), in lower case; empty when the text has none, or is no URL.
std::string schemeOf(std::string_view url)
{
    const auto isSchemeCharacter
        = [](char c) { return isAlphanumeric(c) || c == '+' || c == '-' || c == '.'; };
    const auto isPlain = [](char c) { return c > ' ' && c != '\x7F'; };
    const auto colon = url.find(':');
    if (colon == std::string_view::npos || colon + 1 == url.size())
        return {};
    std::string scheme(url.substr(0, colon));
    const bool isUrl = !scheme.empty() && std::isalpha(static_cast<unsigned char>(scheme.front()))
        && std::ranges::all_of(scheme, isSchemeCharacter) && std::ranges::all_of(url, isPlain);
    if (!isUrl)
        return {};
    std::ranges::transform(scheme, scheme.begin(),
        [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return scheme;
}

/// Whether a program has said that it opens such URLs. xdg-open must not be asked: what nobody
/// opens it gives to a web browser, which makes a search of it.
bool hasHandler(const std::string& scheme)
{
    constexpr std::array<std::string_view, 4> always{"file", "http", "https", "mailto"};
    if (std::ranges::find(always, scheme) != always.end())
        return true;
    const auto handler
        = outputOfProgram("xdg-mime", {"query", "default", "x-scheme-handler/" + scheme});
    return handler && handler->find_first_not_of(" \t\r\n") != std::string::npos;
}

Workspace::Opened handOver(const std::string& url, std::string_view name)
{
    const auto quoted = "“" + std::string(name) + "” couldn’t be opened because ";
    switch (startDetached("xdg-open", url)) {
    case Start::running:
    case Start::succeeded: break;
    case Start::failed: return quoted + "no program on this computer opens it.";
    case Start::missing: return quoted + "xdg-open is not installed.";
    }
    return Done{};
}

} // namespace

Workspace::Opened DesktopWorkspace::openUrl(const std::string& url)
{
    const auto scheme = schemeOf(url);
    if (scheme.empty())
        return "“" + url + "” is not a link.";
    if (!hasHandler(scheme))
        return "No program on this computer opens “" + scheme + "” links.";
    return handOver(url, url);
}

Workspace::Opened DesktopWorkspace::openItem(const std::string& path)
{
    const std::string name(lastComponent(path));
    struct stat status { };
    if (::stat(path.c_str(), &status) != 0) {
        return "“" + name + "” couldn’t be opened because "
            + (errno == EACCES ? "you don’t have permission to access it." : "it doesn’t exist.");
    }
    return handOver(fileUrl(path), name);
}

std::string fileUrl(const std::string& path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : path) {
        if (isAlphanumeric(c) || std::string_view("/-._~").find(c) != std::string_view::npos) {
            url += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        url += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return url;
}

} // namespace kestavon
