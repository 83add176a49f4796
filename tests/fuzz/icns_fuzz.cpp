// Any bytes may be read as an icon file: the picture is a part of them, and begins as a PNG does.
#include "platform/icns_file.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    const auto picture = kestavon::pngInIcns(file, 56);
    if (picture.empty())
        return 0;
    if (picture.data() < file.data() || picture.data() + picture.size() > file.data() + file.size()
        || !picture.starts_with("\x89PNG")) {
        std::fprintf(stderr, "broken: the picture is a PNG of the file's\n");
        std::abort();
    }
    return 0;
}
