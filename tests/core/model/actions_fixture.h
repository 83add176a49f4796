#pragma once

#include "core/model/app_model.h"
#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "support/temporary_folder.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace kestavon::test {

/// A model over real files in a temporary home, after a scan that found them.
class AppModelFixture : public testing::Test {
protected:
    AppModelFixture() { machine.home = folder.path(); }

    /// Writes the files, five bytes each, and lets a scan find them; "name/" makes a folder.
    void scan(const std::vector<std::string>& names)
    {
        if (!model)
            model = std::make_unique<AppModel>(scanner, machine.platform());
        std::vector<FileRecord> records;
        for (const auto& name : names) {
            if (name.ends_with('/'))
                records.push_back({.path = folder.makeFolder(name.substr(0, name.size() - 1)),
                    .isDirectory = true});
            else
                records.push_back({.path = folder.writeFile(name, "12345"), .size = 5});
        }
        model->startStorageScan();
        scanner->finishWith(folder.path(), records);
        ASSERT_TRUE(processEventsUntil([&] { return !model->scanPhase().isScanning(); }));
    }

    RecordPick pick(std::vector<std::uint32_t> positions) const
    {
        return {.records = model->records(), .positions = std::move(positions)};
    }

    /// Runs an operation to its end and returns its error.
    template <class Operation> std::string await(Operation operation)
    {
        std::optional<std::string> result;
        operation([&result](const std::string& error) { result = error; });
        EXPECT_TRUE(processEventsUntil([&result] { return result.has_value(); }));
        return result.value_or("never finished");
    }

    const ActivityEvent& lastEvent() const { return model->history().front(); }
    bool exists(const std::string& name) const
    {
        return std::filesystem::exists(std::filesystem::symlink_status(folder / name));
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < model->records()->size(); ++i)
            result.emplace_back(model->records()->name(i));
        return result;
    }

    TemporaryFolder folder;
    FakeMachine machine;
    std::shared_ptr<FakeScanner> scanner = std::make_shared<FakeScanner>();
    std::unique_ptr<AppModel> model;
};

} // namespace kestavon::test
