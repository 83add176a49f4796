#pragma once

#include <concepts>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace kestavon {

/// Writes one JSON document (RFC 8259, UTF-8) as it goes: what was written is not kept, so that a
/// document may be longer than memory. Each element of an outer list stands on a line of its own.
class JsonWriter {
public:
    /// `out` gets the document in large pieces; the last one by `finish`.
    explicit JsonWriter(std::ostream& out);

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginList() { open('['); }
    void endList() { close(']'); }

    /// The key of the next value. Keys are the program's own and need no escapes.
    void key(std::string_view name);

    void value(bool flag);
    template <std::integral Number>
    requires(!std::same_as<Number, bool>) void value(Number number) { raw(std::to_string(number)); }
    /// A text, which need not be valid UTF-8: see `pathToText`.
    void value(std::string_view text);
    void value(const char* text) { value(std::string_view(text)); }
    void null() { raw("null"); }
    /// A value that is JSON already.
    void raw(std::string_view json);

    template <class Value> void member(std::string_view name, const Value& content)
    {
        key(name);
        value(content);
    }
    /// A member of the bytes of a path. When its text does not lead back to them by itself, a
    /// second member, called as the first and "Base64", has the bytes.
    void path(std::string_view name, std::string_view bytes);

    void finish();

private:
    void open(char bracket);
    void close(char bracket);
    void beginValue();
    void flushWhenLong();

    std::ostream& m_out;
    std::string m_text; ///< not yet handed on
    std::vector<bool> m_levels; ///< of each open object or list, whether it has something in it
    bool m_hasKey = false;
};

/// Appends `text` as a JSON string without its quotes; what is not UTF-8 becomes stand-ins, see
/// `pathToText`.
void appendJsonText(std::string& json, std::string_view text);

/// RFC 4648, with padding.
std::string base64(std::string_view bytes);

} // namespace kestavon
