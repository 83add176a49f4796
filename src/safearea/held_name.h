#pragma once

#include "core/domain/uuid.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestavon {

/// The first `count` user-perceived characters of a name, at most `bytes` bytes of it; a byte that
/// is no part of valid UTF-8 counts as a character of its own.
std::string_view leadingCharacters(std::string_view name, std::size_t count, std::size_t bytes);

/// The name under which an item that was called `name` is held: its identifier, a hyphen and the
/// first 80 characters, fewer where the whole would have more than `longest` bytes.
std::string heldName(const Uuid& id, std::string_view name, std::size_t longest);

/// The identifier in the name of a held item; nothing for any other name.
std::optional<Uuid> idOfHeldName(std::string_view heldName);

} // namespace kestavon
