#pragma once

#include <string>
#include <string_view>

namespace kestavon {

/// The picture that suits the size best among the PNG pictures of a Mac's icon file (.icns), given
/// the bytes of that: the smallest whose edge is said to be at least `pixels`, or else the largest.
/// It begins as a PNG does, nobody has looked further; a part of `bytes`, and empty when there is
/// none. Pictures in other formats, and larger than 512 pixels, count for nothing. Any bytes may be
/// given. Any thread.
std::string_view pngInIcns(std::string_view bytes, int pixels);

/// The same of the file at `path`, of at most 8 MB; a link to one is not followed. Never waits for
/// a pipe or a device. Not on the main thread.
std::string pngInIcnsFile(const std::string& path, int pixels);

} // namespace kestavon
