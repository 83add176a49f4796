#pragma once

#include <functional>
#include <string_view>

namespace kestavon {

/// For containers of texts in which a part of another text can be looked up without a copy; their
/// keys compare with `std::equal_to<>`.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>()(text);
    }
};

} // namespace kestavon
