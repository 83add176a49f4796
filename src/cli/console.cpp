#include "cli/console.h"

#include "cli/exit_code.h"
#include "cli/printable.h"

#include <csignal>
#include <cstdlib>
#include <iostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace kestavon {

namespace {

constexpr qint64 millisecondsBetweenLines = 100;

int terminalWidth()
{
    if (::isatty(STDERR_FILENO) != 1)
        return 0;
    constexpr int usualWidth = 80;
    winsize size{};
    const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

std::optional<std::string> lineOfTerminal()
{
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return line;
}

/// The beginning of `text` that takes at most `columns`, a character taking one.
std::string_view cutTo(std::string_view text, std::size_t columns)
{
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool startsCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
        if (startsCharacter && ++characters > columns)
            return text.substr(0, i);
    }
    return text;
}

} // namespace

void Console::complain(std::string_view sentence) const
{
    err << "kestavon: " << printablePath(sentence) << '\n' << std::flush;
}

Console processConsole()
{
    Console console{.out = std::cout, .err = std::cerr, .width = terminalWidth()};
    if (::isatty(STDIN_FILENO) == 1 && console.width > 0)
        console.readLine = lineOfTerminal;
    return console;
}

ProgressLine::ProgressLine(const Console& console)
    : m_console(console)
{
}

void ProgressLine::show(const std::string& text)
{
    if (m_console.width == 0)
        return;
    if (m_isShown && m_sinceLine.elapsed() < millisecondsBetweenLines)
        return;
    m_sinceLine.start();
    m_isShown = true;
    const auto line = printablePath(text);
    m_console.err << '\r' << cutTo(line, static_cast<std::size_t>(m_console.width) - 1) << "\x1B[K"
                  << std::flush;
}

void ProgressLine::clear()
{
    if (std::exchange(m_isShown, false))
        m_console.err << "\r\x1B[K" << std::flush;
}

} // namespace kestavon
