#pragma once

#include "platform/file_mover.h"
#include "platform/file_places.h"

#include <chrono>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kestavon::shots {

/// What was moved away. Used on the Safe Area's thread only.
using MovedPaths = std::shared_ptr<std::set<std::string>>;

/// A path at which it takes for ever to copy what lies there: as long as nobody stops it.
inline const std::string endlessPath = "/home/alice/Videos/Holiday 2024";

/// Says that every move went well: pictures of the Safe Area need no files.
class PaperMover final : public FileMover {
public:
    explicit PaperMover(MovedPaths moved)
        : m_moved(std::move(moved))
    {
    }
    FileResult<MoveReport> move(const std::string& source, const std::string& destination,
        const MoveOptions& options) override
    {
        while (source == endlessPath && !options.stop.stop_requested()) {
            options.progress(18'420'000'000, 57'910'000'000);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        m_moved->insert(source);
        m_moved->erase(destination);
        return MoveReport{};
    }
    void clearUnfinishedMoves(const std::string&) override { }

private:
    MovedPaths m_moved;
};

/// Places at which there is whatever is asked for, unless it was moved away.
class PaperPlaces final : public FilePlaces {
public:
    explicit PaperPlaces(MovedPaths moved)
        : m_moved(std::move(moved))
    {
    }
    std::optional<EntryKind> kindOf(const std::string& path) const override
    {
        return m_moved->contains(path) ? std::nullopt : std::optional(EntryKind::file);
    }
    FileResult<std::vector<std::string>> makeFolder(const std::string&, unsigned) override
    {
        return std::vector<std::string>();
    }
    void removeMadeFolders(const std::vector<std::string>&) override { }
    std::size_t longestNameIn(const std::string&) const override { return 255; }
    std::vector<std::string> namesIn(const std::string&) const override { return names; }
    bool writeNote(const std::string&, const std::string&) override { return true; }
    std::optional<std::string> readNote(const std::string&) const override { return std::nullopt; }
    void removeNote(const std::string&) override { }
    std::vector<FileMark> marksOf(const std::string& path, const std::string&) const override
    {
        const auto found = marks.find(path.substr(path.rfind('/') + 1));
        return found == marks.end() ? std::vector<FileMark>() : found->second;
    }
    std::vector<std::string> names; ///< in every folder
    std::map<std::string, std::vector<FileMark>> marks; ///< of the items with these names

private:
    MovedPaths m_moved;
};

} // namespace kestavon::shots
