#pragma once

class QQmlEngine;

namespace kestavon {

/// Completes what Qt Quick tells assistive technology: that disabled items are disabled, a press or
/// toggle that reaches a button as if the keyboard had pressed it, the role of an item with a
/// property `accessibleRole` (a plain Control forgets the one it was given when a screen reader
/// comes), and of a popup the name and description that are its `title` and `message`. Call once,
/// before the first QML file is loaded by `engine`.
void installAccessibleShim(QQmlEngine& engine);

} // namespace kestavon
