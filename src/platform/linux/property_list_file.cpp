#include "platform/linux/small_file.h"
#include "platform/property_list.h"

#include <cerrno>

namespace kestavon {

PropertyListResult readPropertyList(const std::string& path, const PropertyListLimits& limits)
{
    const auto file = readSmallFile(path, limits.fileBytes);
    if (file.error == EFBIG)
        return PropertyListProblem::tooLarge;
    if (file.error != 0)
        return PropertyListProblem::unreadable;
    return parsePropertyList(file.bytes, limits);
}

} // namespace kestavon
