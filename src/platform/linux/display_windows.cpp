#include "core/domain/utf8.h"
#include "platform/application_windows.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <future>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>
#include <xcb/xcb.h>

namespace kestavon {

namespace {

constexpr auto patience = std::chrono::milliseconds(500);

/// Of what the C library allocated.
struct Freeing {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T> using FreedPointer = std::unique_ptr<T, Freeing>;
using Property = FreedPointer<xcb_get_property_reply_t>;

struct Disconnecting {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnecting>;

std::string hostName()
{
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

/// Classes are Latin-1, and often UTF-8 nevertheless.
std::string readable(std::string_view text)
{
    bool isUtf8 = true;
    for (std::size_t i = 0; isUtf8 && i < text.size();) {
        const auto length = utf8CharacterAt(text, i).length;
        isUtf8 = length > 0;
        i += length;
    }
    if (isUtf8)
        return std::string(text);
    std::string converted;
    for (const char c : text)
        appendUtf8(static_cast<unsigned char>(c), converted);
    return converted;
}

/// What a property of 32-bit numbers holds.
std::vector<std::uint32_t> numbersIn(const Property& property)
{
    if (!property || property->format != 32)
        return {};
    const auto* const first
        = static_cast<const std::uint32_t*>(xcb_get_property_value(property.get()));
    return {first, first + property->value_len};
}

std::string_view textIn(const Property& property)
{
    if (!property || property->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(property.get())), property->value_len};
}

/// The class in WM_CLASS, which follows the instance's name; each is ended by a NUL.
std::string classIn(std::string_view text)
{
    const auto instance = text.substr(0, text.find('\0'));
    auto name = text.substr(std::min(instance.size() + 1, text.size()));
    name = name.substr(0, name.find('\0'));
    return readable(name.empty() ? instance : name);
}

/// Asks an X server for its windows by the Extended Window Manager Hints 1.5.
class Inquiry {
public:
    explicit Inquiry(const std::string& display)
        : m_connection(xcb_connect(display.c_str(), nullptr))
    {
    }

    WindowsOfProcesses windows()
    {
        WindowsOfProcesses found;
        if (xcb_connection_has_error(m_connection.get()) || !learnAtoms())
            return found;
        const auto* const setup = xcb_get_setup(m_connection.get());
        for (auto roots = xcb_setup_roots_iterator(setup); roots.rem > 0; xcb_screen_next(&roots))
            addWindows(roots.data->root, found);
        return found;
    }

private:
    enum Name { clientList, process, type, dock, desktop, names };

    /// The answers that a window owes.
    struct Asked {
        xcb_get_property_cookie_t process;
        xcb_get_property_cookie_t type;
        xcb_get_property_cookie_t machine;
        xcb_get_property_cookie_t name;
    };

    bool learnAtoms()
    {
        constexpr std::array<std::string_view, names> texts{"_NET_CLIENT_LIST", "_NET_WM_PID",
            "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_DESKTOP"};
        std::array<xcb_intern_atom_cookie_t, names> asked{};
        for (std::size_t i = 0; i < names; ++i)
            asked[i] = xcb_intern_atom(m_connection.get(), 0,
                static_cast<std::uint16_t>(texts[i].size()), texts[i].data());
        for (std::size_t i = 0; i < names; ++i) {
            const FreedPointer<xcb_intern_atom_reply_t> reply(
                xcb_intern_atom_reply(m_connection.get(), asked[i], nullptr));
            if (!reply)
                return false;
            m_atoms[i] = reply->atom;
        }
        return true;
    }

    xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t property, std::uint32_t length)
    {
        return xcb_get_property(
            m_connection.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, length);
    }
    Property answer(xcb_get_property_cookie_t asked)
    {
        return Property(xcb_get_property_reply(m_connection.get(), asked, nullptr));
    }

    void addWindows(xcb_window_t root, WindowsOfProcesses& found)
    {
        constexpr std::uint32_t most = 4096;
        const auto windows = numbersIn(answer(ask(root, m_atoms[clientList], most)));
        std::vector<Asked> asked; // all at once: an answer takes as long as a hundred
        for (const auto window : windows)
            asked.push_back({ask(window, m_atoms[process], 1), ask(window, m_atoms[type], 8),
                ask(window, XCB_ATOM_WM_CLIENT_MACHINE, 64), ask(window, XCB_ATOM_WM_CLASS, 64)});
        for (const auto& window : asked)
            add(window, found);
    }

    void add(const Asked& window, WindowsOfProcesses& found)
    {
        const auto ids = numbersIn(answer(window.process));
        const auto types = numbersIn(answer(window.type));
        const auto machine = answer(window.machine);
        const auto name = answer(window.name);
        // The number of a process elsewhere is somebody else's here.
        auto host = textIn(machine);
        host = host.substr(0, host.find('\0'));
        if (ids.empty() || (!host.empty() && host != m_host))
            return;
        const auto isOfDesktop = !types.empty()
            && (types.front() == m_atoms[dock] || types.front() == m_atoms[desktop]);
        if (!isOfDesktop)
            found.try_emplace(static_cast<std::int32_t>(ids.front()), classIn(textIn(name)));
    }

    const Connection m_connection;
    const std::string m_host = hostName();
    std::array<xcb_atom_t, names> m_atoms{};
};

/// Asks on a thread of its own, which is left behind when the server does not answer, and asks that
/// server nothing more until it has.
class DisplayWindows final : public ApplicationWindows {
public:
    explicit DisplayWindows(std::string display)
        : m_display(std::move(display))
    {
        const auto* const usual = std::getenv("DISPLAY");
        if (m_display.empty() && usual)
            m_display = usual;
    }

    WindowsOfProcesses list() override
    {
        const std::lock_guard lock(m_mutex);
        if (m_display.empty())
            return {};
        if (!m_answer.valid() && !ask())
            return m_windows;
        if (m_answer.wait_for(m_isLate ? std::chrono::milliseconds(0) : patience)
            == std::future_status::ready) {
            m_windows = m_answer.get();
            m_isLate = false;
        } else {
            m_windows.clear();
            m_isLate = true;
        }
        return m_windows;
    }

private:
    bool ask()
    {
        std::packaged_task<WindowsOfProcesses()> inquiry(
            [display = m_display] { return Inquiry(display).windows(); });
        auto answer = inquiry.get_future();
        try {
            std::thread(std::move(inquiry)).detach();
        } catch (const std::system_error&) {
            return false;
        }
        m_answer = std::move(answer);
        return true;
    }

    std::string m_display; // fixed at construction

    std::mutex m_mutex; // guards all below
    std::future<WindowsOfProcesses> m_answer; ///< nobody has taken yet
    bool m_isLate = false;
    WindowsOfProcesses m_windows;
};

} // namespace

std::shared_ptr<ApplicationWindows> windowsOfDisplay(std::string display)
{
    return std::make_shared<DisplayWindows>(std::move(display));
}

} // namespace kestavon
