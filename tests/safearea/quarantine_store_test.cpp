#include "core/domain/removal_guard.h"
#include "safearea/held_name.h"
#include "safearea/quarantine_store.h"
#include "support/temporary_tree.h"
#include "support/tree_picture.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace kestavon {
namespace {

using Kind = FileError::Kind;
using test::pictureOf;

namespace fs = std::filesystem;

bool isThere(const std::string& path)
{
    return fs::symlink_status(path).type() != fs::file_type::not_found;
}

class StandingClock final : public Clock {
public:
    Timestamp now() const override { return time; }
    Timestamp time{std::chrono::nanoseconds(1'794'838'400'123'456'789)};
};

/// A home, its Safe Area - on another device where the parameter says so - and what moves there.
class QuarantineStoreTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override
    {
        if (GetParam() && !m_other)
            GTEST_SKIP() << "no second device here";
        HostEnvironment environment;
        environment.home = m_home.makeFolder("alice");
        if (GetParam())
            environment.xdgDataHome = m_other / "data";
        m_layout = makeHostLayout(environment);
    }

    QuarantineStore makeStore(std::shared_ptr<Trash> trash = nullptr) const
    {
        return {m_layout,
            {.mover = std::make_shared<SystemFileMover>(journalFolder(m_layout)),
                .places = std::make_shared<SystemFilePlaces>(),
                .protectedPlaces
                = std::make_shared<ProtectedPlaces>(ProtectedPlaces::listsFor(m_layout)),
                .clock = m_clock,
                .trash = std::move(trash)}};
    }

    CleanupCandidate candidate(const std::string& path) const
    {
        FileRecord record{.id = Uuid::random(), .path = path};
        record.isDirectory = fs::symlink_status(path).type() == fs::file_type::directory;
        return {.id = Uuid::random(),
            .record = record,
            .reason = "Cache of " + std::string(lastComponent(path)),
            .estimatedBytes = 1};
    }
    std::string at(const std::string& relative) const { return m_layout.home + '/' + relative; }
    void write(const std::string& relative, std::string_view bytes = "bytes") const
    {
        m_home.writeFile("alice/" + relative, bytes);
    }
    std::string read(const std::string& relative) const
    {
        return m_home.readFile("alice/" + relative);
    }
    std::size_t entriesHeld(const QuarantineStore& store) const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(store.root()), fs::directory_iterator()));
    }
    QuarantineItem holdOne(QuarantineStore& store, const std::string& path) const
    {
        const auto held = store.quarantine(std::vector{candidate(path)});
        EXPECT_TRUE(held);
        EXPECT_EQ(held->size(), 1U) << path;
        return held && !held->empty() ? held->front() : QuarantineItem{};
    }

    test::TemporaryTree m_home;
    test::OtherDevice m_other;
    HostLayout m_layout;
    std::shared_ptr<StandingClock> m_clock = std::make_shared<StandingClock>();
};

INSTANTIATE_TEST_SUITE_P(Devices, QuarantineStoreTest, testing::Bool(),
    [](const auto& device) { return device.param ? "Across" : "Within"; });

TEST_P(QuarantineStoreTest, HoldsAndGivesBack)
{
    write("cache/app/deep/file");
    write("long " + std::string(190, 'n'), "long");
    const auto folder = pictureOf(at("cache/app"));
    auto store = makeStore();
    EXPECT_FALSE(isThere(store.root())) << "made only when something comes";

    const std::vector candidates{
        candidate(at("cache/app")), candidate(at("long " + std::string(190, 'n')))};
    const auto held = store.quarantine(candidates);
    ASSERT_TRUE(held);
    ASSERT_EQ(held->size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const auto& item = (*held)[i];
        const auto& path = candidates[i].record.path;
        EXPECT_EQ(item.originalPath, path);
        EXPECT_EQ(item.reason, candidates[i].reason);
        EXPECT_EQ(item.date, m_clock->time);
        EXPECT_EQ(item.quarantinedPath,
            store.root() + "/" + item.id.text() + "-"
                + std::string(lastComponent(path).substr(0, 80)));
        EXPECT_FALSE(isThere(path));
    }
    EXPECT_EQ(pictureOf(held->front().quarantinedPath), folder);
    EXPECT_EQ(entriesHeld(store), 2U);
    struct stat status { };
    ASSERT_EQ(::stat(store.root().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700U);

    fs::remove(at("cache")); // The folder above is made again.
    for (const auto& item : *held)
        EXPECT_TRUE(store.restore(item)) << item.originalPath;
    EXPECT_EQ(pictureOf(at("cache/app")), folder);
    EXPECT_EQ(read("long " + std::string(190, 'n')), "long");
    EXPECT_EQ(entriesHeld(store), 0U);
    EXPECT_TRUE(SystemFilePlaces().marksOf(at("cache/app"), "user.kestavon.").empty());
}

TEST_P(QuarantineStoreTest, LeavesOutWhatItMayNotOrCannotMove)
{
    for (const auto* name : {"one/same", "two/same", "tool.appex/x", "was a file/precious"})
        write(name);
    m_home.link("alice/dangling", "nowhere");
    std::vector candidates{candidate(at("gone")), candidate(at("one/same")),
        candidate(at("tool.appex")), candidate("/usr/bin/env"), candidate("/Applications/Foo.app"),
        candidate(at("two/same")), candidate(m_layout.home), candidate(at("was a file")),
        candidate(at("dangling"))};
    candidates[7].record.isDirectory = false;
    auto store = makeStore();
    const auto held = store.quarantine(candidates);
    ASSERT_TRUE(held);
    ASSERT_EQ(held->size(), 3U);
    EXPECT_EQ((*held)[0].originalPath, at("one/same"));
    EXPECT_EQ((*held)[1].originalPath, at("two/same"));
    EXPECT_EQ((*held)[2].originalPath, at("dangling"));
    EXPECT_TRUE(fs::is_symlink((*held)[2].quarantinedPath));
    EXPECT_TRUE(isThere(at("tool.appex/x")));
    EXPECT_EQ(read("was a file/precious"), "bytes");
    EXPECT_TRUE(isThere("/usr/bin/env"));

    const auto none = store.quarantine(std::vector{candidate(at("gone"))});
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->empty());
}

