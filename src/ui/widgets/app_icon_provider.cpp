#include "ui/widgets/app_icon_provider.h"

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
#include <mutex>
#include <string_view>
#include <utility>

#include <sys/stat.h>

namespace kestavon {

namespace {

bool isReadable(const std::string& path)
{
    // No icon is larger, in bytes; other files may be named too. A drawing can say much more with
    // each of its bytes than a picture.
    constexpr ::off_t largestPicture = 4 * 1024 * 1024;
    constexpr ::off_t largestDrawing = 512 * 1024;
    struct stat status { };
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
        && status.st_size <= (path.ends_with(".svg") ? largestDrawing : largestPicture);
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
    if (path.ends_with(".svg")) {
        QSvgRenderer drawing(name);
        return drawing.isValid() ? drawn(drawing, pixels) : QImage();
    }
    QImageReader reader(name);
    reader.setDecideFormatFromContent(true);
    // Packed, or a drawing by another name: nobody knows how much it is.
    if (reader.format().startsWith("svg"))
        return {};
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

class AppIconResponse;

/// Brings an image to the response that waits for it, unless that has gone. Any thread.
class Delivery {
public:
    explicit Delivery(AppIconResponse& response)
        : m_response(&response)
    {
    }

    bool isWanted()
    {
        const std::lock_guard lock(m_mutex);
        return m_response;
    }
    void cancel()
    {
        const std::lock_guard lock(m_mutex);
        m_response = nullptr;
    }
    void bring(QImage image);

private:
    std::mutex m_mutex;
    AppIconResponse* m_response; // guarded by m_mutex
};

/// Belongs to Qt, which frees it when it has finished.
class AppIconResponse final : public QQuickImageResponse {
public:
    ~AppIconResponse() override { m_delivery->cancel(); }

    const std::shared_ptr<Delivery>& delivery() const { return m_delivery; }
    void finish(QImage image)
    {
        if (std::exchange(m_isFinished, true))
            return;
        m_image = std::move(image);
        Q_EMIT finished();
    }

    QQuickTextureFactory* textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    /// It must finish, though nobody looks at it any more.
    void cancel() override
    {
        m_delivery->cancel();
        QMetaObject::invokeMethod(
            this, [this] { finish({}); }, Qt::QueuedConnection);
    }

private:
    const std::shared_ptr<Delivery> m_delivery = std::make_shared<Delivery>(*this);
    QImage m_image;
    bool m_isFinished = false;
};

void Delivery::bring(QImage image)
{
    const std::lock_guard lock(m_mutex);
    if (!m_response)
        return;
    QMetaObject::invokeMethod(
        m_response, [response = m_response, image = std::move(image)] { response->finish(image); },
        Qt::QueuedConnection);
}

} // namespace

AppIconFiles::AppIconFiles(const std::vector<std::string>& dataFolders)
    : m_dataFolders(dataFolders)
{
    for (const auto& theme : {QIcon::themeName().toStdString(), std::string("hicolor"),
             std::string("Adwaita"), std::string("breeze")}) {
        if (!theme.empty() && std::ranges::find(m_themes, theme) == m_themes.end())
            m_themes.push_back(theme);
    }
}

std::string AppIconFiles::fileOf(const std::string& icon, int pixels) const
{
    if (icon.starts_with('/'))
        return isReadable(icon) ? icon : std::string();
    if (icon.empty() || icon.find('/') != icon.npos)
        return {};
    // The least size that is large enough, drawings, larger ones, and then the largest of the rest.
    std::vector<int> sizes{16, 22, 24, 32, 48, 64, 96, 128, 256, 512};
    std::ranges::reverse(
        std::ranges::stable_partition(sizes, [pixels](int size) { return size >= pixels; }));
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

QImage AppIconFiles::draw(const std::string& icon, const QColor& color, int pixels) const
{
    QImage image;
    if (icon.starts_with('/') && icon.ends_with(".icns"))
        image = readBundleIcon(icon, pixels);
    else if (const auto file = fileOf(icon, pixels); !file.empty())
        image = readImage(file, pixels);
    return image.isNull() ? SymbolProvider::draw(QStringLiteral("app.fill"), color, pixels) : image;
}

AppIconProvider::AppIconProvider(const std::vector<std::string>& dataFolders)
    : AppIconProvider(
        [files = AppIconFiles(dataFolders)](const std::string& icon, const QColor& color,
            int pixels) { return files.draw(icon, color, pixels); })
{
}

AppIconProvider::AppIconProvider(Draw draw)
    : m_draw(std::make_shared<const Draw>(std::move(draw)))
{
}

QQuickImageResponse* AppIconProvider::requestImageResponse(
    const QString& id, const QSize& requestedSize)
{
    constexpr int largest = 512;
    const int pixels
        = std::clamp(std::max(requestedSize.width(), requestedSize.height()), 1, largest);
    const auto color = QColor(u'#' + id.section(u'/', 0, 0));
    const auto icon = iconOfKey(id.section(u'/', 1));
    auto* const response = new AppIconResponse; // Qt's from here on
    auto& queue = icon.starts_with('/') ? m_pathQueue : m_themeQueue;
    queue.post([draw = m_draw, delivery = response->delivery(), icon, color, pixels] {
        if (delivery->isWanted())
            delivery->bring((*draw)(icon, color, pixels));
    });
    return response;
}

} // namespace kestavon
