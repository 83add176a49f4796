#pragma once

#include "core/domain/result.h"
#include "core/domain/timestamp.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestavon {

struct PropertyEntry;

/// One value of a property list, with all that it holds.
struct PropertyValue {
    struct Data {
        std::string bytes;
        friend bool operator==(const Data&, const Data&) = default;
    };
    using Array = std::vector<PropertyValue>;
    using Dictionary
        = std::vector<PropertyEntry>; ///< as written; of equal keys the last one counts

    /// Texts are UTF-8 as far as the file's were, and hold no NUL. Integers beyond 64 bits stand at
    /// the limit. Sets are arrays, and the references of archives are integers.
    std::variant<std::string, bool, std::int64_t, double, Timestamp, Data, Array, Dictionary>
        content;

    /// The content when it is of this type, else null.
    template <class T> const T* as() const { return std::get_if<T>(&content); }

    /// The value under `key`; null when there is none, or this is no dictionary.
    const PropertyValue* at(std::string_view key) const;
    /// The text under `key`; null when there is none, or it is no text.
    const std::string* textAt(std::string_view key) const;

    friend bool operator==(const PropertyValue&, const PropertyValue&) = default;
};

struct PropertyEntry {
    std::string key;
    PropertyValue value;

    friend bool operator==(const PropertyEntry&, const PropertyEntry&) = default;
};

/// Why a property list gave no value.
enum class PropertyListProblem {
    unreadable, ///< there is no such regular file, or it cannot be read
    tooLarge, ///< one of `PropertyListLimits`
    malformed,
};

/// What a list may hold. A few hundred bytes can stand for gigabytes, so these count what comes out
/// of the file, and not only the file.
struct PropertyListLimits {
    std::size_t fileBytes = std::size_t{8} << 20;
    std::size_t textBytes = std::size_t{16} << 20; ///< of all texts, keys and data together
    std::size_t values = 200'000;
    std::size_t depth = 100; ///< of arrays and dictionaries in one another
};

using PropertyListResult = Result<PropertyValue, PropertyListProblem>;

/// The value that a property list stands for: XML (UTF-8 or UTF-16; its document type is never
/// looked up, and entities of its own are malformed) or binary, version 00. Any bytes may be given:
/// time and memory stay in proportion to them and to the limits. Any thread.
PropertyListResult parsePropertyList(std::string_view bytes, const PropertyListLimits& limits = {});

/// The value of the property list in the file at `path`; a link to one is followed. Never waits for
/// a pipe or a device. Not on the main thread.
PropertyListResult readPropertyList(const std::string& path, const PropertyListLimits& limits = {});

} // namespace kestavon
