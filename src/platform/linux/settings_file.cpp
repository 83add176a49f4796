#include "platform/settings_file.h"

#include "platform/linux/small_file.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <nlohmann/json.hpp>

namespace kestavon {

namespace {

using Json = nlohmann::ordered_json; // What another hand wrote keeps its order.

Json parsed(const std::string& text)
{
    return Json::parse(text, nullptr, /*allow_exceptions=*/false);
}

} // namespace

FileSettings::FileSettings(std::string path)
    : m_path(std::move(path))
{
}

bool FileSettings::flag(const std::string& key) const
{
    const auto settings = parsed(readSmallFile(m_path).bytes);
    if (!settings.is_object())
        return false;
    const auto found = settings.find(key);
    return found != settings.end() && found->is_boolean() && found->get<bool>();
}

void FileSettings::setFlag(const std::string& key, bool value)
{
    const auto file = readSmallFile(m_path);
    if (file.error != 0 && file.error != ENOENT)
        return;
    auto settings = file.error == ENOENT ? Json::object() : parsed(file.bytes);
    if (!settings.is_object()) {
        if (std::rename(m_path.c_str(), (m_path + ".broken").c_str()) != 0)
            return;
        settings = Json::object();
    }
    if (const auto known = settings.find(key); known != settings.end() && *known == value)
        return;
    settings[key] = value;
    constexpr int indentation = 2;
    replaceSmallFile(
        m_path, settings.dump(indentation, ' ', false, Json::error_handler_t::replace) + '\n');
}

} // namespace kestavon
