#include "duplicates/copy_check.h"
#include "duplicates/sha256_hex.h"
#include "support/temporary_tree.h"

#include <chrono>
#include <filesystem>
#include <functional>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestavon {
namespace {

namespace fs = std::filesystem;

/// Two equal files that a search has seen.
class CopyCheck : public testing::Test {
protected:
    CopyCheck()
    {
        tree.writeFile("kept", content);
        tree.writeFile("copy", content);
        see();
    }

    void see()
    {
        const auto ofKept = sha256OfFile(tree / "kept");
        kept = {.path = tree / "kept", .identity = ofKept->identity};
        copy = {.path = tree / "copy", .identity = sha256OfFile(tree / "copy")->identity};
        digest = ofKept->digest;
    }

    bool isSpare(CopyProof proof) const
    {
        return static_cast<bool>(checkCopyIsSpare(kept, copy, digest, proof));
    }

    const std::string content = std::string(700'000, 'x');
    test::TemporaryTree tree;
    KnownFile kept;
    KnownFile copy;
    Sha256Digest digest{};
};

TEST_F(CopyCheck, ACopyIsSpareWhileNothingChanged)
{
    EXPECT_TRUE(isSpare(CopyProof::identity));
    EXPECT_TRUE(isSpare(CopyProof::content));
}

TEST_F(CopyCheck, NothingIsSpareOnceOneOfTheTwoIsGoneOrHoldsSomethingElse)
{
    auto other = content;
    other.back() = 'y';
    struct {
        const char* what;
        std::function<void(const std::string&)> change;
    } const changes[] = {
        {"gone", [](const auto& path) { fs::remove(path); }},
        {"longer", [](const auto& path) { fs::resize_file(path, 700'001); }},
        {"shorter", [](const auto& path) { fs::resize_file(path, 699'999); }},
        {"edited",
            [&](const auto& path) { tree.writeFile(fs::path(path).filename().native(), other); }},
        {"edited, its date put back",
            [&](const auto& path) {
                const auto date = fs::last_write_time(path);
                tree.writeFile(fs::path(path).filename().native(), other);
                fs::last_write_time(path, date);
            }},
        {"replaced by a link to its copy",
            [&](const auto& path) {
                fs::remove(path);
                fs::create_symlink(path == kept.path ? copy.path : kept.path, path);
            }},
        {"replaced by its copy's other name",
            [&](const auto& path) {
                fs::remove(path);
                fs::create_hard_link(path == kept.path ? copy.path : kept.path, path);
            }},
        {"replaced by a folder",
            [](const auto& path) {
                fs::remove(path);
                fs::create_directory(path);
            }},
        {"replaced by a pipe",
            [](const auto& path) {
                fs::remove(path);
                ::mkfifo(path.c_str(), 0600);
            }},
    };
    for (const auto& row : changes) {
        for (const auto* changed : {&kept, &copy}) {
            fs::remove(tree / "kept");
            fs::remove(tree / "copy");
            tree.writeFile("kept", content);
            tree.writeFile("copy", content);
            see();
            row.change(changed->path);
            const auto which = changed == &kept ? "kept: " : "copy: ";
            EXPECT_FALSE(isSpare(CopyProof::identity)) << which << row.what;
            EXPECT_FALSE(isSpare(CopyProof::content)) << which << row.what;
        }
    }
}

TEST_F(CopyCheck, AFileThatWasOnlyTouchedIsReadAgainAndStillCounts)
{
    for (const auto* name : {"kept", "copy"}) {
        fs::last_write_time(tree / name, fs::file_time_type::clock::now() - std::chrono::hours(1));
        EXPECT_TRUE(isSpare(CopyProof::identity)) << name;
        EXPECT_TRUE(isSpare(CopyProof::content)) << name;
    }
}

TEST_F(CopyCheck, AnEditThatNoDateShowsIsSeenWhenTheContentIsAsked)
{
    auto other = content;
    other[350'000] = 'y';
    tree.writeFile("copy", other);
    copy.identity = sha256OfFile(copy.path)->identity; // the clock did not tick between the two
    EXPECT_FALSE(isSpare(CopyProof::content));
}

} // namespace
} // namespace kestavon
