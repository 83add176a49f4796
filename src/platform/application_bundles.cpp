#include "platform/application_bundles.h"

#include "platform/property_list.h"

namespace kestavon {

namespace {

/// An empty identifier would be one that everything begins with.
std::optional<std::string> textIn(const PropertyValue& list, std::string_view key)
{
    const auto* const text = list.textAt(key);
    return text && !text->empty() ? std::optional(*text) : std::nullopt;
}

} // namespace

BundleInfo bundleInfo(const std::string& path)
{
    auto list = readPropertyList(path + "/Contents/Info.plist");
    if (!list && list.error() == PropertyListProblem::unreadable)
        list = readPropertyList(path + "/Info.plist");
    if (!list)
        return {};
    auto name = textIn(*list, "CFBundleDisplayName");
    if (!name)
        name = textIn(*list, "CFBundleName");
    return {.identifier = textIn(*list, "CFBundleIdentifier"), .name = std::move(name)};
}

} // namespace kestavon
