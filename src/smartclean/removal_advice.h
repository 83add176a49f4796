#pragma once

#include "core/domain/cleanup_candidate.h"

#include <string_view>

namespace kestavon {

/// What removing the item means, in one sentence for a person: why it can go, and what it costs to
/// have it again. Where something cannot be had again, that is what it says. Any thread.
std::string_view removalAdvice(const CleanupCandidate& item);

} // namespace kestavon
