#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/confirmation.h"

#include <QString>

#include <cstddef>
#include <cstdint>

namespace kestavon {

/// "38 groups · 6.84 GB reclaimable"
QString duplicatesSummary(std::size_t groups, std::int64_t reclaimableBytes);
/// "3 copies"
QString copiesText(std::size_t files);
/// "Save 2.14 GB"
QString savingText(std::int64_t bytes);
/// "1.2 GB of 6.84 GB": how far the search has come; empty while it does not know.
QString progressText(const DuplicateProgress& progress);

/// The question before the copies of all groups go, to the Trash or for good.
ConfirmationTexts mergeQuestion(bool toTrash, std::size_t groups);

} // namespace kestavon
