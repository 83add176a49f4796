#include "platform/linux/removal/deed_journal.h"

#include "core/domain/uuid.h"
#include "platform/linux/descriptor_io.h"
#include "platform/linux/removal/item_place.h"
#include "platform/linux/removal/tree_copy.h"

#include <cerrno>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {

namespace {

// A note is a letter, its fields, each with a NUL at its end, and a line feed: a path may hold
// every other byte, and one that a power cut tore lacks its end.
constexpr char moveLetter = 'm';
constexpr char fileLetter = 'f';
constexpr char permissionsLetter = 'p';
constexpr char marksLetter = 'k';

std::string noteText(char letter, std::initializer_list<std::string> fields)
{
    std::string text(1, letter);
    for (const auto& field : fields)
        text.append(field).append(1, '\0');
    return text.append(1, '\n');
}

std::uint64_t numberIn(std::string_view text)
{
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Takes the fields of one note off `rest`; nothing when they are not all there.
std::optional<std::vector<std::string>> takeFields(std::string_view& rest, std::size_t count)
{
    std::vector<std::string> fields;
    while (fields.size() < count) {
        const auto end = rest.find('\0');
        if (end == rest.npos)
            return std::nullopt;
        fields.emplace_back(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    if (!rest.starts_with('\n'))
        return std::nullopt;
    rest.remove_prefix(1);
    return fields;
}

std::optional<Note> takeNote(std::string_view& rest)
{
    const char letter = rest.front();
    rest.remove_prefix(1);
    constexpr std::size_t ofMove = 6;
    constexpr std::size_t ofFile = 5;
    constexpr std::size_t ofPermissions = 4;
    constexpr std::size_t ofMarks = 3;
    std::optional<std::vector<std::string>> fields;
    const auto at = [&fields](std::size_t i) { return std::move((*fields)[i]); };
    switch (letter) {
    case moveLetter:
        fields = takeFields(rest, ofMove);
        if (fields)
            return NotedMove{.targetFolder = at(0),
                .targetName = at(1),
                .partialCopy = at(2),
                .source = {.path = at(3), .formerName = at(4), .inode = numberIn(at(5))}};
        break;
    case fileLetter:
        fields = takeFields(rest, ofFile);
        if (fields)
            return NotedFile{.folder = at(0),
                .name = at(1),
                .aside = at(2),
                .inode = numberIn(at(3)),
                .target = at(4)};
        break;
    case permissionsLetter:
        fields = takeFields(rest, ofPermissions);
        if (fields)
            return NotedPermissions{.path = at(0),
                .inode = numberIn(at(1)),
                .former = static_cast<mode_t>(numberIn(at(2))),
                .borrowed = static_cast<mode_t>(numberIn(at(3)))};
        break;
    case marksLetter:
        fields = takeFields(rest, ofMarks);
        if (fields)
            return NotedMarks{.path = at(0), .inode = numberIn(at(1)), .prefix = at(2)};
        break;
    default: break;
    }
    return std::nullopt;
}

/// Makes the folder for notes, and as many above it as a new home lacks; a home that is not there
/// is not made up.
bool makeJournalFolder(const std::string& path, int levels = 4)
{
    if (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST)
        return true;
    const auto slash = path.rfind('/');
    return errno == ENOENT && levels > 1 && slash != std::string::npos && slash > 0
        && makeJournalFolder(path.substr(0, slash), levels - 1)
        && (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST);
}

} // namespace

std::string textOf(const Note& note)
{
    struct Writer {
        std::string operator()(const NotedMove& move) const
        {
            return noteText(moveLetter,
                {move.targetFolder, move.targetName, move.partialCopy, move.source.path,
                    move.source.formerName, std::to_string(move.source.inode)});
        }
        std::string operator()(const NotedFile& file) const
        {
            return noteText(fileLetter,
                {file.folder, file.name, file.aside, std::to_string(file.inode), file.target});
        }
        std::string operator()(const NotedPermissions& permissions) const
        {
            return noteText(permissionsLetter,
                {permissions.path, std::to_string(permissions.inode),
                    std::to_string(permissions.former), std::to_string(permissions.borrowed)});
        }
        std::string operator()(const NotedMarks& marks) const
        {
            return noteText(marksLetter, {marks.path, std::to_string(marks.inode), marks.prefix});
        }
    };
    return std::visit(Writer(), note);
}

std::vector<Note> notesIn(std::string_view text)
{
    std::vector<Note> notes;
    while (!text.empty()) {
        auto note = takeNote(text);
        if (!note)
            break;
        notes.push_back(std::move(*note));
    }
    return notes;
}

JournalEntry::JournalEntry(std::string path)
    : m_path(std::move(path))
    , m_isRefused(m_path.empty())
{
}

JournalEntry::~JournalEntry()
{
    if (m_file && !m_isLeft)
        ::unlink(m_path.c_str());
}

bool JournalEntry::add(const Note& note)
{
    return add(std::vector{note});
}

bool JournalEntry::add(const std::vector<Note>& notes)
{
    std::string text;
    for (const auto& note : notes)
        text += textOf(note);
    const std::lock_guard lock(m_mutex);
    // After one that is torn no other would be read.
    m_isRefused = m_isRefused || !open() || !writeAll(m_file.get(), text);
    return !m_isRefused;
}

bool JournalEntry::writeOut()
{
    const std::lock_guard lock(m_mutex);
    if (m_isRefused || !m_file || waitForDisk(m_file.get()) != 0)
        return false;
    const FileDescriptor folder(
        ::open(m_path.substr(0, m_path.rfind('/')).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder && waitForDisk(folder.get()) == 0;
}

bool JournalEntry::open()
{
    if (m_file)
        return true;
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC;
    const auto make = [this] { return ::open(m_path.c_str(), flags, 0600); };
    FileDescriptor file(make());
    if (!file && errno == ENOENT && makeJournalFolder(m_path.substr(0, m_path.rfind('/'))))
        file.reset(make());
    // Where there are no locks, nobody ends what the notes tell of; nobody spoils it either.
    const bool isOurs
        = file && (::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK);
    struct stat status { };
    // A start of the program that looked at it just now, still empty, has taken it away.
    if (isOurs && ::fstat(file.get(), &status) == 0 && status.st_nlink > 0)
        m_file = std::move(file);
    return static_cast<bool>(m_file);
}

DeedJournal::DeedJournal(std::string folder)
    : m_folder(std::move(folder))
{
}

JournalEntry DeedJournal::begin() const
{
    return JournalEntry(m_folder.empty() ? std::string() : m_folder + '/' + Uuid::random().text());
}

void noteLoan(JournalEntry& journal, int folder, const std::string& name, const EntryStatus& status,
    mode_t borrowed)
{
    auto path = pathOfFolder(folder);
    if (!path)
        return;
    if (!name.empty())
        path->append(*path == "/" ? "" : "/").append(name);
    journal.add(NotedPermissions{.path = std::move(*path),
        .inode = status.identity.inode,
        .former = status.permissions(),
        .borrowed = borrowed});
}

} // namespace kestavon
