#pragma once

#include <string>
#include <vector>

namespace kestavon {

/// A unit of systemd that a link starts with another one.
struct UnitLink {
    std::string unit; ///< "backup.timer"
    std::string path; ///< of the link
    std::string program; ///< what it, or what it triggers, runs; empty when that cannot be told
};

/// The services, timers and sockets that links in `folder` enable, in its folders called *.wants
/// and *.requires, by the bytes of these folders' names and the links', see systemd.unit(5). Not on
/// the main thread.
std::vector<UnitLink> unitLinksIn(const std::string& folder);

/// The program that the first ExecStart of a unit's file runs, see systemd.service(5); empty when
/// there is none.
std::string programOfUnit(const std::string& text);

} // namespace kestavon
