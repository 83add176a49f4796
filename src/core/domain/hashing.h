#pragma once

#include "core/domain/timestamp.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <type_traits>
#include <vector>

namespace kestavon {

/// One field's contribution to a record's hash.
template <class T> std::size_t hashField(const T& value)
{
    if constexpr (std::is_enum_v<T>)
        return static_cast<std::size_t>(value);
    else
        return std::hash<T>{}(value);
}

inline std::size_t hashField(const Timestamp& value)
{
    return std::hash<Timestamp::rep>{}(value.time_since_epoch().count());
}

template <class T> std::size_t hashField(const std::optional<T>& value)
{
    return value ? hashField(*value) + 1 : 0;
}

template <class T> std::size_t hashField(const std::vector<T>& values)
{
    std::size_t hash = values.size();
    for (const auto& value : values)
        hash = hash * 31 + hashField(value);
    return hash;
}

/// Folds the given fields, in order, into one hash.
template <class... Fields> std::size_t hashFields(const Fields&... fields)
{
    std::size_t hash = 0;
    ((hash = (hash ^ hashField(fields)) * 0x9E3779B97F4A7C15ULL + (hash >> 29)), ...);
    return hash;
}

} // namespace kestavon

/// Lets a record that lists its fields in `hashValue()` be a key of the standard's hashed
/// containers.
#define KESTAVON_HASHABLE(Record)                                                                  \
    template <> struct std::hash<Record> {                                                         \
        std::size_t operator()(const Record& record) const { return record.hashValue(); }          \
    }
