#include "platform/linux/removal/tree_cursor.h"

#include "platform/linux/removal/retry.h"

#include <cerrno>

#include <fcntl.h>

namespace kestavon {

namespace {

/// Folders kept open besides the top: going up a little and down again is the common way.
constexpr std::size_t openSteps = 8;

} // namespace

Result<FileDescriptor, int> openFolderIn(int parent, const char* name)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor opened(retrying([&] { return ::openat(parent, name, flags); }));
    if (!opened)
        return errno;
    return opened;
}

std::vector<Identity> folderIdentities(const TreeSurvey& survey)
{
    std::vector<Identity> identities;
    identities.reserve(survey.folders().size());
    for (const auto& folder : survey.folders())
        identities.push_back(survey.entries()[folder.entry].status.identity);
    return identities;
}

TreeCursor::TreeCursor(
    const TreeSurvey& survey, const std::vector<Identity>& identities, FileDescriptor top)
    : m_survey(survey)
    , m_identities(identities)
{
    m_steps.push_back({.folder = 0, .descriptor = std::move(top)});
}

int TreeCursor::go(std::uint32_t folder)
{
    std::vector<std::uint32_t> downward;
    const auto isOnTheWay = [this](std::uint32_t candidate) {
        const auto depth = m_survey.folders()[candidate].depth;
        return depth < m_steps.size() && m_steps[depth].folder == candidate;
    };
    auto meeting = folder;
    for (; !isOnTheWay(meeting); meeting = m_survey.folders()[meeting].parent)
        downward.push_back(meeting);

    int error = 0;
    while (error == 0 && m_steps.size() > m_survey.folders()[meeting].depth + 1)
        error = leave();
    for (; error == 0 && !downward.empty(); downward.pop_back())
        error = enter(downward.back());
    if (error != 0) {
        m_steps.erase(m_steps.begin() + 1,
            m_steps.end()); // The top is always open: the next call starts from there.
        errno = error;
        return -1;
    }
    return m_steps.back().descriptor.get();
}

int TreeCursor::leave()
{
    const auto left = std::move(m_steps.back());
    m_steps.pop_back();
    auto& step = m_steps.back();
    if (step.descriptor)
        return 0;
    auto above = openFolderIn(left.descriptor.get(), "..");
    if (!above)
        return above.error();
    if (!isExpected(above->get(), step.folder))
        return ESTALE;
    step.descriptor = std::move(*above);
    return 0;
}

int TreeCursor::enter(std::uint32_t folder)
{
    const auto& entry = m_survey.entries()[m_survey.folders()[folder].entry];
    auto below = openFolderIn(m_steps.back().descriptor.get(), m_survey.name(entry));
    if (!below)
        return below.error();
    if (!isExpected(below->get(), folder))
        return ESTALE;
    m_steps.push_back({.folder = folder, .descriptor = std::move(*below)});
    if (m_steps.size() > openSteps + 1)
        m_steps[m_steps.size() - openSteps - 1].descriptor.reset();
    return 0;
}

bool TreeCursor::isExpected(int descriptor, std::uint32_t folder) const
{
    const auto status = statusOf(descriptor, "");
    return status && status->identity == m_identities[folder];
}

} // namespace kestavon
