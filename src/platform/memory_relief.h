#pragma once

#include <cstddef>

namespace kestavon {

/// Makes the system reclaim memory that it only keeps in case.
class MemoryRelief {
public:
    virtual ~MemoryRelief() = default;
    /// Gives back the memory that this process does not use, and takes and returns some, so that
    /// pages nobody has used for long have to go. Takes a second or so, and ends with a pause in
    /// which the counters settle. Not on the main thread.
    virtual void relieve() = 0;
};

class SystemMemoryRelief final : public MemoryRelief {
public:
    void relieve() override;

    static constexpr std::size_t blockBytes = 33'554'432;
    static constexpr std::size_t blockAlignment = 4'096;
    static constexpr int blocks = 8; ///< one after the other: never more than one is held

    /// Takes one block, writes to all of it, and returns it; false when there is no memory for it.
    static bool useBlock();
};

} // namespace kestavon
