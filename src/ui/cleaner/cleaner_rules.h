#pragma once

#include "core/domain/candidate_list.h"
#include "platform/calendar.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestavon {

/// How a suggestion is drawn, by its reason.
struct SuggestionLook {
    std::string_view symbol;
    std::string_view color;

    friend bool operator==(const SuggestionLook&, const SuggestionLook&) = default;
};

SuggestionLook suggestionLook(std::string_view reason);

/// "8 of 126 selected"
QString cleanupSelectionText(std::size_t selected, std::size_t suggested);
/// "14.39 GB to reclaim"
QString reclaimText(std::int64_t bytes);
/// Whether the all-button empties the selection instead of filling it.
bool allAreSelected(std::size_t selected, std::size_t suggested);
/// "Modified 16 Nov 2026 at 14:05"; a dash for a date that is not known.
QString modifiedText(std::optional<Timestamp> modifiedAt, const Calendar& calendar);
/// The question before `selected` suggestions move.
ConfirmationTexts cleanupQuestion(std::size_t selected);

/// The bytes of the selected candidates together; some nanoseconds for each candidate.
std::int64_t selectedBytes(const CandidateList& candidates, const CandidateSelection& selection);

} // namespace kestavon
