#pragma once

#include <string>
#include <utility>

namespace kestavon {

/// The state of one long-running scan. Two phases are equal when case and text are.
class ScanPhase {
public:
    enum class Kind { scanning, partial, failed, idle, finished };

    /// Idle: never run, or stopped by the user.
    ScanPhase() = default;

    /// Running; the text names the current step.
    static ScanPhase scanning(std::string text) { return {Kind::scanning, std::move(text)}; }
    /// Ended early with usable results; the text says why.
    static ScanPhase partial(std::string text) { return {Kind::partial, std::move(text)}; }
    /// Ended with an error; the text describes it.
    static ScanPhase failed(std::string text) { return {Kind::failed, std::move(text)}; }
    static ScanPhase idle() { return {}; }
    /// Ran to completion.
    static ScanPhase finished() { return {Kind::finished, {}}; }

    Kind kind() const { return m_kind; }
    /// The phase's text; empty for idle and finished.
    const std::string& text() const { return m_text; }
    bool isScanning() const { return m_kind == Kind::scanning; }

    friend bool operator==(const ScanPhase&, const ScanPhase&) = default;

private:
    ScanPhase(Kind kind, std::string text)
        : m_kind(kind)
        , m_text(std::move(text))
    {
    }

    Kind m_kind = Kind::idle;
    std::string m_text;
};

} // namespace kestavon
