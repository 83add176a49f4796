// The search beside the plain rule (hash every file that shares its recorded size), over trees of
// every kind.
#include "duplicates/searches.h"
#include "support/as_ordinary_user.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <system_error>

#include <gmock/gmock.h>
#include <openssl/evp.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kestavon {
namespace {

namespace fs = std::filesystem;
using test::FoundGroup;

/// The content's digest, by reading it whole; nothing unless it is a regular file that opens.
std::optional<std::string> plainDigest(const std::string& path)
{
    if (!fs::is_regular_file(fs::symlink_status(path)))
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string content(fs::file_size(path), '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    Sha256Digest digest{};
    EVP_Digest(content.data(), content.size(), digest.data(), nullptr, EVP_sha256(), nullptr);
    std::string text;
    for (const auto byte : digest) {
        char hex[3];
        std::snprintf(hex, sizeof hex, "%02x", byte);
        text += hex;
    }
    return text;
}

std::vector<FoundGroup> plainGroups(const std::vector<FileRecord>& records)
{
    std::map<std::int64_t, int> countOfSize;
    for (const auto& record : records) {
        if (!record.isDirectory && record.size > 0)
            ++countOfSize[record.size];
    }
    struct Group {
        FoundGroup found;
        std::int64_t fileSize;
        std::size_t firstRecord;
    };
    std::map<std::string, Group> byDigest;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (records[i].isDirectory || records[i].size == 0 || countOfSize[records[i].size] < 2)
            continue;
        const auto digest = plainDigest(records[i].path);
        if (!digest)
            continue;
        auto& group
            = byDigest.try_emplace(*digest, Group{{*digest, {}}, records[i].size, i}).first->second;
        group.found.paths.push_back(records[i].path);
    }
    std::vector<Group> groups;
    for (auto& [digest, group] : byDigest) {
        if (group.found.paths.size() > 1)
            groups.push_back(std::move(group));
    }
    const auto reclaimable = [](const Group& group) {
        return static_cast<std::int64_t>(group.found.paths.size() - 1) * group.fileSize;
    };
    std::ranges::sort(groups, [reclaimable](const Group& a, const Group& b) {
        return reclaimable(a) != reclaimable(b) ? reclaimable(a) > reclaimable(b)
                                                : a.firstRecord < b.firstRecord;
    });
    std::vector<FoundGroup> found;
    std::ranges::transform(groups, std::back_inserter(found), &Group::found);
    return found;
}

/// Files of few sizes and few contents, so that many are equal, nearly equal or equally large.
class RandomTree {
public:
    RandomTree(unsigned seed, std::vector<std::size_t> sizes)
        : m_random(seed)
        , m_sizes(std::move(sizes))
    {
    }

    void fill(int files)
    {
        for (int i = 0; i < files; ++i)
            addFile();
        for (const auto& path : m_paths)
            m_records.push_back(test::recordOf(path));
    }

    /// What other programs do between a scan and the search.
    void disturb()
    {
        std::error_code refused; // by the mode that another name of the file was given
        for (const auto& path : m_paths) {
            switch (below(24)) {
            case 0: fs::remove(path); break;
            case 1: fs::resize_file(path, m_sizes[below(m_sizes.size())], refused); break;
            case 2:
                fs::remove(path);
                fs::create_symlink(m_paths[below(m_paths.size())], path);
                break;
            case 3:
                fs::remove(path);
                ::mkfifo(path.c_str(), 0600);
                break;
            case 4:
                fs::remove(path);
                fs::create_directory(path);
                break;
            case 5: ::chmod(path.c_str(), 0); break;
            case 6: overwrite(path, content()); break;
            case 7: fs::resize_file(path, 0, refused); break;
            default: break;
            }
        }
    }

