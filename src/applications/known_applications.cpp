#include "applications/known_applications.h"

#include "applications/application_names.h"
#include "core/domain/file_name.h"
#include "core/domain/removal_guard.h"
#include "platform/letter_case.h"
#include "platform/linux/desktop_entries.h"
#include "walk/folder_names.h"
#include "walk/folder_reader.h"

#include <algorithm>
#include <span>
#include <tuple>
#include <unordered_map>

namespace kestavon {

namespace {

/// What one file or folder tells of an application.
struct Sign {
    std::string key; ///< the same for all that tell of one application
    std::string name;
    std::string identifier;
    std::string path;
    std::string program; ///< the file name of what is run; may be empty
    bool isManaged = false;
    bool isShown = false;
    bool isProgramItself = false; ///< the path is the application's and no file about it
    std::vector<std::string> terms = {};
    std::optional<std::string> icon = {};
};

std::string programOf(const DesktopCommand& command)
{
    return std::string(lastComponent(command.target));
}

Sign signOf(const DesktopEntry& entry, bool isManaged)
{
    using Kind = DesktopCommand::Kind;
    Sign sign{.key = "entry " + entry.identifier,
        .name = entry.name.value_or(entry.identifier),
        .identifier = entry.identifier,
        .path = entry.path,
        .program = {},
        .isManaged = isManaged,
        .isShown = !entry.isNotDisplayed,
        .icon = entry.icon};
    addTermsOfIdentifier(entry.identifier, sign.terms);
    addTermsOf(sign.name, sign.terms);
    if (entry.windowClass)
        addTermsOf(*entry.windowClass, sign.terms);
    if (entry.icon && !entry.icon->starts_with('/'))
        addTermsOf(*entry.icon, sign.terms);

    const auto& command = entry.command;
    if (entry.flatpak || command.kind == Kind::flatpak) {
        sign.identifier = entry.flatpak.value_or(command.target);
        sign.key = "flatpak " + sign.identifier;
        addTermsOfIdentifier(sign.identifier, sign.terms);
    } else if (entry.snap || command.kind == Kind::snap) {
        const auto snap = entry.snap.value_or(command.target.substr(0, command.target.find('.')));
        sign.key = "snap " + snap;
        addTermsOf(snap, sign.terms);
    } else if (auto program = programOf(command); !program.empty() && !isLauncher(program)) {
        sign.key = "program " + lowerCased(program);
        addTermsOf(program, sign.terms);
        sign.program = std::move(program);
    }
    return sign;
}

/// "Krita-5.2.2-x86_64.AppImage" is of the program "Krita".
Sign signOfAppImage(const std::string& folder, const std::string& file)
{
    const std::string stem(withoutExtension(file));
    const auto name = stem.substr(0, stem.find_first_of("-_", 1));
    Sign sign{.key = "program " + lowerCased(file),
        .name = name,
        .identifier = {},
        .path = folder + '/' + file,
        .program = file,
        .isManaged = false,
        .isShown = true,
        .isProgramItself = true};
    addTermsOf(name, sign.terms);
    return sign;
}

void addAppImages(const ApplicationSource& source, std::vector<Sign>& signs)
{
    const auto entries = namedEntriesOf(source.folder);
    if (!entries)
        return;
    for (const auto& name : entries->names) {
        const auto facts = lookAt(entries->folder->get(), name.c_str());
        if (facts && !facts->isDirectory && lowerCased(fileExtension(name)) == "appimage")
            signs.push_back(signOfAppImage(source.folder, name));
    }
}

void addFlatpaks(const ApplicationSource& source, std::vector<Sign>& signs)
{
    const auto entries = namedEntriesOf(source.folder);
    if (!entries)
        return;
    for (const auto& name : entries->names) {
        Sign sign{.key = "flatpak " + name,
            .name = name,
            .identifier = name,
            .path = source.folder + '/' + name,
            .program = {},
            .isManaged = source.isManaged};
        addTermsOfIdentifier(name, sign.terms);
        signs.push_back(std::move(sign));
    }
}

void addDesktopEntries(const std::vector<ApplicationSource>& sources, std::vector<Sign>& signs)
{
    std::vector<std::string> folders;
    for (const auto& source : sources) {
        if (source.form == ApplicationForm::desktopEntries)
            folders.push_back(source.folder);
    }
    for (const auto& entry : readDesktopEntries(folders, userLanguages())) {
        if (entry.isHidden || !entry.isApplication)
            continue;
        const auto source = std::ranges::find_if(sources, [&entry](const ApplicationSource& of) {
            return of.form == ApplicationForm::desktopEntries && isAtOrBelow(entry.path, of.folder);
        });
        signs.push_back(signOf(entry, source == sources.end() || source->isManaged));
    }
}

/// Whether `one` stands for the application rather than `other`.
bool standsBefore(const Sign& one, const Sign& other)
{
    const auto rank = [](const Sign& sign) {
        const auto program = lowerCased(sign.program);
        const auto identifier = lowerCased(sign.identifier);
        const bool isCalledLikeProgram = !program.empty()
            && (program == lowerCased(sign.name)
                || program == identifier.substr(identifier.rfind('.') + 1));
        return std::tuple(
            !sign.isShown, sign.isProgramItself, !isCalledLikeProgram, sign.identifier.size());
    };
    return rank(one) < rank(other);
}

KnownApplication applicationOf(std::span<const Sign* const> signs)
{
    const Sign* first = signs.front();
    for (const auto* sign : signs) {
        if (standsBefore(*sign, *first))
            first = sign;
    }
    KnownApplication application{.name = first->name,
        .identifier = first->identifier.empty() ? std::nullopt : std::optional(first->identifier),
        .path = first->path,
        .isManaged = false,
        .isShown = first->isShown,
        .icon = first->icon};
    for (const auto* sign : signs) {
        application.isManaged = application.isManaged || sign->isManaged;
        if (sign->isProgramItself)
            application.path = sign->path;
        for (const auto& term : sign->terms) {
            if (std::ranges::find(application.terms, term) == application.terms.end())
                application.terms.push_back(term);
        }
    }
    addKnownAliases(application.terms);
    return application;
}

} // namespace

std::vector<KnownApplication> knownApplications(
    const HostLayout& layout, const std::stop_token& stop)
{
    std::vector<Sign> signs;
    addDesktopEntries(layout.applicationSources, signs);
    for (const auto& source : layout.applicationSources) {
        if (stop.stop_requested())
            return {};
        if (source.form == ApplicationForm::flatpaks)
            addFlatpaks(source, signs);
        else if (source.form == ApplicationForm::appImages)
            addAppImages(source, signs);
    }

    std::vector<std::vector<const Sign*>> groups;
    std::unordered_map<std::string, std::size_t> groupOfKey;
    for (const auto& sign : signs) {
        const auto [known, isNew] = groupOfKey.emplace(sign.key, groups.size());
        if (isNew)
            groups.emplace_back();
        groups[known->second].push_back(&sign);
    }
    std::vector<KnownApplication> applications;
    for (const auto& group : groups)
        applications.push_back(applicationOf(group));
    return applications;
}

} // namespace kestavon
