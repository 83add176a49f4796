#include "ui/processes/app_icon_provider.h"

#include "platform/icns_file.h"
#include "ui/processes/processes_rules.h"
#include "ui/style/symbol_provider.h"

#include <QBuffer>
#include <QFile>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <string_view>

#include <sys/stat.h>

namespace kestavon {

namespace {

/// No icon is larger, in bytes; other files may be named too.
constexpr ::off_t largestFile = 4 * 1024 * 1024;

bool isReadable(const std::string& path)
{
    struct stat status { };
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
        && status.st_size <= largestFile;
}

QImage drawn(QSvgRenderer& drawing, int pixels)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    auto size = QSizeF(drawing.defaultSize());
    size.scale(pixels, pixels, Qt::KeepAspectRatio);
    drawing.render(
        &painter, QRectF(QPointF((pixels - size.width()) / 2, (pixels - size.height()) / 2), size));
    return image;
}

QImage scaled(QImageReader& reader, int pixels)
{
    constexpr int largestEdge = 4096; // a few bytes can say that they are gigabytes
    const auto size = reader.size();
    if (std::max(size.width(), size.height()) > largestEdge)
        return {};
    const auto image = reader.read();
    return image.isNull()
        ? image
        : image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QImage readImage(const std::string& path, int pixels)
{
    const auto name = QFile::decodeName(QByteArray::fromStdString(path));
    if (path.ends_with(".svg") || path.ends_with(".svgz")) {
        QSvgRenderer drawing(name);
        return drawing.isValid() ? drawn(drawing, pixels) : QImage();
    }
    QImageReader reader(name);
    reader.setDecideFormatFromContent(true);
    return scaled(reader, pixels);
}

/// The picture of an icon file that bundles have.
QImage readBundleIcon(const std::string& path, int pixels)
{
    constexpr int smallestGood = 56; // a smaller one is dull where it is not shown at its own size
    auto bytes = QByteArray::fromStdString(pngInIcnsFile(path, std::max(pixels, smallestGood)));
    if (bytes.isEmpty())
        return {};
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "png");
    return scaled(reader, pixels);
}

} // namespace

AppIconProvider::AppIconProvider(const std::vector<std::string>& dataFolders)
    : QQuickImageProvider(
        QQmlImageProviderBase::Image, QQmlImageProviderBase::ForceAsynchronousImageLoading)
    , m_dataFolders(dataFolders)
{
    for (const auto& theme : {QIcon::themeName().toStdString(), std::string("hicolor"),
             std::string("Adwaita"), std::string("breeze")}) {
        if (!theme.empty() && std::ranges::find(m_themes, theme) == m_themes.end())
            m_themes.push_back(theme);
    }
}

std::string AppIconProvider::fileOf(const std::string& icon, int pixels) const
{
    if (icon.starts_with('/'))
        return isReadable(icon) ? icon : std::string();
    if (icon.empty() || icon.find('/') != icon.npos)
        return {};
    // Drawings of the least size that is large enough, then larger ones, then the rest.
    std::vector<int> sizes{16, 22, 24, 32, 48, 64, 96, 128, 256, 512};
    std::ranges::stable_partition(sizes, [pixels](int size) { return size >= pixels; });
    std::vector<std::string> places;
    for (const auto size : sizes) {
        const auto edge = std::to_string(size);
        places.push_back(edge + 'x' + edge + "/apps/");
        places.push_back("apps/" + edge + '/');
    }
    places.insert(places.begin() + 2, {"scalable/apps/", "apps/scalable/"});
    constexpr std::array<std::string_view, 2> endings{".png", ".svg"};
    for (const auto& theme : m_themes) {
        for (const auto& folder : m_dataFolders) {
            const auto themed = folder + "/icons/" + theme + '/';
            struct stat status { };
            if (::stat(themed.c_str(), &status) != 0)
                continue;
            for (const auto& place : places) {
                for (const auto ending : endings) {
                    auto file = (themed + place + icon).append(ending);
                    if (isReadable(file))
                        return file;
                }
            }
        }
    }
    for (const auto& folder : m_dataFolders) {
        for (const auto* ending : {"", ".png", ".svg", ".xpm"}) {
            for (const auto* place : {"/pixmaps/", "/icons/"}) {
                const auto file = folder + place + icon + ending;
                if (isReadable(file))
                    return file;
            }
        }
    }
    return {};
}

QImage AppIconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize)
{
    constexpr int largest = 512;
    const int pixels
        = std::clamp(std::max(requestedSize.width(), requestedSize.height()), 1, largest);
    const auto color = QColor(u'#' + id.section(u'/', 0, 0));
    const auto icon = iconOfKey(id.section(u'/', 1));
    QImage image;
    if (icon.starts_with('/') && icon.ends_with(".icns"))
        image = readBundleIcon(icon, pixels);
    else if (const auto file = fileOf(icon, pixels); !file.empty())
        image = readImage(file, pixels);
    if (image.isNull())
        image = SymbolProvider::draw(QStringLiteral("app.fill"), color, pixels);
    if (size)
        *size = image.size();
    return image;
}

} // namespace kestavon
