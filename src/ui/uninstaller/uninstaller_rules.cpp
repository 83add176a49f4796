#include "ui/uninstaller/uninstaller_rules.h"

#include "core/domain/record_list.h"
#include "core/model/questions.h"
#include "core/model/text_folding.h"
#include "ui/widgets/display_text.h"
#include "ui/widgets/file_name_text.h"

namespace kestavon {

QString uninstallerSubtitle(const std::vector<InstalledApp>& apps, bool isLoading)
{
    if (isLoading)
        return u"Scanning installed apps…"_s;
    if (apps.empty())
        return u"Find and remove apps along with all their leftover files."_s;
    std::int64_t bytes = 0;
    for (const auto& app : apps)
        bytes = saturatingSum(bytes, app.leftoverBytes());
    return u"%1 apps · %2 in leftover files"_s.arg(QString::number(apps.size()), byteText(bytes));
}

QString scanAppsLabel(const std::vector<InstalledApp>& apps)
{
    return apps.empty() ? u"Scan Apps"_s : u"Rescan"_s;
}

QString leftoverSizeText(std::int64_t bytes)
{
    return bytes < 1 ? u"Clean"_s : byteText(bytes);
}

std::string_view leftoverSizeColor(std::int64_t bytes)
{
    return bytes < 1 ? "green" : "orange";
}

QString leftoverFilesText(std::size_t count)
{
    return u"%1 files"_s.arg(count);
}

QString sharedLeftoverText(const QStringList& others)
{
    switch (others.size()) {
    case 0: return {};
    case 1: return u"also of %1"_s.arg(others[0]);
    case 2: return u"also of %1 and %2"_s.arg(others[0], others[1]);
    default: return u"also of %1 and %2 more"_s.arg(others[0], QString::number(others.size() - 1));
    }
}

bool passesFilter(const InstalledApp& app, std::string_view filter)
{
    return containsFolded(app.name, filter);
}

ConfirmationTexts uninstallQuestion(const InstalledApp& app)
{
    const auto name = fileNameText(app.name).toStdString();
    if (!app.canBeMoved)
        return textsOf(questions::removeLeftovers(name));
    auto texts = textsOf(questions::uninstall(name, false));
    texts.alternative = displayText(questions::uninstall({}, true).action);
    return texts;
}

} // namespace kestavon
