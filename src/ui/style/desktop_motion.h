#pragma once

namespace kestavon {

/// Whether the desktop asks programs to move nothing without need: animations switched off in the
/// GTK settings file, or KDE's animation speed set to "instant". KESTAVON_REDUCED_MOTION=1 or =0 in
/// the environment overrides both.
bool desktopReducesMotion();

} // namespace kestavon
