#pragma once

#include "cli/command_line.h"
#include "core/model/app_model.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>

namespace kestavon {

/// Fields of the model, written into one document in this order: the short ones come first, so that
/// a reader of a long document has them at once.
enum class DocumentField {
    selectedRoot,
    scanPhase,
    duplicatePhase,
    securityPhase,
    storageSummary,
    diskSpace,
    memory,
    history,
    quarantine, ///< with what earlier runs moved there, as of the last look at it
    junkGroups,
    duplicates,
    cleanupCandidates,
    installedApps,
    startupItems,
    findings,
    processes,
    records,
    largestRecords, ///< as `records`, the hundred largest files only
};

/// Prints these fields as one JSON document.
void printDocument(
    const AppModel& model, std::initializer_list<DocumentField> fields, std::ostream& out);

/// One row of a list of files: the bytes and the path.
void printFileRow(std::ostream& out, std::int64_t bytes, std::string_view path);
/// A path for `xargs -0`.
void printNullEnded(std::ostream& out, std::string_view path);

/// The files that the section "Large Files" shows.
std::vector<std::uint32_t> largestRecords(const AppModel& model);

/// Calls `visit` with the record position of each copy that a merge would remove, group after
/// group.
void forEachSpareCopy(
    const DuplicateList& duplicates, const std::function<void(std::uint32_t)>& visit);

} // namespace kestavon
