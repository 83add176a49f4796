#pragma once

class QQmlEngine;

namespace kestavon {

/// Completes what Qt Quick tells assistive technology: that disabled items are disabled, and a
/// press or toggle that reaches a button as if the keyboard had pressed it. Call once, before the
/// first QML file is loaded by `engine`.
void installAccessibleShim(QQmlEngine& engine);

} // namespace kestavon
