#include "safearea/origin_notes.h"

#include <optional>
#include <string_view>
#include <utility>

namespace kestavon {

namespace {

/// Takes the text up to the next NUL off `rest`; nothing when there is none.
std::optional<std::string> takeField(std::string_view& rest)
{
    const auto end = rest.find('\0');
    if (end == rest.npos)
        return std::nullopt;
    std::string field(rest.substr(0, end));
    rest.remove_prefix(end + 1);
    return field;
}

} // namespace

OriginNotes::OriginNotes(std::string folder, std::shared_ptr<FilePlaces> places)
    : m_folder(std::move(folder))
    , m_places(std::move(places))
{
}

void OriginNotes::write(const Uuid& id, const std::vector<FileMark>& marks)
{
    std::string note;
    for (const auto& mark : marks)
        note.append(mark.name).append(1, '\0').append(mark.value).append(1, '\0');
    m_places->writeNote(pathFor(id), note);
}

std::vector<FileMark> OriginNotes::read(const Uuid& id) const
{
    std::vector<FileMark> marks;
    const auto note = m_places->readNote(pathFor(id));
    std::string_view rest = note ? std::string_view(*note) : std::string_view();
    while (auto name = takeField(rest)) {
        if (auto value = takeField(rest))
            marks.push_back({.name = std::move(*name), .value = std::move(*value)});
    }
    return marks;
}

void OriginNotes::remove(const Uuid& id)
{
    m_places->removeNote(pathFor(id));
}

std::vector<Uuid> OriginNotes::noted() const
{
    std::vector<Uuid> ids;
    for (const auto& name : m_places->namesIn(m_folder)) {
        if (const auto id = Uuid::fromText(name))
            ids.push_back(*id);
    }
    return ids;
}

std::string OriginNotes::pathFor(const Uuid& id) const
{
    return m_folder + '/' + id.text();
}

} // namespace kestavon
