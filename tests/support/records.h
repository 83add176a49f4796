#pragma once

#include "core/domain/file_record.h"

#include <string>
#include <utility>

namespace kestavon::test {

/// A file as a scan finds it; hidden when its name says so.
inline FileRecord file(
    std::string path, std::int64_t size, std::optional<Timestamp> modifiedAt = {})
{
    FileRecord record;
    record.id = Uuid::random();
    record.isHidden = path[path.rfind('/') + 1] == '.';
    record.path = std::move(path);
    record.size = size;
    record.modifiedAt = modifiedAt;
    return record;
}

inline FileRecord folder(std::string path)
{
    auto record = file(std::move(path), 0);
    record.isDirectory = true;
    return record;
}

} // namespace kestavon::test