TEST_P(QuarantineStoreTest, RestoresOntoNothingThatIsThere)
{
    auto store = makeStore();
    write("folder/file", "old");
    const auto item = holdOne(store, at("folder/file"));
    const auto expectRefusal = [&] {
        const auto restored = store.restore(item);
        ASSERT_FALSE(restored);
        EXPECT_EQ(restored.error().kind, Kind::fileExists);
        EXPECT_EQ(restored.error().message,
            "The file “file” couldn’t be saved in the folder “folder” because a file with the same "
            "name already exists.");
        EXPECT_TRUE(isThere(item.quarantinedPath));
    };
    write("folder/file", "new");
    expectRefusal();
    EXPECT_EQ(read("folder/file"), "new");
    fs::remove(at("folder/file"));
    m_home.link("alice/folder/file", "nowhere");
    expectRefusal();
    EXPECT_TRUE(fs::is_symlink(at("folder/file")));
    fs::remove(at("folder/file"));
    ASSERT_TRUE(store.restore(item));
    EXPECT_EQ(read("folder/file"), "old");
}

TEST_P(QuarantineStoreTest, ChangesNothingWhenRestoringFails)
{
    auto store = makeStore();
    write("a/b/file");
    auto item = holdOne(store, at("a/b/file"));
    fs::remove_all(at("a"));
    write("a", "now a file");
    const auto blocked = store.restore(item);
    ASSERT_FALSE(blocked);
    EXPECT_NE(blocked.error().message.find("b"), std::string::npos);
    EXPECT_TRUE(isThere(item.quarantinedPath));

    fs::remove(at("a"));
    fs::remove(item.quarantinedPath);
    const auto missing = store.restore(item);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, Kind::noSuchFile);
    EXPECT_NE(missing.error().message.find("“file”"), std::string::npos);
    EXPECT_FALSE(isThere(at("a"))) << "the folders made for it go again";
}

TEST_P(QuarantineStoreTest, FailsWithoutAHoldingFolderAndMovesNothing)
{
    write("item");
    auto store = makeStore();
    fs::create_directories(fs::path(store.root()).parent_path());
    fs::create_symlink("nowhere", store.root());
    const auto held = store.quarantine(std::vector{candidate(at("item"))});
    ASSERT_FALSE(held);
    EXPECT_EQ(held.error().kind, Kind::fileExists);
    EXPECT_EQ(read("item"), "bytes");

    m_layout.home = "/nonexistent/alice";
    m_layout.applicationSupport = m_layout.home + "/.local/share";
    EXPECT_FALSE(makeStore().quarantine(std::vector{candidate(at("item"))}));
    EXPECT_FALSE(isThere("/nonexistent"));
}

TEST_P(QuarantineStoreTest, FindsWhatEarlierRunsHeld)
{
    write("first");
    write("second/file");
    m_home.link("alice/link", "first");
    std::vector<QuarantineItem> held;
    {
        auto store = makeStore();
        for (const auto* name : {"first", "second", "link"}) {
            held.push_back(holdOne(store, at(name)));
            m_clock->time += std::chrono::seconds(1);
        }
    }
    auto store = makeStore();
    if (SystemFilePlaces().marksOf(held[0].quarantinedPath, "user.kestavon.").empty())
        GTEST_SKIP() << "no extended attributes here";
    std::ofstream(store.root() + "/a stranger's note") << "left alone";
    auto found = store.heldItems();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found, held);
    ASSERT_TRUE(store.restore(found[1]));
    EXPECT_EQ(read("second/file"), "bytes");
    EXPECT_TRUE(isThere(store.root() + "/a stranger's note"));
}

TEST_P(QuarantineStoreTest, ClearsWhatACrashLeft)
{
    write("item");
    QuarantineItem item;
    {
        auto store = makeStore();
        item = holdOne(store, at("item"));
    }
    const auto partial = ".kestavon-partial-" + Uuid::random().text();
    fs::create_directories(m_layout.applicationSupport + "/Kestavon/Quarantine/" + partial + "/x");

    auto store = makeStore();
    EXPECT_EQ(store.heldItems().size(), 1U);
    EXPECT_EQ(entriesHeld(store), 1U);
    EXPECT_TRUE(store.restore(item));
}

