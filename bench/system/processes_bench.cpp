// How long it takes to list the running applications among many processes, and how much of that the
// main thread spends: processes_bench [PROCESSES] [ROUNDS]
#include "../queries/thread_time.h"
#include "core/model/app_model.h"
#include "core/model/main_queue.h"
#include "platform/host_layout.h"
#include "platform/platform.h"
#include "platform/resident_memory.h"
#include "storage/file_scanner.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

/// Processes that sleep, and end with this.
class Sleepers {
public:
    explicit Sleepers(int count)
    {
        std::string name = "sleep";
        std::string time = "600";
        char* const arguments[]{name.data(), time.data(), nullptr};
        for (; count > 0; --count) {
            ::pid_t child = 0;
            if (::posix_spawnp(&child, "sleep", nullptr, nullptr, arguments, ::environ) == 0)
                m_children.push_back(child);
        }
    }
    ~Sleepers()
    {
        for (const auto child : m_children)
            ::kill(child, SIGKILL);
        for (const auto child : m_children)
            ::waitpid(child, nullptr, 0);
    }
    Sleepers(const Sleepers&) = delete;
    Sleepers& operator=(const Sleepers&) = delete;

private:
    std::vector<::pid_t> m_children;
};

double clockMilliseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

void print(const char* what, std::vector<double> milliseconds)
{
    std::ranges::sort(milliseconds);
    std::printf("%-46s %8.2f ms   worst %8.2f ms\n", what, milliseconds[milliseconds.size() / 2],
        milliseconds.back());
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int processes = argc > 1 ? std::atoi(argv[1]) : 500;
    const int rounds = std::max(1, argc > 2 ? std::atoi(argv[2]) : 100);
    const Sleepers sleepers(processes);

    auto platform = systemPlatform(currentHostEnvironment());
    const auto applications = platform.runningApplications;
    std::printf("%d processes more than before\n", processes);
    std::size_t found = 0;
    const auto list = [&] { found = applications->running().size(); };
    std::printf("%-46s %8.2f ms\n", "first list, with the desktop entries, processor",
        bench::threadMilliseconds(list));
    // Processes count as settled after ten seconds.
    ::sleep(11);
    list();
    std::vector<double> clock;
    std::vector<double> processor;
    for (int round = 0; round < rounds; ++round) {
        const auto start = clockMilliseconds();
        processor.push_back(bench::threadMilliseconds(list));
        clock.push_back(clockMilliseconds() - start);
    }
    print("list again, processor", processor);
    print("list again, clock", clock);

    AppModel model(std::make_shared<FileScanner>(std::vector<std::string>(),
                       FileScanner::standardMemoryLimit, residentMemoryBytes),
        std::move(platform));
    int left = 0;
    QObject::connect(&model, &AppModel::fieldChanged, &model, [&left](AppModel::Field field) {
        left -= field == AppModel::Field::processes || field == AppModel::Field::memory ? 1 : 0;
    });
    processor.clear();
    for (int round = 0; round < rounds; ++round) {
        left = 2;
        processor.push_back(bench::threadMilliseconds([&] {
            model.refreshMemory();
            model.refreshProcesses();
            while (left > 0)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }));
    }
    print("main thread, memory and processes, processor", processor);
    std::printf("%zu applications\n", found);
    return EXIT_SUCCESS;
}
