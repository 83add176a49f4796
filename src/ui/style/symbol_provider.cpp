#include "ui/style/symbol_provider.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace kestavon {

SymbolProvider::SymbolProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

// No cache here: Qt's own keeps what is on screen, by name, colour and size.
QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    const auto slash = id.indexOf(u'/');
    const auto name = id.left(slash);
    const auto color = slash < 0 ? QColor() : QColor(u'#' + id.mid(slash + 1));
    auto image = draw(name, color, requestedSize.width() > 0 ? requestedSize.width() : 16);
    if (size)
        *size = image.size();
    return image;
}

QImage SymbolProvider::draw(const QString& name, const QColor& color, int pixels)
{
    QSvgRenderer drawing(QStringLiteral(":/symbols/%1.svg").arg(name));
    if (!drawing.isValid())
        return {};
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // The stock drawings touch the edges of their 16 px grid, ours keep a margin on a 256 px one:
    // inset the former, so that both weigh the same, and land on whole pixels at 18 px.
    const bool stock = drawing.viewBox().width() == 16;
    const int inset = stock ? qMax(1, qRound(pixels / 16.0)) : 0;
    drawing.render(&painter, QRectF(inset, inset, pixels - 2 * inset, pixels - 2 * inset));
    if (color.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
    }
    return image;
}

} // namespace kestavon
