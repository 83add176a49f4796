#include "ui/uninstaller/app_rows.h"

#include "ui/processes/processes_rules.h"
#include "ui/uninstaller/uninstaller_rules.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

#include <QStringList>

#include <algorithm>
#include <string_view>
#include <utility>

namespace kestavon {

AppRows::AppRows(Source source, Busy busy)
    : m_source(std::move(source))
    , m_busy(std::move(busy))
{
    findShared();
    arrange();
}

const AppRows::Row* AppRows::at(int row) const
{
    const auto i = static_cast<std::size_t>(row);
    return row >= 0 && i < m_rows.size() ? &m_rows[i] : nullptr;
}

const InstalledApp* AppRows::appOf(int row) const
{
    const auto* shown = at(row);
    return shown ? &m_source()[shown->app] : nullptr;
}

const LeftoverFile* AppRows::leftoverAt(int row) const
{
    const auto* shown = at(row);
    return shown && shown->leftover ? &m_source()[shown->app].leftovers[*shown->leftover] : nullptr;
}

QString AppRows::nameText(int row) const
{
    if (const auto* leftover = leftoverAt(row))
        return fileNameText(leftover->url);
    const auto* app = appOf(row);
    return app ? fileNameText(app->name) : QString();
}

QString AppRows::detailText(int row) const
{
    if (const auto* leftover = leftoverAt(row))
        return displayText(rawValue(leftover->kind));
    const auto* app = appOf(row);
    if (!app)
        return {};
    return app->bundleID ? fileNameText(*app->bundleID) : u"Unknown ID"_s;
}

QString AppRows::sizeText(int row) const
{
    if (const auto* leftover = leftoverAt(row))
        return byteText(leftover->size);
    const auto* app = appOf(row);
    return app ? leftoverSizeText(app->leftoverBytes()) : QString();
}

QString AppRows::sizeColor(int row) const
{
    const auto* app = appOf(row);
    return displayText(leftoverSizeColor(app ? app->leftoverBytes() : 0));
}

FilePath AppRows::filePath(int row) const
{
    if (const auto* leftover = leftoverAt(row))
        return {leftover->url};
    const auto* app = appOf(row);
    return {app ? app->appURL : std::string()};
}

QString AppRows::iconText(int row) const
{
    const auto* app = appOf(row);
    return app ? iconKey(app->icon) : QString();
}

QString AppRows::idText(int row) const
{
    if (const auto* leftover = leftoverAt(row))
        return displayText(leftover->id.text());
    const auto* app = appOf(row);
    return app ? displayText(app->id.text()) : QString();
}

QString AppRows::sharedText(int row) const
{
    const auto* leftover = leftoverAt(row);
    const auto owners = leftover ? m_shared.find(leftover->url) : m_shared.end();
    if (owners == m_shared.end())
        return {};
    QStringList others;
    for (const auto owner : owners->second) {
        if (owner != at(row)->app)
            others += fileNameText(m_source()[owner].name);
    }
    return sharedLeftoverText(others);
}

QString AppRows::filesText(int row) const
{
    const auto* app = appOf(row);
    return app ? leftoverFilesText(app->leftovers.size()) : QString();
}

bool AppRows::hasLeftovers(int row) const
{
    const auto* app = appOf(row);
    return app && app->leftoverBytes() >= 1;
}

bool AppRows::isOpen(int row) const
{
    const auto* app = appOf(row);
    return app && !app->leftovers.empty() && m_open.contains(app->id);
}

bool AppRows::isBusy(int row) const
{
    const auto* app = appOf(row);
    return app && m_busy(app->id);
}

bool AppRows::canUninstall(int row) const
{
    const auto* app = appOf(row);
    return app && (app->canBeMoved || !app->leftovers.empty());
}

int AppRows::setOpen(int row, bool open)
{
    const auto* shown = at(row);
    const auto* app = appOf(row);
    if (!app)
        return row;
    const auto appRow = row - static_cast<int>(shown->leftover ? *shown->leftover + 1 : 0);
    const bool hasChanged = open ? !app->leftovers.empty() && m_open.insert(app->id).second
                                 : m_open.erase(app->id) > 0;
    if (hasChanged) {
        arrange();
        refresh();
    }
    return appRow;
}

int AppRows::toggle(int row)
{
    return setOpen(row, !isOpen(row));
}

double AppRows::rowTop(int row) const
{
    const auto* shown = at(row);
    return shown ? shown->top : row < 0 ? 0 : m_length;
}

int AppRows::rowAt(double position) const
{
    const auto after = std::ranges::upper_bound(m_rows, position, {}, &Row::top);
    return std::max(0, static_cast<int>(after - m_rows.begin()) - 1);
}

void AppRows::setFilter(std::string filter)
{
    m_filter = std::move(filter);
    arrange();
    refresh();
}

void AppRows::reload()
{
    // Those of an earlier list have other identifiers.
    std::unordered_set<Uuid> open;
    for (const auto& app : m_source()) {
        if (m_open.contains(app.id))
            open.insert(app.id);
    }
    m_open = std::move(open);
    findShared();
    arrange();
    refresh();
}

void AppRows::refresh()
{
    ++m_revision;
    Q_EMIT changed();
}

void AppRows::findShared()
{
    m_shared.clear();
    std::unordered_map<std::string_view, std::size_t> firstOwners;
    const auto& apps = m_source();
    for (std::size_t i = 0; i < apps.size(); ++i) {
        for (const auto& leftover : apps[i].leftovers) {
            const auto [first, isNew] = firstOwners.emplace(leftover.url, i);
            if (isNew)
                continue;
            auto& owners = m_shared[leftover.url];
            if (owners.empty())
                owners.push_back(first->second);
            owners.push_back(i);
        }
    }
}

void AppRows::arrange()
{
    m_rows.clear();
    m_length = 0;
    const auto& apps = m_source();
    const auto add = [this](std::size_t app, std::optional<std::size_t> leftover, double height) {
        m_rows.push_back({.app = app, .leftover = leftover, .top = m_length});
        m_length += height;
    };
    for (std::size_t i = 0; i < apps.size(); ++i) {
        if (!m_filter.empty() && !passesFilter(apps[i], m_filter))
            continue;
        add(i, std::nullopt, appHeight());
        if (!m_open.contains(apps[i].id))
            continue;
        for (std::size_t k = 0; k < apps[i].leftovers.size(); ++k)
            add(i, k, leftoverHeight());
    }
}

} // namespace kestavon
