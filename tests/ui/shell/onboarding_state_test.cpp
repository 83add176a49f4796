#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "ui/shell/onboarding_state.h"

#include <gmock/gmock.h>

namespace kestavon::test {

namespace {

using namespace std::chrono_literals;

class OnboardingTest : public testing::Test {
protected:
    FakeMachine machine;
    AppModel model{std::make_shared<FakeScanner>(), machine.platform()};
    OnboardingState onboarding{model, 1ms};
};

TEST_F(OnboardingTest, IsWrittenDownBeforeTheUserAnswers)
{
    onboarding.windowAppeared();
    EXPECT_TRUE(onboarding.isPresented());
    EXPECT_TRUE(machine.settings->flags.at("kv.fda.onboardingShown"));

    OnboardingState nextStart(model);
    nextStart.windowAppeared();
    EXPECT_FALSE(nextStart.isPresented());
}

TEST_F(OnboardingTest, WatchesOnlyWhileTheSheetIsThere)
{
    onboarding.windowAppeared();
    const auto atFirst = machine.files->asked.size();
    EXPECT_TRUE(processEventsUntil([&] { return machine.files->asked.size() > atFirst + 4; }));
    EXPECT_TRUE(onboarding.isPresented());

    onboarding.dismiss();
    const auto afterwards = machine.files->asked.size();
    processEvents();
    EXPECT_EQ(machine.files->asked.size(), afterwards);
}

TEST_F(OnboardingTest, AccessClosesTheSheetAndWritesTheFlagAgain)
{
    onboarding.windowAppeared();
    machine.settings->flags.clear();
    machine.files->listable.insert("/home/alice/Library/Mail");
    EXPECT_TRUE(processEventsUntil([&] { return !onboarding.isPresented(); }));
    EXPECT_TRUE(model.hasFullDiskAccess());
    EXPECT_TRUE(machine.settings->flags.at("kv.fda.onboardingShown"));
}

} // namespace

} // namespace kestavon::test
