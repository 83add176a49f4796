#pragma once

#include "support/temporary_folder.h"

#include <map>
#include <optional>
#include <string>

namespace kestavon::test {

/// What can be seen of an item and all in it: for each entry, by its path within the item, a line
/// with type, permissions, owner, time, content, link target, number of names and attributes (less
/// those named user.kestavon.*). Two pictures are equal when nothing was lost.
std::map<std::string, std::string> pictureOf(const std::string& path);

/// A temporary folder on another device than the usual ones; nothing where there is none.
class OtherDevice {
public:
    OtherDevice();
    ~OtherDevice();
    OtherDevice(const OtherDevice&) = delete;
    OtherDevice& operator=(const OtherDevice&) = delete;

    explicit operator bool() const { return !m_path.empty(); }
    const std::string& path() const { return m_path; }
    std::string operator/(const std::string& relative) const { return m_path + '/' + relative; }

private:
    std::string m_path;
};

} // namespace kestavon::test
