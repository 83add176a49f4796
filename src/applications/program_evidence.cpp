#include "applications/program_evidence.h"

#include "applications/application_names.h"
#include "applications/known_applications.h"
#include "core/domain/file_name.h"
#include "platform/letter_case.h"
#include "walk/folder_names.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace kestavon {

namespace {

constexpr std::size_t shortestName = 3;
constexpr std::string_view separators = ".-_ ";

/// What identifiers of programs begin with: the top-level domains that projects register.
constexpr std::array<std::string_view, 34> domains{"ai", "app", "at", "be", "br", "ca", "cc", "ch",
    "cn", "co", "com", "cz", "de", "dev", "edu", "es", "eu", "fi", "fr", "im", "info", "io", "it",
    "jp", "me", "net", "nl", "no", "org", "pl", "re", "se", "uk", "us"};

/// Last parts of names that are files of data rather than identifiers.
constexpr std::array<std::string_view, 26> dataEndings{"backup", "bak", "bin", "cache", "conf",
    "csv", "dat", "data", "db", "desktop", "gz", "ini", "json", "lock", "log", "old", "pid",
    "service", "sh", "socket", "sqlite", "tmp", "txt", "xml", "yaml", "zip"};

std::vector<std::string_view> partsOf(std::string_view name)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const auto part = name.substr(0, name.find('.'));
        parts.push_back(part);
        if (part.size() == name.size())
            return parts;
        name.remove_prefix(part.size() + 1);
    }
}

/// "org.example.Editor": three parts or more, of which the first is a domain.
bool isIdentifier(std::string_view name)
{
    const auto parts = partsOf(name);
    constexpr std::size_t fewest = 3;
    return parts.size() >= fewest && std::ranges::find(domains, parts.front()) != domains.end()
        && std::ranges::find(dataEndings, parts.back()) == dataEndings.end()
        && std::ranges::none_of(parts, [](std::string_view part) {
               return part.empty() || part.find_first_of(" ~#") != part.npos;
           });
}

/// What follows "`key`: " in a line; nothing for another line.
std::string_view fieldOf(std::string_view line, std::string_view key)
{
    if (!line.starts_with(key) || !line.substr(key.size()).starts_with(": "))
        return {};
    return line.substr(key.size() + 2);
}

} // namespace

ProgramEvidence::ProgramEvidence(const HostLayout& layout, std::span<const std::string> running,
    const std::function<void()>& noteMove)
    : m_sharedNames(layout.programRecords.sharedNames)
{
    for (const auto& application : knownApplications(layout)) {
        for (const auto& term : application.terms)
            addOwner(term);
    }
    for (const auto& name : running) {
        std::vector<std::string> terms;
        addTermsOfIdentifier(name, terms);
        addKnownAliases(terms);
        for (const auto& term : terms)
            addOwner(term);
    }
    noteMove();
    readPrograms(layout, noteMove);
    readPackages(layout.programRecords, noteMove);
    readPackageLists(layout.programRecords.packageLists);
}

void ProgramEvidence::addOwner(std::string_view term)
{
    m_owners.add(0, term);
    for (auto end = term.find_first_of(separators); end != term.npos;
         end = term.find_first_of(separators, end + 1)) {
        if (end >= shortestName)
            m_beginnings.emplace(term.substr(0, end));
    }
}

void ProgramEvidence::readPrograms(const HostLayout& layout, const std::function<void()>& noteMove)
{
    for (const auto& folder : layout.programRecords.programFolders) {
        if (const auto entries = namedEntriesOf(folder)) {
            for (const auto& name : entries->names)
                addOwner(lowerCased(name));
        }
        noteMove();
    }
    for (const auto& folder : layout.programRecords.serviceFolders) {
        if (const auto entries = namedEntriesOf(folder)) {
            for (const auto& name : entries->names)
                addOwner(lowerCased(withoutExtension(name)));
        }
        noteMove();
    }
}

/// It was here and is gone: what it left may be called as its applications' data is.
void ProgramEvidence::addFormerPackage(std::string_view package)
{
    std::vector<std::string> terms;
    addTermsOf(package, terms);
    addKnownAliases(terms);
    m_formerPackages.insert(terms.begin(), terms.end());
}

/// dpkg's status file: paragraphs of fields, of which "Status" ends with the state, see dpkg(1).
/// What has that of "config-files" was removed, less its settings.
void ProgramEvidence::readPackages(
    const ProgramRecords& records, const std::function<void()>& noteMove)
{
    std::ifstream status(records.packageStatus);
    std::string package;
    for (std::string line; std::getline(status, line);) {
        if (const auto name = fieldOf(line, "Package"); !name.empty()) {
            package = name;
            noteMove();
        }
        const auto state = fieldOf(line, "Status");
        if (state.empty())
            continue;
        if (state.ends_with(" installed"))
            m_packages.insert(package);
        else
            addFormerPackage(package);
    }
    // "2026-11-23 20:09:01 remove mousepad:amd64 0.5.10-1 <none>", see dpkg.log
    for (const auto& file : records.packageLogs) {
        noteMove();
        std::ifstream log(file);
        for (std::string line; std::getline(log, line);) {
            constexpr std::string_view removal = " remove ";
            const auto found = line.find(removal);
            if (found == std::string::npos)
                continue;
            const auto name = std::string_view(line).substr(found + removal.size());
            addFormerPackage(name.substr(0, name.find_first_of(": ")));
        }
    }
}

/// APT's lists of packages, as far as they are kept as plain text.
void ProgramEvidence::readPackageLists(const std::string& folder)
{
    const auto entries = namedEntriesOf(folder);
    if (!entries)
        return;
    for (const auto& name : entries->names) {
        if (!name.ends_with("_Packages"))
            continue;
        std::ifstream list(folder + '/' + name);
        for (std::string line; std::getline(list, line);) {
            if (const auto package = fieldOf(line, "Package"); !package.empty())
                m_formerPackages.emplace(package);
        }
    }
}

bool ProgramEvidence::isShared(std::string_view name) const
{
    return std::ranges::any_of(m_sharedNames,
        [name](const std::string& pattern) { return namePatternMatches(pattern, name); });
}

/// Besides what is called like a program, or a program like it, what is called like a package that
/// is there.
bool ProgramEvidence::isOwned(std::string_view name) const
{
    return m_packages.contains(name) || m_beginnings.contains(name)
        || !m_owners.ownersByWords(name).empty();
}

bool ProgramEvidence::isAbandoned(std::string_view name) const
{
    const auto lower = lowerCased(name);
    const auto bare = withoutSettingEnding(name);
    if (bare.size() < shortestName || bare.starts_with('.') || isShared(lower) || isShared(bare)
        || isOwned(lower) || isOwned(bare))
        return false;
    return isIdentifier(bare) || m_formerPackages.contains(bare);
}

bool ProgramEvidence::isAbandonedIdentifier(std::string_view name) const
{
    const auto lower = lowerCased(name);
    return isIdentifier(lower) && !isOwned(lower);
}

} // namespace kestavon
