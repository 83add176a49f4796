#pragma once

#include <QElapsedTimer>

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace kestavon {

/// Where a command reads and writes. Main thread.
struct Console {
    std::ostream& out; ///< what it found
    std::ostream& err; ///< progress, questions and what went wrong
    /// Columns of the terminal that `err` is; 0 when it is none, and then no progress is shown.
    int width = 0;
    /// Reads a line that a person types, without its end; nothing when there is none any more.
    /// Empty where nobody can be asked.
    std::function<std::optional<std::string>()> readLine = {};

    /// Says in one sentence what went wrong. The text may hold any bytes.
    void complain(std::string_view sentence) const;
};

/// The console of this process.
Console processConsole();

/// A line on the terminal that tells how far something is, rewritten ten times a second at most.
class ProgressLine {
public:
    explicit ProgressLine(const Console& console);
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(const std::string& text);
    void clear();

private:
    const Console& m_console;
    QElapsedTimer m_sinceLine;
    bool m_isShown = false;
};

} // namespace kestavon
