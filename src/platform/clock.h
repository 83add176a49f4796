#pragma once

#include "core/domain/timestamp.h"

namespace kestavon {

/// The time of day. Any thread.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Timestamp now() const = 0;
};

/// The machine's clock.
class SystemClock final : public Clock {
public:
    Timestamp now() const override;
};

} // namespace kestavon
