#pragma once

#include "core/domain/record_list.h"

#include <memory>

namespace kestavon::shots {

/// What a scan of a lived-in home finds: 418236 files and folders of 287.94 GB, 41.37 GB of it
/// hidden. The same list on every call.
std::shared_ptr<const RecordList> livedInHome();

} // namespace kestavon::shots
