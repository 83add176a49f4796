#pragma once

#include "platform/trash.h"

#include <chrono>
#include <thread>

namespace kestavon::test {

/// A Trash that is copying the first item until it is stopped.
class StuckTrash final : public Trash {
public:
    FileResult<std::string> trashItem(const std::string& path, const TrashOptions& options) override
    {
        for (std::int64_t bytes = 1; !options.stop.stop_requested(); ++bytes) {
            options.progress(bytes, 1'000'000);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return moveError(FileError::Kind::cancelled, path, "Trash");
    }
    void forgetItem(const std::string&) override { }
    std::vector<TrashPlace> trashPlaces() const override { return {}; }
};

} // namespace kestavon::test
