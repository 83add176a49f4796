#include "platform/property_list.h"

#include "platform/propertylist/property_list_forms.h"

#include <algorithm>
#include <iterator>

namespace kestavon {

const PropertyValue* PropertyValue::at(std::string_view key) const
{
    const auto* entries = as<Dictionary>();
    if (!entries)
        return nullptr;
    const auto found = std::find_if(entries->rbegin(), entries->rend(),
        [key](const PropertyEntry& entry) { return entry.key == key; });
    return found == entries->rend() ? nullptr : &found->value;
}

const std::string* PropertyValue::textAt(std::string_view key) const
{
    const auto* value = at(key);
    return value ? value->as<std::string>() : nullptr;
}

PropertyListResult parsePropertyList(std::string_view bytes, const PropertyListLimits& limits)
{
    if (bytes.size() > limits.fileBytes)
        return PropertyListProblem::tooLarge;
    return bytes.starts_with(binaryPropertyListMark) ? parseBinaryPropertyList(bytes, limits)
                                                     : parseXmlPropertyList(bytes, limits);
}

} // namespace kestavon
