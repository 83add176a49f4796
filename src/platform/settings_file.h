#pragma once

#include "platform/settings.h"

#include <string>

namespace kestavon {

/// Settings in one small JSON file. The file is read each time a flag is asked for, so that another
/// running copy of the program is heard.
class FileSettings final : public Settings {
public:
    /// `path` is absolute; neither the file nor its folders need to exist.
    explicit FileSettings(std::string path);

    /// False also when the file is missing, unreadable or broken, or holds no Boolean for `key`.
    bool flag(const std::string& key) const override;

    /// Replaces the file as a whole, readable by its owner only, so that neither a crash nor a full
    /// disk leaves half of one. What else the file says stays; a file that cannot be understood is
    /// put aside under the name with ".broken" added, and one that cannot be read is left alone.
    void setFlag(const std::string& key, bool value) override;

private:
    std::string m_path;
};

} // namespace kestavon
