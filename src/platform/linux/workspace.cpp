#include "platform/workspace.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestavon {

namespace {

/// The part before the colon (RFC 3986); empty when the text has none, or is no URL.
std::string_view schemeOf(std::string_view url)
{
    const auto isSchemeCharacter = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '-' || c == '.';
    };
    const auto isPlain = [](char c) { return c > ' ' && c != '\x7F'; };
    const auto colon = url.find(':');
    if (colon == std::string_view::npos || colon + 1 == url.size())
        return {};
    const auto scheme = url.substr(0, colon);
    const bool isUrl = !scheme.empty() && std::isalpha(static_cast<unsigned char>(scheme.front()))
        && std::ranges::all_of(scheme, isSchemeCharacter) && std::ranges::all_of(url, isPlain);
    return isUrl ? scheme : std::string_view();
}

/// How a program is started that has nothing to do with this one any more.
class DetachedStart {
public:
    DetachedStart()
    {
        ::posix_spawn_file_actions_init(&m_files);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::posix_spawn_file_actions_addopen(&m_files, stream, "/dev/null", O_RDWR, 0);

        ::posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&m_attributes, &signals);
        ::sigaddset(&signals, SIGPIPE);
        ::sigaddset(&signals, SIGCHLD);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signals);
        ::posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~DetachedStart()
    {
        ::posix_spawn_file_actions_destroy(&m_files);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    DetachedStart(const DetachedStart&) = delete;
    DetachedStart& operator=(const DetachedStart&) = delete;

    /// Whether the program was found and started.
    bool run(std::string program, std::string argument) const
    {
        char* const arguments[] = {program.data(), argument.data(), nullptr};
        ::pid_t child = 0;
        if (::posix_spawnp(&child, program.c_str(), &m_files, &m_attributes, arguments, ::environ)
            != 0)
            return false;
        // Someone must take the exit status, or the child stays as a zombie. It may run for as long
        // as the browser it became.
        std::thread([child] {
            while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) { }
        }).detach();
        return true;
    }

private:
    ::posix_spawn_file_actions_t m_files{};
    ::posix_spawnattr_t m_attributes{};
};

} // namespace

bool DesktopWorkspace::openUrl(const std::string& url)
{
    return !schemeOf(url).empty() && DetachedStart().run("xdg-open", url);
}

} // namespace kestavon
