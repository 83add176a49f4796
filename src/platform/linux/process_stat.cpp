#include "platform/linux/process_stat.h"

#include "platform/linux/file_descriptor.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <fcntl.h>

namespace kestavon {

namespace {

/// The fields after the name, which the state (field 3) begins.
class Fields {
public:
    explicit Fields(std::string_view text)
        : m_left(text)
    {
    }

    std::string_view next()
    {
        const auto field = m_left.substr(0, m_left.find(' '));
        m_left.remove_prefix(std::min(field.size() + 1, m_left.size()));
        return field;
    }
    void skip(int count)
    {
        for (; count > 0; --count)
            next();
    }

private:
    std::string_view m_left;
};

bool readNumber(std::string_view text, std::uint64_t& number)
{
    const auto* const end = text.data() + text.size();
    return !text.empty() && std::from_chars(text.data(), end, number).ptr == end;
}

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text)
{
    // A program may be called ") R 1": the last bracket ends its name.
    const auto open = text.find('(');
    const auto close = text.rfind(") ");
    if (open == text.npos || close == text.npos || close < open)
        return std::nullopt;
    ProcessStat stat;
    stat.name = text.substr(open + 1, close - open - 1);
    Fields fields(text.substr(close + 2));
    const auto state = fields.next();
    fields.skip(18);
    const auto start = fields.next();
    fields.skip(1);
    const auto resident = fields.next();
    if (state.size() != 1 || !readNumber(start, stat.startedAt)
        || !readNumber(resident, stat.residentPages))
        return std::nullopt;
    stat.state = state.front();
    return stat;
}

std::optional<ProcessStat> readProcessStat(int folder, const char* path)
{
    const FileDescriptor file(::openat(folder, path, O_RDONLY | O_CLOEXEC));
    std::array<char, 1024> buffer; // some fifty numbers
    const auto length = file ? ::read(file.get(), buffer.data(), buffer.size()) : -1;
    return length > 0 ? parseProcessStat({buffer.data(), static_cast<std::size_t>(length)})
                      : std::nullopt;
}

} // namespace kestavon
