#pragma once

#include "core/domain/installed_app.h"
#include "ui/widgets/confirmation.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <string_view>
#include <vector>

namespace kestavon {

/// The line below the title: what is going on, what was found, or what the screen is for.
QString uninstallerSubtitle(const std::vector<InstalledApp>& apps, bool isLoading);
/// "Scan Apps" before there is a list, "Rescan" from then on.
QString scanAppsLabel(const std::vector<InstalledApp>& apps);

/// "412.8 MB", or "Clean" where nothing is left.
QString leftoverSizeText(std::int64_t bytes);
/// The name of that text's colour.
std::string_view leftoverSizeColor(std::int64_t bytes);
/// "18 files"
QString leftoverFilesText(std::size_t count);

/// "also of Editor and Viewer": who else has a leftover; empty when nobody has.
QString sharedLeftoverText(const QStringList& others);

/// Whether the application is listed under this filter: its name contains it, whatever the case.
bool passesFilter(const InstalledApp& app, std::string_view filter);

/// The question before the application goes, with all that is left or alone; before what is left
/// goes, where the application itself cannot be moved.
ConfirmationTexts uninstallQuestion(const InstalledApp& app);

} // namespace kestavon
