#pragma once

#include "platform/host_layout.h"

#include <string>

namespace kestavon {

/// Fills in what tells of applications, from where they may be taken away, and where they leave
/// data. `path` is a list with colons of folders with programs.
void addApplicationPlaces(HostLayout& layout, const std::string& path = {});

/// Fills in where software is made to start by itself. `configDirs` is a list with colons of the
/// system's folders of settings; empty: the usual one.
void addStartupPlaces(HostLayout& layout, const std::string& configDirs = {});

} // namespace kestavon
