#pragma once

#include "platform/linux/removal/tree_survey.h"

#include <string>

namespace kestavon {

/// Looks at a finished copy and compares it with what was surveyed of the original: every entry
/// must be there, and no other, each of the same kind and size, and names of one file must be names
/// of one file again. 0, or the error number: EIO for a copy that is not complete.
int verifyCopy(const TreeSurvey& original, int copyFolder, const std::string& copyName,
    const std::stop_token& stop);

} // namespace kestavon
