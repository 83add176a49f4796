#include "core/domain/file_name.h"

namespace kestavon {

std::string_view fileExtension(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return {};
    return name.substr(dot + 1);
}

std::string_view withoutExtension(std::string_view name)
{
    const auto extension = fileExtension(name);
    return extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
}

} // namespace kestavon
