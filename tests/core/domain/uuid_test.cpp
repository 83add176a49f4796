#include "core/domain/uuid.h"

#include <thread>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

namespace kestavon {
namespace {

bool isRandomVersion(const Uuid& id)
{
    return (id.bytes[6] & 0xF0) == 0x40 && (id.bytes[8] & 0xC0) == 0x80;
}

TEST(Uuid, ReadsItsTextInEitherCase)
{
    const auto id = Uuid::fromText("0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->bytes[0], 0x0F);
    EXPECT_EQ(id->bytes[15], 0xF0);
    EXPECT_EQ(id->text(), "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0");
    EXPECT_EQ(Uuid::fromText("0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0"), id);
}

TEST(Uuid, RefusesAnyOtherText)
{
    for (const auto* text : {
             "",
             "0F1E2D3C4B5A69788796A5B4C3D2E1F0",
             "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F",
             "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F00",
             "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1FG",
             "0F1E2D3C-4B5A-6978-87960A5B4C3D2E1F0",
             "0F1E2D3-C4B5A-6978-8796-A5B4C3D2E1F0",
             "{F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F}",
         })
        EXPECT_EQ(Uuid::fromText(text), std::nullopt) << text;
}

TEST(Uuid, IsNewEachTimeOnEveryThread)
{
    constexpr std::size_t perThread = 2000; // Several refills of a thread's pool.
    std::vector<std::vector<Uuid>> made(4);
    {
        std::vector<std::jthread> threads;
        for (auto& ids : made) {
            threads.emplace_back([&ids] {
                for (std::size_t i = 0; i < perThread; ++i)
                    ids.push_back(Uuid::random());
            });
        }
    }
    std::unordered_set<Uuid> different;
    for (const auto& ids : made) {
        for (const auto& id : ids) {
            EXPECT_TRUE(isRandomVersion(id)) << id.text();
            EXPECT_EQ(Uuid::fromText(id.text()), id);
            different.insert(id);
        }
    }
    EXPECT_EQ(different.size(), 4 * perThread);
}

TEST(IdSpace, LeadsFromTheIdentifierBackToTheEntry)
{
    const auto space = IdSpace::random();
    std::unordered_set<Uuid> different;
    constexpr std::uint64_t entries = 5000;
    for (std::uint64_t i = 0; i < entries; ++i) {
        const auto id = space.at(i);
        EXPECT_TRUE(isRandomVersion(id)) << id.text();
        EXPECT_EQ(space.ordinalOf(id), i);
        different.insert(id);
    }
    EXPECT_EQ(different.size(), entries);
    for (const std::uint64_t far : {std::uint64_t{1} << 32, (std::uint64_t{1} << 61) - 1})
        EXPECT_EQ(space.ordinalOf(space.at(far)), far);
}

TEST(IdSpace, RefusesForeignIdentifiers)
{
    const auto space = IdSpace::random();
    const auto other = IdSpace::random();
    EXPECT_NE(space.at(7), other.at(7));
    for (std::uint64_t i = 0; i < 1000; ++i) {
        EXPECT_EQ(space.ordinalOf(other.at(i)), std::nullopt);
        EXPECT_EQ(space.ordinalOf(Uuid::random()), std::nullopt);
    }
    EXPECT_EQ(space.ordinalOf(Uuid()), std::nullopt);
    for (std::size_t bit = 0; bit < 128; ++bit) {
        auto changed = space.at(7);
        changed.bytes[bit / 8]
            = static_cast<std::uint8_t>(changed.bytes[bit / 8] ^ (1U << bit % 8));
        EXPECT_EQ(space.ordinalOf(changed), std::nullopt) << "bit " << bit;
    }
}

} // namespace
} // namespace kestavon
