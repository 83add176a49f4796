#include "smartclean/category_scan.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace kestavon {

namespace {

using SteadyClock = std::chrono::steady_clock;

// As many folders of one category may be stuck at a time before the rest of it has to wait.
constexpr unsigned mostThreads = 32;

/// Tells how long nothing has moved.
class QuietTime {
public:
    explicit QuietTime(const std::atomic<std::uint64_t>& moves)
        : m_moves(moves)
        , m_seen(moves)
    {
    }

    void begin() { m_since = SteadyClock::now(); }

    SteadyClock::duration sinceMove()
    {
        const auto now = SteadyClock::now();
        if (const auto seen = m_moves.load(); std::exchange(m_seen, seen) != seen)
            m_since = now;
        return now - m_since;
    }

private:
    const std::atomic<std::uint64_t>& m_moves;
    std::uint64_t m_seen;
    SteadyClock::time_point m_since = SteadyClock::now();
};

} // namespace

CategoryScan::CategoryScan(std::shared_ptr<const HostLayout> layout, SmartScannerTools tools,
    JunkCategory category, ScanPatience patience)
    : m_layout(std::move(layout))
    , m_tools(std::move(tools))
    , m_patience(patience)
    , m_moves(std::make_shared<std::atomic<std::uint64_t>>(0))
    , m_knowledge(std::make_shared<ScanKnowledge>())
{
    for (const auto& location : m_layout->junkLocations) {
        if (location.category == category)
            m_steps.push_back({&location, std::nullopt, m_findings.emplace(m_findings.end())});
    }
}

std::vector<CleanupCandidate> CategoryScan::run(const std::stop_token& stop)
{
    const std::stop_callback passOn(stop, [this] { m_stop.request_stop(); });
    std::unique_lock lock(m_mutex);
    if (!m_steps.empty() && !startThread())
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    waitForEnd(lock, stop);
    if (m_working > 0) {
        lock.unlock();
        m_stop.request_stop();
        lock.lock();
        waitForStopped(lock);
    }
    m_steps.clear();
    if (m_failure)
        std::rethrow_exception(m_failure);
    std::vector<CleanupCandidate> candidates;
    for (auto& findings : m_findings)
        findings.takeInto(candidates);
    return candidates;
}

/// Until all is done, a stop is requested, or nothing moves any more and nothing else can be begun.
void CategoryScan::waitForEnd(std::unique_lock<std::mutex>& lock, const std::stop_token& stop)
{
    const auto pause = std::min(m_patience.untilNext, m_patience.inAll) / 4;
    QuietTime sinceLastThread(*m_moves);
    QuietTime quiet(*m_moves);
    while (!m_changed.wait_for(lock, stop, pause, [this] { return m_working == 0; })) {
        if (stop.stop_requested())
            return;
        const bool isStuck = sinceLastThread.sinceMove() >= m_patience.untilNext;
        if (isStuck && !m_steps.empty() && m_working < mostThreads && startThread()) {
            sinceLastThread.begin();
            quiet.begin(); // The new one may be luckier.
        } else if (quiet.sinceMove() >= m_patience.inAll) {
            return;
        }
    }
}

/// What is still to be listed is listed, as long as it goes on.
void CategoryScan::waitForStopped(std::unique_lock<std::mutex>& lock)
{
    const auto deadline = SteadyClock::now() + m_patience.afterStop;
    QuietTime quiet(*m_moves);
    const auto allLeft = [this] { return m_working == 0; };
    while (!m_changed.wait_for(lock, m_patience.quietAfterStop / 4, allLeft)) {
        if (SteadyClock::now() >= deadline || quiet.sinceMove() >= m_patience.quietAfterStop)
            return;
    }
}

/// With the mutex held; false when the system has no more threads to give.
bool CategoryScan::startThread()
{
    try {
        std::thread([self = shared_from_this()] { self->work(); }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    ++m_working;
    return true;
}

void CategoryScan::work()
{
    std::exception_ptr failure;
    try {
        takeSteps();
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    if (failure)
        m_failure = failure;
    --m_working;
    m_changed.notify_all();
}

void CategoryScan::takeSteps()
{
    LocationScan scan(
        m_layout, m_tools, m_knowledge, m_stop.get_token(), [moves = m_moves] { ++*moves; });
    while (const auto step = nextStep()) {
        if (step->folder)
            scan.lookIn(*step->location, *step->folder, *step->findings);
        else
            addFolders(*step, scan.foldersOf(*step->location));
        ++*m_moves;
    }
}

std::optional<CategoryScan::Step> CategoryScan::nextStep()
{
    const std::lock_guard lock(m_mutex);
    if (m_steps.empty())
        return std::nullopt;
    auto step = std::move(m_steps.front());
    m_steps.pop_front();
    return step;
}

/// They are the next steps, in their order.
void CategoryScan::addFolders(const Step& location, std::vector<std::string> folders)
{
    const std::lock_guard lock(m_mutex);
    std::vector<Step> steps;
    for (auto& folder : folders)
        steps.push_back(
            {location.location, std::move(folder), m_findings.emplace(location.findings)});
    m_steps.insert(m_steps.begin(), std::make_move_iterator(steps.begin()),
        std::make_move_iterator(steps.end()));
}

} // namespace kestavon