    const std::string& root() const { return m_folder.path(); }
    const std::vector<FileRecord>& records() const { return m_records; }
    std::size_t below(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }

private:
    std::string content()
    {
        // Every place holds something else, so that a piece in the wrong place shows.
        std::string bytes(m_sizes[below(m_sizes.size())], '\0');
        const auto kind = below(2);
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>((i * 2'654'435'761U >> 7) + kind);
        if (!bytes.empty() && below(2) == 0) {
            const std::size_t places[]
                = {0, bytes.size() - 1, bytes.size() / 2, below(bytes.size())};
            bytes[places[below(4)]] ^= 1;
        }
        return bytes;
    }

    static void overwrite(const std::string& path, const std::string& bytes)
    {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    }

    void addFile()
    {
        const auto folder = m_folder.makeFolder(std::to_string(below(3)));
        const auto path = folder + "/f" + std::to_string(m_paths.size());
        const auto kind = m_paths.empty() ? 9 : below(10);
        if (kind == 0) {
            fs::create_hard_link(m_paths[below(m_paths.size())], path);
        } else if (kind == 1) { // nothing but a hole
            overwrite(path, "");
            fs::resize_file(path, m_sizes[below(m_sizes.size())]);
        } else if (kind == 2) {
            fs::copy_file(m_paths[below(m_paths.size())], path);
        } else {
            overwrite(path, content());
        }
        m_paths.push_back(path);
    }

    std::mt19937 m_random;
    std::vector<std::size_t> m_sizes;
    test::TemporaryFolder m_folder;
    std::vector<std::string> m_paths;
    std::vector<FileRecord> m_records;
};

void expectPlainGroups(RandomTree& tree, unsigned seed)
{
    const auto found = test::groupsIn(*test::search(
        tree.root(), tree.records(), {.threads = static_cast<unsigned>(1 + tree.below(3))}));
    ASSERT_EQ(found, plainGroups(tree.records())) << "seed " << seed;
}

// Sizes that one reading takes, and sizes around those at which the search changes its ways.
const std::vector<std::size_t> smallSizes{0, 1, 2, 5, 4096};
const std::vector<std::size_t> largeSizes{65'535, 65'536, 65'537, 327'680, 600'000, 1'200'000};

TEST(DuplicateTrees, FindsWhatHashingEveryFileFinds)
{
    for (unsigned seed = 0; seed < 1000; ++seed) {
        RandomTree tree(seed, smallSizes);
        tree.fill(static_cast<int>(2 + tree.below(14)));
        ASSERT_NO_FATAL_FAILURE(expectPlainGroups(tree, seed));
    }
}

TEST(DuplicateTrees, FindsItWhateverHappenedToTheFilesSinceTheScan)
{
    const test::AsOrdinaryUser user; // whom a mode keeps from reading
    for (unsigned seed = 1000; seed < 2000; ++seed) {
        RandomTree tree(seed, smallSizes);
        tree.fill(static_cast<int>(2 + tree.below(14)));
        tree.disturb();
        ASSERT_NO_FATAL_FAILURE(expectPlainGroups(tree, seed));
    }
}

TEST(DuplicateTrees, FindsTheSameAmongFilesThatAreReadSideBySide)
{
    const test::AsOrdinaryUser user;
    for (unsigned seed = 0; seed < 100; ++seed) {
        RandomTree tree(seed, largeSizes);
        tree.fill(static_cast<int>(4 + tree.below(16)));
        if (seed % 2 == 1)
            tree.disturb();
        ASSERT_NO_FATAL_FAILURE(expectPlainGroups(tree, seed));
    }
}

/// Leaves the process so few descriptors that a thread may hold only a handful.
class FewDescriptors {
public:
    FewDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        auto few = m_before;
        few.rlim_cur = 64;
        ::setrlimit(RLIMIT_NOFILE, &few);
    }
    ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    rlimit m_before{};
};

TEST(DuplicateTrees, CutsCrowdsOfEquallyLargeFilesUpAndPutsThemTogetherAgain)
{
    const FewDescriptors few;
    for (unsigned seed = 0; seed < 6; ++seed) {
        RandomTree tree(
            seed, seed < 3 ? std::vector<std::size_t>{3000} : std::vector<std::size_t>{70'000});
        tree.fill(seed < 3 ? 900 : 100);
        if (seed % 2 == 1)
            tree.disturb();
        ASSERT_NO_FATAL_FAILURE(expectPlainGroups(tree, seed));
    }
}

} // namespace
} // namespace kestavon
