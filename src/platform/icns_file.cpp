#include "platform/icns_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kestavon {

namespace {

/// A kind of picture that may be a PNG.
struct PictureType {
    std::string_view name;
    int pixels; ///< its edge
};

/// https://en.wikipedia.org/wiki/Apple_Icon_Image_format lists all.
constexpr std::array<PictureType, 10> pictureTypes{{
    {"icp4", 16},
    {"icp5", 32},
    {"icp6", 64},
    {"ic07", 128},
    {"ic08", 256},
    {"ic09", 512},
    {"ic11", 32},
    {"ic12", 64},
    {"ic13", 256},
    {"ic14", 512},
}};

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n";
/// A name and a length, which counts them too: the file's, and each picture's.
constexpr std::size_t headerBytes = 8;

std::size_t bigEndian(std::string_view bytes)
{
    std::size_t number = 0;
    for (const char byte : bytes)
        number = number << 8U | static_cast<unsigned char>(byte);
    return number;
}

bool suitsBetter(int edge, int than, int pixels)
{
    if ((edge >= pixels) != (than >= pixels))
        return edge >= pixels;
    return edge >= pixels ? edge < than : edge > than;
}

} // namespace

std::string_view pngInIcns(std::string_view bytes, int pixels)
{
    if (bytes.size() < headerBytes || !bytes.starts_with("icns"))
        return {};
    auto rest = bytes.substr(0, bigEndian(bytes.substr(4, 4)));
    rest.remove_prefix(std::min(headerBytes, rest.size()));

    std::string_view best;
    int bestEdge = 0;
    while (rest.size() >= headerBytes) {
        const auto length = bigEndian(rest.substr(4, 4));
        if (length < headerBytes || length > rest.size())
            break; // what follows cannot be told apart
        const auto picture = rest.substr(headerBytes, length - headerBytes);
        const auto type = std::ranges::find(pictureTypes, rest.substr(0, 4), &PictureType::name);
        if (type != pictureTypes.end() && picture.starts_with(pngSignature)
            && (best.empty() || suitsBetter(type->pixels, bestEdge, pixels))) {
            best = picture;
            bestEdge = type->pixels;
        }
        rest.remove_prefix(length);
    }
    return best;
}

} // namespace kestavon
