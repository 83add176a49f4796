#include "walk/folder_sizes.h"

#include "core/domain/package_rule.h"
#include "core/domain/record_list.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <span>

namespace kestavon {

namespace {

// Where nothing is in memory yet, that many keep a disk busy; otherwise they cost nothing.
constexpr unsigned usualThreads = 16;

class SizeWalk final : public FolderWalk {
public:
    SizeWalk(std::vector<FolderToMeasure> folders, const std::stop_token& stop, SizeOptions options)
        : FolderWalk(
            {.threads = options.threads != 0 ? options.threads : usualThreads, .stop = stop})
        , m_visited(std::move(options.visited))
        , m_folders(std::move(folders))
        , m_sums(m_folders.size())
    {
    }

    /// The sums, or those so far when a thread is still at work.
    std::vector<std::int64_t> sums() const { return {m_sums.begin(), m_sums.end()}; }

private:
    class Adder;

    std::unique_ptr<Visitor> makeVisitor(unsigned worker) override;
    void begin(Worker& worker) override;
    void add(std::uint32_t folder, std::int64_t bytes);

    const std::function<void()> m_visited;
    const std::vector<FolderToMeasure> m_folders;
    std::vector<std::atomic<std::int64_t>> m_sums;
};

/// What one thread sums up.
class SizeWalk::Adder final : public Visitor {
public:
    explicit Adder(SizeWalk& walk)
        : m_walk(walk)
    {
    }

    void visit(Folder& folder, int file, std::vector<ListedName>& names,
        std::vector<Subfolder>& subfolders) override;

private:
    void enter(const Folder& parent, const ListedName& name, std::optional<std::uint64_t> device,
        std::vector<Subfolder>& subfolders);
    void keepNames(std::vector<Subfolder>& subfolders);

    SizeWalk& m_walk;
    std::vector<std::string_view> m_inner; // names of the subfolders
};

void SizeWalk::Adder::visit(
    Folder& folder, int file, std::vector<ListedName>& names, std::vector<Subfolder>& subfolders)
{
    std::int64_t bytes = 0;
    m_inner.clear();
    for (const auto& name : names) {
        if (m_walk.isStopped())
            break;
        if (name.isFolder && !m_walk.needsFacts()) {
            enter(folder, name, std::nullopt, subfolders);
            continue;
        }
        const auto facts = lookAtSize(file, name.bytes);
        if (!facts)
            continue;
        bytes = saturatingSum(bytes, facts->size);
        if (facts->isDirectory)
            enter(folder, name, facts->device, subfolders);
    }
    keepNames(subfolders);
    m_walk.add(folder.number, bytes);
    if (m_walk.m_visited)
        m_walk.m_visited();
}

void SizeWalk::Adder::enter(const Folder& parent, const ListedName& name,
    std::optional<std::uint64_t> device, std::vector<Subfolder>& subfolders)
{
    if (hasPackageExtension(name.view()))
        return;
    subfolders.push_back({.device = device, .number = parent.number});
    m_inner.push_back(name.view());
}

/// The names lie in a buffer that the next folder is listed in: all that are needed later are
/// copied in one piece, which goes with the last of the subfolders.
void SizeWalk::Adder::keepNames(std::vector<Subfolder>& subfolders)
{
    std::size_t length = 0;
    for (const auto name : m_inner)
        length += name.size() + 1;
    if (length == 0)
        return;
    const std::shared_ptr<char[]> names(new char[length]);
    auto* end = names.get();
    auto subfolder = subfolders.begin();
    for (const auto name : m_inner) {
        std::memcpy(end, name.data(), name.size() + 1);
        subfolder->name = std::shared_ptr<const char>(names, end);
        end += name.size() + 1;
        ++subfolder;
    }
}

std::unique_ptr<FolderWalk::Visitor> SizeWalk::makeVisitor(unsigned)
{
    return std::make_unique<Adder>(*this);
}

void SizeWalk::begin(Worker& worker)
{
    auto first = m_folders.begin();
    while (first != m_folders.end()) {
        const auto end = std::find_if(first, m_folders.end(),
            [&](const FolderToMeasure& folder) { return folder.parent != first->parent; });
        const auto parent = std::make_shared<Folder>();
        const auto facts = lookAt(first->parent->get(), "");
        parent->device = facts ? facts->device : 0;
        parent->base = first->parent;
        std::vector<Subfolder> subfolders;
        for (; first != end; ++first) {
            subfolders.push_back({.name = nameThatOutlives(first->name.c_str()),
                .device = first->device,
                .number = static_cast<std::uint32_t>(first - m_folders.begin()),
                .isStart = true});
        }
        worker.add(parent, subfolders);
    }
}

void SizeWalk::add(std::uint32_t folder, std::int64_t bytes)
{
    auto& sum = m_sums[folder];
    auto before = sum.load();
    while (bytes != 0 && !sum.compare_exchange_weak(before, saturatingSum(before, bytes))) { }
}

} // namespace

std::vector<std::int64_t> folderSizes(
    std::vector<FolderToMeasure> folders, const std::stop_token& stop, SizeOptions options)
{
    if (folders.empty())
        return {};
    const auto walk = std::make_shared<SizeWalk>(std::move(folders), stop, std::move(options));
    walk->start();
    walk->wait();
    return walk->sums();
}

} // namespace kestavon
