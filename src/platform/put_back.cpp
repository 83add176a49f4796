#include "platform/put_back.h"

#include "core/domain/removal_guard.h"

namespace kestavon {

FileResult<Done> putBack(const std::string& source, const std::string& destination,
    FileMover& mover, FilePlaces& places, const MoveOptions& options)
{
    constexpr unsigned ordinaryFolder = 0777; // less what the user's mask takes away
    const auto slash = destination.rfind('/');
    const auto folder = slash == 0 ? std::string("/") : destination.substr(0, slash);
    const auto made = places.makeFolder(folder, ordinaryFolder);
    if (!made)
        return made.error();
    const auto fail = [&](FileError::Kind kind) {
        places.removeMadeFolders(*made);
        return moveError(kind, lastComponent(destination), lastComponent(folder));
    };
    // Looked at first, so that nothing is copied only to find its place taken.
    if (places.kindOf(destination))
        return fail(FileError::Kind::fileExists);
    auto remembering = options;
    remembering.remembersTarget = true;
    const auto moved = mover.move(source, destination, remembering);
    if (!moved)
        return fail(moved.error().kind);
    return Done{};
}

} // namespace kestavon
