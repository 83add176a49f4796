#pragma once

namespace kestavon {

/// Whether the desktop asks programs to move nothing without need: it said so (see
/// DesktopAppearance), animations are switched off in the GTK settings file, or KDE's animation
/// speed is set to "instant". KESTAVON_REDUCED_MOTION=1 or =0 in the environment overrides all.
bool desktopReducesMotion(bool desktopSaidSo);

} // namespace kestavon
