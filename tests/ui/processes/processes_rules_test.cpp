#include "support/event_loop.h"
#include "support/fake_platform.h"
#include "support/fake_scanner.h"
#include "support/qt_printing.h"
#include "ui/processes/processes_rules.h"
#include "ui/processes/processes_state.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using ::testing::ElementsAre;

AppProcessInfo process(const std::string& name, std::uint64_t bytes = 1)
{
    AppProcessInfo info;
    info.processName = name;
    info.memoryBytes = bytes;
    return info;
}

TEST(ProcessesRules, FindNamesByTheirTextWhateverTheCase)
{
    const std::vector<AppProcessInfo> all{
        process("Code Editor"), process("Médiathèque"), process("editor"), process("ΣΑΣ")};
    const auto found = [&](const char* text) {
        std::vector<std::string> names;
        for (const auto& info : processesNamed(all, text))
            names.push_back(info.processName);
        return names;
    };
    EXPECT_EQ(found("").size(), 4U);
    EXPECT_THAT(found("EDIT"), ElementsAre("Code Editor", "editor"));
    EXPECT_THAT(found(" "), ElementsAre("Code Editor")) << "nothing is cut off";
    EXPECT_THAT(found("ME\u0301DIA"), ElementsAre("Médiathèque"));
    EXPECT_THAT(found("media"), ElementsAre());
    EXPECT_THAT(found("σας"), ElementsAre("ΣΑΣ"));
}

TEST(ProcessesRules, PointOutWhatTakesMoreThan400Megabytes)
{
    EXPECT_FALSE(isLargeProcess(process("", 400'000'000)));
    EXPECT_TRUE(isLargeProcess(process("", 400'000'001)));
}

TEST(ProcessesRules, AskAndTellByName)
{
    const auto question = forceQuitQuestion("Code Editor");
    EXPECT_EQ(question.title, "Force quit \"Code Editor\"?");
    EXPECT_EQ(question.message, "The app will be asked to quit. Unsaved data may be lost.");
    EXPECT_EQ(question.action, "Force Quit");
    EXPECT_TRUE(question.destructive);
    EXPECT_EQ(forceQuitQuestion("%1").title, "Force quit \"%1\"?");
    EXPECT_EQ(quitFailure("Code Editor"), "Could not quit Code Editor — permission denied.");
}

TEST(ProcessesRules, CutNamesThatNoSentenceBears)
{
    const QString fits(80, u'n');
    EXPECT_EQ(forceQuitQuestion(fits).title, "Force quit \"" + fits + "\"?");
    const auto cut = QString(79, u'n') + u'…';
    EXPECT_EQ(forceQuitQuestion(QString(4096, u'n')).title, "Force quit \"" + cut + "\"?");
    EXPECT_EQ(quitFailure(QString(81, u'n')), "Could not quit " + cut + " — permission denied.");
    const auto halved = QString(78, u'n') + QString::fromUcs4(U"\U0001F600") + QString(9, u'n');
    EXPECT_EQ(forceQuitQuestion(halved).title, "Force quit \"" + QString(78, u'n') + u'…' + "\"?")
        << "no half a character";
}

TEST(ProcessesRules, NameIconsByteForByte)
{
    for (const std::string icon : {"org.example.Editor", "/a b/%2F\xFF.png", "#?"})
        EXPECT_EQ(iconOfKey(iconKey(icon)), icon);
    EXPECT_EQ(iconKey(std::nullopt), "");
}

/// The screen's state over applications that the test makes up.
class ProcessesStateTest : public ::testing::Test {
protected:
    void list(const std::vector<RunningApplication>& applications)
    {
        machine.runningApplications->applications = applications;
        bool isThere = false;
        const auto connection = QObject::connect(
            &state, &ProcessesState::countChanged, &state, [&isThere] { isThere = true; });
        state.refresh();
        EXPECT_TRUE(test::processEventsUntil([&] { return isThere; }));
        QObject::disconnect(connection);
    }
    std::vector<QString> names() const
    {
        std::vector<QString> result;
        for (int row = 0; row < state.rowCount(); ++row)
            result.push_back(state.nameText(row));
        return result;
    }
    static RunningApplication app(const std::string& name, std::int32_t id, std::uint64_t bytes)
    {
        return {.name = name, .process = id, .memoryBytes = bytes};
    }

    test::FakeMachine machine;
    AppModel model{std::make_shared<test::FakeScanner>(), machine.platform()};
    ProcessesState state{model};
};

TEST_F(ProcessesStateTest, KeepsTheRowsWhileOneIsPressed)
{
    list({app("A", 300, 9), app("B", 301, 5)});
    EXPECT_THAT(names(), ElementsAre("A", "B"));
    state.setHeld(true);
    list({app("A", 300, 1), app("B", 301, 5), app("C", 302, 3)});
    EXPECT_THAT(names(), ElementsAre("A", "B")) << "the row under the pointer stays";
    EXPECT_EQ(state.countText(), "3 apps");
    state.setHeld(false);
    EXPECT_EQ(state.nameText(0), "A") << "until the click has come";
    test::processEvents();
    EXPECT_THAT(names(), ElementsAre("B", "C", "A"));
}

TEST_F(ProcessesStateTest, IsEmptyOnlyOnceItWasLooked)
{
    EXPECT_FALSE(state.empty()) << "nobody knows yet";
    list({});
    EXPECT_TRUE(state.empty());
    list({app("Editor", 300, 9)});
    state.setFilter("x");
    EXPECT_FALSE(state.empty()) << "what runs is only not shown";
}

TEST_F(ProcessesStateTest, CountsAllWhileASearchNarrowsTheList)
{
    list({app("Editor", 300, 9), app("Viewer", 301, 5)});
    state.setFilter("view");
    EXPECT_THAT(names(), ElementsAre("Viewer"));
    EXPECT_EQ(state.countText(), "2 apps");
    EXPECT_EQ(state.processText(0), "PID 301");
    list({app("Viewer 2", 302, 9), app("Viewer", 301, 5)});
    EXPECT_THAT(names(), ElementsAre("Viewer 2", "Viewer")) << "what comes is filtered too";
    state.begin();
    EXPECT_EQ(state.filter(), "");
    EXPECT_EQ(state.nameText(2), "") << "a row that does not exist";
}

TEST_F(ProcessesStateTest, NeverAsksToEndAProtectedProcess)
{
    list({app("Low", 150, 9), app("Mine", 300, 5)});
    EXPECT_TRUE(state.isProtected(0));
    state.askForceQuit(0);
    state.askForceQuit(7);
    EXPECT_FALSE(state.confirmation()->asking());
    state.askForceQuit(1);
    EXPECT_TRUE(state.confirmation()->asking());
    // What the question is about stays, whatever the rows show by then.
    list({});
    machine.processSignals->starts = {{300, 0}};
    state.confirmation()->confirm();
    EXPECT_THAT(machine.processSignals->terminated, ElementsAre(300));
    EXPECT_EQ(state.confirmation()->errorMessage(), "");
}

} // namespace
} // namespace kestavon
