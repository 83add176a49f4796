#pragma once

#include <string>

namespace kestavon {

/// What the program keeps between runs. Main thread.
class Settings {
public:
    virtual ~Settings() = default;
    /// The value last set for `key`; false when it was never set or cannot be read.
    virtual bool flag(const std::string& key) const = 0;
    /// Keeps the value. A disk that refuses it is not reported: the setting is offered again.
    virtual void setFlag(const std::string& key, bool value) = 0;
};

} // namespace kestavon
