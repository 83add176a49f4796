#pragma once

#include "platform/host_layout.h"

namespace kestavon {

/// Fills in from where applications may be taken away and where they leave data.
void addApplicationPlaces(HostLayout& layout);

/// Fills in where software is made to start by itself.
void addStartupPlaces(HostLayout& layout);

} // namespace kestavon
