#include "platform/linux/desktop_program.h"

#include "platform/linux/file_descriptor.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <future>
#include <memory>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestavon {

namespace {

using namespace std::chrono_literals;

/// How a program is started that has nothing to do with this one: a session of its own, the usual
/// signals, no input; its output goes to `output`, or nowhere.
class ProgramStart {
public:
    explicit ProgramStart(int output = -1)
    {
        ::posix_spawn_file_actions_init(&m_files);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::posix_spawn_file_actions_addopen(&m_files, stream, "/dev/null", O_RDWR, 0);
        if (output >= 0)
            ::posix_spawn_file_actions_adddup2(&m_files, output, STDOUT_FILENO);

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
    ~ProgramStart()
    {
        ::posix_spawn_file_actions_destroy(&m_files);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    ProgramStart(const ProgramStart&) = delete;
    ProgramStart& operator=(const ProgramStart&) = delete;

    /// The child; nothing when the program was not found.
    std::optional<::pid_t> run(std::string program, std::vector<std::string> arguments) const
    {
        std::vector<char*> pointers{program.data()};
        for (auto& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        ::pid_t child = 0;
        if (::posix_spawnp(
                &child, program.c_str(), &m_files, &m_attributes, pointers.data(), ::environ)
            != 0)
            return std::nullopt;
        return child;
    }

private:
    ::posix_spawn_file_actions_t m_files{};
    ::posix_spawnattr_t m_attributes{};
};

/// Whether the child ended well; waits until it has ended.
bool endedWell(::pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Reads to the end, for five seconds and 64 KiB at most; nothing when that was not enough.
std::optional<std::string> readOutput(int descriptor)
{
    constexpr std::size_t longest = 64 * 1024;
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    std::string text;
    while (text.size() < longest) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        ::pollfd waited{.fd = descriptor, .events = POLLIN, .revents = 0};
        const int ready = left.count() > 0 ? ::poll(&waited, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return std::nullopt;
        char buffer[4096];
        const auto count = ::read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return text;
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return std::nullopt;
}

} // namespace

Start startDetached(const std::string& program, const std::string& argument)
{
    const auto child = ProgramStart().run(program, {argument});
    if (!child)
        return Start::missing;
    auto ended = std::make_shared<std::promise<bool>>();
    auto result = ended->get_future();
    // Someone must take the exit status, or the child stays as a zombie. It may run for as long as
    // the browser it became.
    std::thread([child = *child, ended] { ended->set_value(endedWell(child)); }).detach();
    if (result.wait_for(2s) != std::future_status::ready)
        return Start::running;
    return result.get() ? Start::succeeded : Start::failed;
}

std::optional<std::string> outputOfProgram(
    const std::string& program, const std::vector<std::string>& arguments)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    const auto child = ProgramStart(writing.get()).run(program, arguments);
    writing.reset();
    if (!child)
        return std::nullopt;
    auto text = readOutput(reading.get());
    if (!text)
        ::kill(-*child, SIGKILL); // its session, and so whatever it waits for
    return endedWell(*child) ? text : std::nullopt;
}

} // namespace kestavon
