// Any bytes may be read as a property list: what comes out is within the limits, or a problem.
#include "platform/property_list.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

// Small, so that short inputs reach them.
constexpr PropertyListLimits limits{
    .fileBytes = 1U << 20U, .textBytes = 4096, .values = 500, .depth = 20};

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

struct Measure {
    std::size_t values = 0;
    std::size_t textBytes = 0;

    void addText(const std::string& text)
    {
        require(text.find('\0') == text.npos, "a text holds no NUL");
        textBytes += text.size();
    }

    void add(const PropertyValue& value, std::size_t depth)
    {
        ++values;
        require(depth <= limits.depth, "no deeper than the limit");
        if (const auto* const text = value.as<std::string>())
            addText(*text);
        if (const auto* const data = value.as<PropertyValue::Data>())
            textBytes += data->bytes.size();
        if (const auto* const elements = value.as<PropertyValue::Array>()) {
            for (const auto& element : *elements)
                add(element, depth + 1);
        }
        if (const auto* const entries = value.as<PropertyValue::Dictionary>()) {
            for (const auto& entry : *entries) {
                addText(entry.key);
                add(entry.value, depth + 1);
                require(value.at(entry.key) != nullptr, "what is there is found");
            }
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    const auto list = parsePropertyList({reinterpret_cast<const char*>(bytes), size}, limits);
    if (!list)
        return 0;
    Measure measure;
    measure.add(*list, 0);
    require(measure.values <= limits.values, "no more values than the limit");
    require(measure.textBytes <= limits.textBytes, "no more text than the limit");
    return 0;
}
