#pragma once

#include <cstdint>
#include <optional>

namespace kestavon {

/// Asks processes to end. Any thread; returns at once.
class ProcessSignals {
public:
    virtual ~ProcessSignals() = default;
    /// When the process started, in clock ticks since boot; nothing when there is none.
    virtual std::optional<std::uint64_t> startOf(std::int32_t process) const = 0;
    /// Sends SIGTERM to the process of this id that started at `startedAt`, and to no other: an id
    /// may belong to another process by now. False when it is gone or could not be told.
    virtual bool terminate(std::int32_t process, std::uint64_t startedAt) = 0;
};

class SystemProcessSignals final : public ProcessSignals {
public:
    std::optional<std::uint64_t> startOf(std::int32_t process) const override;
    bool terminate(std::int32_t process, std::uint64_t startedAt) override;
};

} // namespace kestavon
