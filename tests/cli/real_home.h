#pragma once

#include "cli/command.h"
#include "core/model/app_model.h"
#include "platform/platform.h"
#include "storage/file_scanner.h"
#include "support/temporary_tree.h"

#include <deque>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kestavon::test {

/// Runs commands as the program does, on a home that is really there, each in a model of its own,
/// as if each were a process.
class CommandTest : public testing::Test {
protected:
    CommandTest()
    {
        home.makeFolder("files");
        environment.home = home.path();
    }

    int run(const std::vector<std::string>& arguments)
    {
        out.str({});
        err.str({});
        out.clear();
        const auto line = readCommandLine(arguments);
        EXPECT_EQ(line.error, "");
        auto seen = environment;
        seen.kind = line.layout;
        auto platform = systemPlatform(seen);
        const auto limit
            = line.memoryLimit > 0 ? line.memoryLimit : FileScanner::standardMemoryLimit;
        auto scanner = std::make_shared<FileScanner>(
            platform.layout.scanExclusions, limit, [] { return std::uint64_t{50'000'000}; });
        AppModel model(std::move(scanner), std::move(platform));
        Console console{.out = out, .err = err};
        if (!answers.empty())
            console.readLine = [this]() -> std::optional<std::string> {
                if (answers.empty())
                    return std::nullopt;
                auto answer = answers.front();
                answers.pop_front();
                return answer;
            };
        return runCommand(line, model, console);
    }

    /// The document that the command printed. Fails the test when it is none.
    nlohmann::json document() const { return nlohmann::json::parse(out.str()); }
    std::string files() const { return home / "files"; }
    bool isThere(const std::string& relative) const
    {
        return std::filesystem::symlink_status(home / relative).type()
            != std::filesystem::file_type::not_found;
    }

    TemporaryTree home;
    HostEnvironment environment;
    std::ostringstream out;
    std::ostringstream err;
    std::deque<std::string> answers; ///< what the person types; empty: nobody is there
};

} // namespace kestavon::test
