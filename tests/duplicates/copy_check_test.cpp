#include "duplicates/copy_check.h"
#include "duplicates/sha256_hex.h"
#include "support/faulty_calls.h"
#include "support/moments.h"
#include "support/temporary_tree.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <vector>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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

TEST_F(CopyCheck, WhatStaysIsWaitedForOnceAndAnewWhenItChanged)
{
    int waits = 0;
    int error = 0;
    const test::FaultyCalls disk([&](const test::SystemCall& call) -> std::optional<test::Fault> {
        if (call.call != "fsync")
            return std::nullopt;
        ++waits;
        return error == 0 ? std::nullopt : std::optional(test::Fault{error});
    });
    const auto isSpareAfter = [this](const FilesOnDisk& onDisk) {
        return static_cast<bool>(
            checkCopyIsSpare(kept, copy, digest, CopyProof::content, {}, onDisk));
    };
    const FilesOnDisk onDisk(std::vector{kept.path, kept.path});
    EXPECT_EQ(waits, 2) << "the file and its folder";
    EXPECT_TRUE(isSpareAfter(onDisk));
    EXPECT_TRUE(isSpareAfter(onDisk));
    EXPECT_EQ(waits, 2);

    tree.setMode("kept", 0600);
    EXPECT_TRUE(isSpareAfter(onDisk));
    EXPECT_GT(waits, 2);

    error = EIO;
    EXPECT_FALSE(isSpareAfter(onDisk));
    EXPECT_FALSE(isSpareAfter(FilesOnDisk(std::vector{kept.path})));
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
            test::waitForATick();
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

TEST_F(CopyCheck, FilesAtPathsThatNoCallTakesAreChecked)
{
    // Written by way of the working folder: no path leads there.
    const std::string name(200, 'n');
    tree.chain(name, 30);
    auto bottom = tree.path();
    const auto workingFolder = fs::current_path();
    fs::current_path(tree.path());
    for (int i = 0; i < 30; ++i) {
        fs::current_path(name);
        bottom += '/' + name;
    }
    std::ofstream("copy") << content;
    fs::current_path(workingFolder);
    copy = {.path = bottom + "/copy", .identity = sha256OfFile(bottom + "/copy")->identity};
    EXPECT_TRUE(isSpare(CopyProof::identity));
    EXPECT_TRUE(isSpare(CopyProof::content));
}

/// Runs `check` in a process of its own, where a file system of this type is mounted at `target`.
/// Gives what it said; nothing where that is not allowed.
std::optional<bool> withMount(const char* type, const std::string& target,
    const std::string& options, const std::function<bool()>& check)
{
    constexpr int notAllowed = 77;
    const auto child = ::fork();
    if (child == 0) {
        const int spaces = CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER);
        if (::unshare(spaces) != 0 || ::mount("", "/", nullptr, MS_PRIVATE | MS_REC, nullptr) != 0
            || ::mount("", target.c_str(), type, 0, options.c_str()) != 0)
            ::_exit(notAllowed);
        ::_exit(check() ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) == notAllowed)
        return std::nullopt;
    return WEXITSTATUS(status) == 1;
}

TEST_F(CopyCheck, AFileIsNoCopyOfItselfSeenThroughAnotherFileSystem)
{
    for (const auto* name : {"lower", "work", "merged"})
        tree.folder(name);
    tree.writeFile("upper/file", content);
    const auto options = "lowerdir=" + tree / "lower" + ",upperdir=" + tree / "upper"
        + ",workdir=" + tree / "work";
    for (const auto proof : {CopyProof::identity, CopyProof::content}) {
        const auto isItsOwnCopy = withMount("overlay", tree / "merged", options, [&] {
            kept = {tree / "upper/file", sha256OfFile(tree / "upper/file")->identity};
            copy = {tree / "merged/file", sha256OfFile(tree / "merged/file")->identity};
            return kept.identity.isSameFileAs(copy.identity) || isSpare(proof);
        });
        if (!isItsOwnCopy)
            GTEST_SKIP() << "no file system may be mounted here";
        EXPECT_FALSE(*isItsOwnCopy);
    }
}

TEST_F(CopyCheck, WhatIsOnADiskIsNotSpareForWhatIsInMemory)
{
    tree.folder("memory");
    for (const auto proof : {CopyProof::identity, CopyProof::content}) {
        const auto isRight = withMount("tmpfs", tree / "memory", "", [&] {
            tree.writeFile("memory/kept", content);
            tree.writeFile("memory/copy", content);
            const auto ofMemory = [this](const char* name) {
                return KnownFile{tree / name, sha256OfFile(tree / name)->identity};
            };
            const auto onDisk = copy;
            kept = ofMemory("memory/kept");
            const bool isSpareOnDisk = isSpare(proof);
            copy = ofMemory("memory/copy");
            const bool isSpareInMemory = isSpare(proof);
            kept = onDisk;
            return !isSpareOnDisk && isSpareInMemory && isSpare(proof);
        });
        if (!isRight)
            GTEST_SKIP() << "no file system may be mounted here";
        EXPECT_TRUE(*isRight);
    }
}

TEST_F(CopyCheck, AFileIsUntouchedUntilItsContentOrOneOfItsNamesChanges)
{
    EXPECT_TRUE(isUntouched(kept));
    EXPECT_FALSE(isUntouched({.path = kept.path, .identity = copy.identity}));
    fs::create_hard_link(kept.path, tree / "other name");
    see();
    EXPECT_TRUE(isUntouched(kept));
    test::waitForATick();
    fs::rename(tree / "other name", tree / "aside");
    EXPECT_FALSE(isUntouched(kept));
    see();
    fs::remove(kept.path);
    EXPECT_FALSE(isUntouched(kept));
}

} // namespace
} // namespace kestavon
