#include "support/event_loop.h"
#include "ui/shell/single_instance.h"

#include <QFile>
#include <QTemporaryDir>

#include <future>

#include <gmock/gmock.h>

namespace kestavon::test {

namespace {

using Claim = SingleInstance::Claim;

TEST(SingleInstance, ALaterStartHandsItsWishOver)
{
    const QTemporaryDir folder;
    SingleInstance first(folder.path());
    std::vector<StartWish> requests;
    QObject::connect(&first, &SingleInstance::requested,
        [&](const StartWish& wish) { requests.push_back(wish); });
    ASSERT_EQ(first.claim({}), Claim::first);

    const StartWish wishes[]
        = {{}, {.folder = "/srv/new\nline \xFF%20"}, {.section = AppSection::smartClean},
            {.activationToken = "shell 7_TIME1\n"}, {.folder = "/", .scansAtOnce = true}};
    for (const auto& wish : wishes) {
        auto second = std::async(
            std::launch::async, [&] { return SingleInstance(folder.path()).claim(wish); });
        ASSERT_TRUE(processEventsUntil(
            [&] { return second.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        EXPECT_EQ(second.get(), Claim::handedOver);
        EXPECT_EQ(requests.back(), wish);
    }
}

TEST(SingleInstance, WhatACrashLeftBehindIsReplaced)
{
    const QTemporaryDir folder;
    QFile stale(folder.filePath(QStringLiteral("kestavon.socket")));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.close();
    EXPECT_EQ(SingleInstance(folder.path()).claim({}), Claim::first);
}

TEST(SingleInstance, WithoutAPlaceForTheSocketTheProgramStillRuns)
{
    EXPECT_EQ(SingleInstance(QStringLiteral("/proc/nowhere")).claim({}), Claim::alone);
}

} // namespace

} // namespace kestavon::test
