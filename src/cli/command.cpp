#include "cli/command.h"

#include "cli/exit_code.h"
#include "cli/report.h"

#include <streambuf>

namespace kestavon {

namespace {

/// Hands everything on, and notes whether there was anything.
class WatchedOutput final : public std::streambuf {
public:
    explicit WatchedOutput(std::streambuf& target)
        : m_target(target)
    {
    }

    bool isUsed() const { return m_isUsed; }

private:
    int_type overflow(int_type c) override
    {
        m_isUsed = true;
        return m_target.sputc(traits_type::to_char_type(c));
    }
    std::streamsize xsputn(const char* text, std::streamsize length) override
    {
        m_isUsed = m_isUsed || length > 0;
        return m_target.sputn(text, length);
    }
    int sync() override { return m_target.pubsync(); }

    std::streambuf& m_target;
    bool m_isUsed = false;
};

int run(const CommandLine& line, AppModel& model, const Console& console)
{
    switch (line.verb) {
    case Verb::clean:
    case Verb::remove:
    case Verb::merge:
    case Verb::uninstall: return runRemoval(line, model, console);
    case Verb::safeAreaList:
    case Verb::safeAreaRestore:
    case Verb::safeAreaDelete:
    case Verb::safeAreaEmpty: return runSafeArea(line, model, console);
    default: break;
    }
    return runListing(line, model, console);
}

} // namespace

int runCommand(const CommandLine& line, AppModel& model, const Console& console)
{
    if (!line.folder.empty())
        model.setSelectedRoot(typedPath(line.folder));
    WatchedOutput watched(*console.out.rdbuf());
    std::ostream out(&watched);
    const auto code = run(line, model,
        {.out = out, .err = console.err, .width = console.width, .readLine = console.readLine});
    // Who reads documents reads one of a command that failed, too.
    if (line.form == OutputForm::json && code == failedExitCode && !watched.isUsed())
        printDocument(model, {}, out);
    out.flush();
    if (out)
        return code;
    console.complain("The output could not be written.");
    return failedExitCode;
}

} // namespace kestavon
