#include "platform/application_windows.h"
#include "platform/linux/file_descriptor.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace kestavon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// An X server without a screen that anybody sees, as far as the machine has one.
class XServer {
public:
    XServer()
    {
        std::array<int, 2> pipe{};
        if (::pipe2(pipe.data(), 0) != 0)
            return;
        const FileDescriptor reading(pipe[0]);
        FileDescriptor writing(pipe[1]);
        const auto descriptor = std::to_string(writing.get());
        std::array<const char*, 7> arguments{
            "Xvfb", "-displayfd", descriptor.c_str(), "-nolisten", "tcp", "-noreset", nullptr};
        ::posix_spawn_file_actions_t files{};
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_RDWR, 0);
        ::posix_spawn_file_actions_addclose(&files, reading.get());
        if (::posix_spawnp(&m_server, arguments[0], &files, nullptr,
                const_cast<char**>(arguments.data()), ::environ)
            != 0)
            m_server = 0;
        ::posix_spawn_file_actions_destroy(&files);
        writing.reset();
        std::string number;
        char c = 0;
        while (m_server != 0 && c != '\n' && ::read(reading.get(), &c, 1) == 1)
            number += c;
        if (c == '\n') // that is the last it has to say
            display = std::string(":").append(number, 0, number.size() - 1);
    }
    ~XServer()
    {
        if (m_server == 0)
            return;
        ::kill(m_server, SIGKILL);
        ::waitpid(m_server, nullptr, 0);
    }
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Stops answering, and goes on.
    void freeze() const { ::kill(m_server, SIGSTOP); }
    void thaw() const { ::kill(m_server, SIGCONT); }

    std::string display; ///< empty: there is none

private:
    ::pid_t m_server = 0;
};

/// A program that shows windows, and the window manager that lists them.
class Windows {
public:
    explicit Windows(const XServer& server)
        : m_connection(xcb_connect(server.display.c_str(), nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    {
    }
    ~Windows() { xcb_disconnect(m_connection); }
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    void add(std::uint32_t process, std::string_view windowClass, const char* type = nullptr,
        std::string_view host = {})
    {
        const auto window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, 0, window, m_root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {process});
        setText(window, XCB_ATOM_WM_CLASS, windowClass);
        if (type)
            setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {atom(type)});
        if (!host.empty())
            setText(window, XCB_ATOM_WM_CLIENT_MACHINE, host);
        m_windows.push_back(window);
        setNumbers(m_root, "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, m_windows);
        waitForServer();
    }

private:
    void waitForServer()
    {
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }
    xcb_atom_t atom(const char* name)
    {
        auto* const reply = xcb_intern_atom_reply(m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
            nullptr);
        const auto result = reply->atom;
        std::free(reply);
        return result;
    }
    void setNumbers(xcb_window_t window, const char* name, xcb_atom_t type,
        const std::vector<std::uint32_t>& numbers)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
            static_cast<std::uint32_t>(numbers.size()), numbers.data());
    }
    void setText(xcb_window_t window, xcb_atom_t name, std::string_view text)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, name, XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(text.size()), text.data());
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    std::vector<std::uint32_t> m_windows;
};

using namespace std::string_view_literals;

TEST(WindowsOfDisplay, AreThoseOfThisMachinesApplications)
{
    const XServer server;
    if (server.display.empty())
        GTEST_SKIP() << "there is no Xvfb";
    Windows windows(server);
    EXPECT_THAT(windowsOfDisplay(server.display)->list(), IsEmpty());
    std::array<char, 256> host{};
    ::gethostname(host.data(), host.size() - 1);
    windows.add(11, "editor\0Editor\0"sv, "_NET_WM_WINDOW_TYPE_NORMAL", host.data());
    windows.add(12, "caf\xE9\0"sv);
    windows.add(13, "panel\0Panel\0"sv, "_NET_WM_WINDOW_TYPE_DOCK");
    windows.add(14, "files\0Files\0"sv, "_NET_WM_WINDOW_TYPE_DESKTOP");
    windows.add(15, "remote\0Remote\0"sv, nullptr, "another-machine");
    windows.add(16, ""sv);
    EXPECT_THAT(windowsOfDisplay(server.display)->list(),
        ElementsAre(Pair(11, "Editor"), Pair(12, "café"), Pair(16, "")));
}

TEST(WindowsOfDisplay, AreNoneWhereNobodyAnswers)
{
    EXPECT_THAT(windowsOfDisplay("nonsense")->list(), IsEmpty());
    EXPECT_THAT(windowsOfDisplay(":65000")->list(), IsEmpty());
    const XServer server;
    if (server.display.empty())
        GTEST_SKIP() << "there is no Xvfb";
    Windows windows(server);
    windows.add(11, "editor\0Editor\0"sv);
    const auto listed = windowsOfDisplay(server.display);
    EXPECT_THAT(listed->list(), ElementsAre(Pair(11, "Editor")));
    server.freeze();
    for (int i = 0; i < 3; ++i)
        EXPECT_THAT(listed->list(), IsEmpty());
    server.thaw();
    while (listed->list().empty()) { }
    EXPECT_THAT(listed->list(), ElementsAre(Pair(11, "Editor")));
}

} // namespace
} // namespace kestavon
