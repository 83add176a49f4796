#pragma once

#include <QQuickImageProvider>

namespace kestavon {

/// Draws symbols for `image://symbol/NAME/RRGGBB` (or AARRGGBB): the compiled-in drawing of that
/// name, at the size asked for in screen pixels and in that one colour. Without a colour the
/// drawing keeps its own. An unknown name gives nothing, and Qt says so.
class SymbolProvider final : public QQuickImageProvider {
public:
    SymbolProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

    /// The same for the rest of the window system; `color` invalid keeps the drawing's own.
    static QImage draw(const QString& name, const QColor& color, int pixels);
};

} // namespace kestavon
