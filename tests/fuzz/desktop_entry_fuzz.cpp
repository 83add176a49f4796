// Any bytes may be read as a desktop entry: its texts are short and valid, or missing.
#include "core/domain/utf8.h"
#include "platform/linux/desktop_entries.h"

#include <cstdio>
#include <cstdlib>

namespace {

// NOLINTNEXTLINE(google-build-using-namespace): the program's own file, included by nobody
using namespace kestavon;

void requireText(const std::string& text)
{
    bool isFit = !text.empty() && text.size() <= 4096 && text.find('\0') == text.npos;
    for (std::size_t i = 0; isFit && i < text.size();) {
        const auto length = utf8CharacterAt(text, i).length;
        isFit = length > 0;
        i += length;
    }
    if (isFit)
        return;
    std::fprintf(stderr, "broken: a text is short and valid\n");
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    static const auto languages = languagesOf("de_AT.UTF-8@euro");
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    desktopCommandOf(text); // whatever it starts
    const auto entry = parseDesktopEntry(text, languages);
    if (!entry)
        return 0;
    for (const auto* value : {&entry->name, &entry->icon, &entry->tryExec, &entry->windowClass,
             &entry->flatpak, &entry->snap}) {
        if (*value)
            requireText(**value);
    }
    for (const auto* list : {&entry->onlyShownIn, &entry->notShownIn}) {
        for (const auto& desktop : *list)
            requireText(desktop);
    }
    return 0;
}