TEST_P(QuarantineStoreTest, AnItemOfTheTrashGoesBackThereWithItsRecord)
{
    auto layout = m_layout;
    layout.dataHome = at(".data"); // on the item's own disk
    const auto makeTrash = [&] { return makeSystemTrash(layout, ProtectedPlaces({}), m_clock); };
    write("item");
    const auto trashed = makeTrash()->trashItem(at("item"), {});
    ASSERT_TRUE(trashed);
    const auto record = layout.dataHome + "/Trash/info/item.trashinfo";
    auto store = makeStore(makeTrash());
    const auto held = holdOne(store, *trashed);
    makeTrash()->clearUnfinishedMoves();
    EXPECT_TRUE(isThere(record)) << "taken for one that a crash left";
    ASSERT_TRUE(store.restore(held));
    EXPECT_TRUE(isThere(*trashed));
    fs::remove(*trashed);
    makeTrash()->forgetItem(*trashed);
    EXPECT_FALSE(isThere(record));
}

TEST_P(QuarantineStoreTest, RemembersTheOriginOfWhatCannotSayIt)
{
    write("file", "one file");
    fs::create_hard_link(at("file"), at("second name"));
    fs::create_hard_link(at("file"), at("outside"));
    m_home.link("alice/link", "file");
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    std::vector<QuarantineItem> held;
    {
        auto store = makeStore();
        for (const auto* name : {"file", "second name", "link", "pipe"}) {
            held.push_back(holdOne(store, at(name)));
            m_clock->time += std::chrono::seconds(1);
        }
        EXPECT_EQ(entriesHeld(store), 4U) << "nothing but what is held lies there";
    }
    EXPECT_TRUE(SystemFilePlaces().marksOf(at("outside"), "user.kestavon.").empty());
    auto store = makeStore();
    EXPECT_EQ(store.heldItems(), held);
    for (const auto& item : held)
        EXPECT_TRUE(store.restore(item)) << item.originalPath;
    EXPECT_EQ(read("file"), "one file");
    EXPECT_EQ(read("second name"), "one file");
    EXPECT_EQ(fs::read_symlink(at("link")), "file");
    EXPECT_TRUE(fs::is_fifo(at("pipe")));
    EXPECT_TRUE(SystemFilePlaces().marksOf(at("file"), "user.kestavon.").empty());
    EXPECT_TRUE(fs::is_empty(m_layout.applicationSupport + "/Kestavon/Origins"));
}

TEST_P(QuarantineStoreTest, LeavesTheNotesOfWhatIsJustComingAlone)
{
    m_home.link("alice/link", "somewhere");
    m_home.link("alice/other link", "somewhere");
    auto first = makeStore();
    const auto held = holdOne(first, at("link"));
    const auto coming = holdOne(first, at("other link"));
    const auto elsewhere = first.root() + "/../not there yet";
    fs::rename(coming.quarantinedPath, elsewhere);
    EXPECT_EQ(makeStore().heldItems(), std::vector{held}) << "a second start looks on";
    fs::rename(elsewhere, coming.quarantinedPath);
    EXPECT_THAT(makeStore().heldItems(), testing::UnorderedElementsAre(held, coming));

    fs::remove(coming.quarantinedPath);
    m_clock->time += std::chrono::hours(25);
    makeStore().heldItems();
    const auto notes = m_layout.applicationSupport + "/Kestavon/Origins";
    EXPECT_EQ(std::distance(fs::directory_iterator(notes), fs::directory_iterator()), 1);
}

TEST_P(QuarantineStoreTest, HoldsWithoutAMemoryOfTheOriginAsSafely)
{
    m_home.link("alice/link", "somewhere");
    m_home.link("alice/other link", "somewhere");
    const auto origins = m_layout.applicationSupport + "/Kestavon/Origins";
    auto store = makeStore();
    auto item = holdOne(store, at("link"));
    const auto other = holdOne(store, at("other link"));
    EXPECT_EQ(std::distance(fs::directory_iterator(origins), fs::directory_iterator()), 2);
    fs::remove(other.quarantinedPath);
    store.forget(other);
    EXPECT_EQ(std::distance(fs::directory_iterator(origins), fs::directory_iterator()), 1);
    // One whose item left while the program was not there, and one that is lost.
    m_home.writeFile(
        fs::relative(origins, m_home.path()).native() + "/" + Uuid::random().text(), "/x");
    fs::remove(origins + "/" + item.id.text());

    const auto found = makeStore().heldItems();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].originalPath, "");
    EXPECT_TRUE(fs::is_empty(origins));
    EXPECT_TRUE(store.restore(item));
    EXPECT_TRUE(fs::is_symlink(at("link")));

    // Where nothing can be noted, the item moves all the same.
    fs::remove(origins);
    std::ofstream(origins) << "in the way";
    EXPECT_TRUE(fs::is_symlink(holdOne(store, at("link")).quarantinedPath));
}

} // namespace
} // namespace kestavon
