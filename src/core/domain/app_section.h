#pragma once

#include "core/domain/named_enum.h"

namespace kestavon {

/// The sections of the main window; the raw values are their titles.
enum class AppSection {
    dashboard,
    smartClean,
    storage,
    largeFiles,
    duplicates,
    cleaner,
    appUninstaller,
    performance,
    processes,
    startup,
    security,
    quarantine,
    history,
    settings,
};

template <> struct NamedCases<AppSection> {
    static constexpr std::array<NamedCase<AppSection>, 14> table{{
        {AppSection::dashboard, "Dashboard"},
        {AppSection::smartClean, "Smart Clean"},
        {AppSection::storage, "Storage"},
        {AppSection::largeFiles, "Large Files"},
        {AppSection::duplicates, "Duplicates"},
        {AppSection::cleaner, "Cleaner"},
        {AppSection::appUninstaller, "App Uninstaller"},
        {AppSection::performance, "Performance"},
        {AppSection::processes, "Processes"},
        {AppSection::startup, "Startup Items"},
        {AppSection::security, "Security"},
        {AppSection::quarantine, "Safe Area"},
        {AppSection::history, "History"},
        {AppSection::settings, "Settings"},
    }};
};

} // namespace kestavon
