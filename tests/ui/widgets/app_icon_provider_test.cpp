#include "support/event_loop.h"
#include "support/temporary_folder.h"
#include "ui/processes/processes_rules.h"
#include "ui/widgets/app_icon_provider.h"

#include <QBuffer>
#include <QImage>

#include <atomic>
#include <memory>
#include <mutex>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestavon {
namespace {

/// Icons of one colour each.
class AppIcons : public ::testing::Test {
protected:
    void write(const std::string& file, const QColor& color, int pixels = 48)
    {
        folder.writeFile(file);
        QImage image(pixels, pixels, QImage::Format_ARGB32);
        image.fill(color);
        ASSERT_TRUE(image.save(QString::fromStdString(folder / file), "PNG"));
    }
    /// An entry of a bundle's icon file.
    static std::string entry(const std::string& type, const std::string& bytes)
    {
        return type + bigEndian(8 + bytes.size()) + bytes;
    }
    static std::string bundleIcon(const std::string& entries)
    {
        return "icns" + bigEndian(8 + entries.size()) + entries;
    }
    static std::string bigEndian(std::size_t number)
    {
        std::string bytes;
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(number >> shift);
        return bytes;
    }
    static std::string png(const QColor& color, int pixels)
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImage image(pixels, pixels, QImage::Format_ARGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(&buffer, "PNG"));
        return bytes.toStdString();
    }
    QColor shownBundleIcon(const std::string& bytes)
    {
        return shown(folder.writeFile("Editor.app/Contents/Resources/Editor.icns", bytes));
    }
    /// What stands in the middle of the icon.
    QColor shown(const std::string& icon)
    {
        const AppIconFiles files({folder / "user", folder / "system"});
        const auto image = files.draw(icon, Qt::green, 24);
        EXPECT_EQ(image.size(), QSize(24, 24)) << icon;
        return image.pixelColor(12, 12);
    }

    test::TemporaryFolder folder;
};

TEST_F(AppIcons, AreFoundByNameAndByPath)
{
    write("system/icons/hicolor/48x48/apps/editor.png", Qt::red);
    write("system/icons/hicolor/16x16/apps/editor.png", Qt::black, 16);
    write("system/pixmaps/viewer.png", Qt::blue);
    write("elsewhere/odd name%2F.png", Qt::cyan);
    EXPECT_EQ(shown("editor"), Qt::red) << "one that is large enough";
    write("system/icons/hicolor/16x16/apps/small.png", Qt::black, 16);
    write("system/icons/hicolor/22x22/apps/small.png", Qt::white, 22);
    EXPECT_EQ(shown("small"), Qt::white) << "the largest, as none is large enough";
    EXPECT_EQ(shown("viewer"), Qt::blue);
    EXPECT_EQ(shown("viewer.png"), Qt::blue);
    EXPECT_EQ(shown(folder / "elsewhere/odd name%2F.png"), Qt::cyan);
    write("user/icons/hicolor/48x48/apps/editor.png", Qt::yellow);
    EXPECT_EQ(shown("editor"), Qt::yellow) << "the user's own goes first";
}

TEST_F(AppIcons, OfABundleAreTheLeastThatIsLargeEnough)
{
    const auto small = entry("icp5", png(Qt::black, 32));
    const auto right = entry("ic12", png(Qt::red, 64));
    const auto large = entry("ic07", png(Qt::blue, 128));
    const auto other = entry("icp6", "a picture of another format");
    EXPECT_EQ(shownBundleIcon(bundleIcon(other + large + small + right)), Qt::red);
    EXPECT_EQ(shownBundleIcon(bundleIcon(small + other + large)), Qt::blue);
    EXPECT_EQ(shownBundleIcon(bundleIcon(other + small)), Qt::black) << "there is no larger one";
    EXPECT_EQ(shownBundleIcon(bundleIcon(entry("name", png(Qt::red, 64)) + large)), Qt::blue);
}

TEST_F(AppIcons, OfABrokenBundleAreASymbol)
{
    const auto missing = shown("missing");
    const auto picture = png(Qt::red, 64);
    const auto whole = bundleIcon(entry("ic12", picture));
    ASSERT_EQ(shownBundleIcon(whole), Qt::red);
    for (std::size_t length = 0; length < whole.size(); length += length < 24 ? 1 : 17)
        EXPECT_EQ(shownBundleIcon(whole.substr(0, length)), missing) << length;

    auto gigantic = picture; // the width, as a PNG says it behind its first 16 bytes
    gigantic.replace(16, 4, "\x7f\xff\xff\xff");
    const std::string broken[]{
        "icns",
        "icnt" + whole.substr(4),
        "icns" + bigEndian(0) + entry("ic12", picture),
        "icns" + bigEndian(8) + entry("ic12", picture),
        bundleIcon("ic12" + bigEndian(0) + picture),
        bundleIcon("ic12" + bigEndian(7) + picture),
        bundleIcon("ic12" + bigEndian(0xffffffff) + picture),
        bundleIcon(entry("ic12", "")),
        bundleIcon(entry("ic12", picture.substr(0, 8))),
        bundleIcon(entry("ic12", gigantic)),
        whole + std::string(8'000'000, 'x'),
    };
    for (const auto& bytes : broken)
        EXPECT_EQ(shownBundleIcon(bytes), missing) << bytes.substr(0, 40);

    const auto file = folder.writeFile("whole.icns", whole);
    ASSERT_EQ(::symlink(file.c_str(), (folder / "link.icns").c_str()), 0);
    ASSERT_EQ(::mkfifo((folder / "pipe.icns").c_str(), 0600), 0);
    for (const auto* name : {"link.icns", "pipe.icns", "none.icns"})
        EXPECT_EQ(shown(folder / name), missing) << name;
}

TEST_F(AppIcons, AreASymbolWhereNothingCanBeRead)
{
    const auto missing = shown("missing");
    ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
    folder.writeFile("text.png", "no picture");
    folder.writeFile("huge.png", std::string(5 * 1024 * 1024, 'x'));
    folder.writeFile("broken.svg", "<svg");
    const std::string drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 9 9\">"
                                "<rect width=\"9\" height=\"9\" fill=\"red\"/></svg>";
    folder.writeFile("drawing.svg", drawing);
    ASSERT_EQ(shown(folder / "drawing.svg"), Qt::red);
    folder.writeFile("drawing.svgz", drawing);
    folder.writeFile("drawing.png", drawing);
    folder.writeFile("huge.svg", drawing + std::string(1024 * 1024, '\n'));
    for (const auto& icon : {std::string(), folder / "pipe.png", folder / "text.png",
             folder / "huge.png", folder / "broken.svg", folder / "drawing.svgz",
             folder / "drawing.png", folder / "huge.svg", folder.path(), std::string("../x")})
        EXPECT_EQ(shown(icon), missing) << icon;
}

/// What was asked of a provider. Qt, which would free it, does not know of it.
class AskedIcon {
public:
    AskedIcon(AppIconProvider& provider, const std::string& icon)
        : response(provider.requestImageResponse("00ff00/" + iconKey(icon), {24, 24}))
    {
        QObject::connect(
            response.get(), &QQuickImageResponse::finished, response.get(), [this] { ++finished; });
    }
    bool finishes() const
    {
        return test::processEventsUntil([this] { return finished > 0; });
    }
    QImage image() const
    {
        const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
        return factory->image();
    }

    const std::unique_ptr<QQuickImageResponse> response;
    int finished = 0;
};

TEST(AppIconProvider, WaitsForNoFileThatHangs)
{
    const auto hung = std::make_shared<std::mutex>();
    const auto began = std::make_shared<std::atomic<bool>>(false);
    std::unique_lock hanging(*hung);
    {
        auto provider = std::make_unique<AppIconProvider>(
            [hung, began](const std::string& icon, const QColor& color, int pixels) {
                if (icon == "/dead/share.png") {
                    *began = true;
                    const std::lock_guard lock(*hung);
                }
                QImage image(pixels, pixels, QImage::Format_ARGB32);
                image.fill(color);
                return image;
            });
        AskedIcon dead(*provider, "/dead/share.png");
        ASSERT_TRUE(test::processEventsUntil([&] { return began->load(); }));
        AskedIcon next(*provider, "/dead/next.png");
        AskedIcon themed(*provider, "editor");
        EXPECT_TRUE(themed.finishes());
        EXPECT_EQ(themed.image().size(), QSize(24, 24));
        EXPECT_EQ(themed.image().pixelColor(12, 12), QColor(0, 255, 0));

        EXPECT_EQ(dead.finished, 0);
        next.response->cancel();
        EXPECT_TRUE(next.finishes()) << "Qt waits for that before it frees it";
        provider.reset(); // must not hang
        dead.response->cancel();
        EXPECT_TRUE(dead.finishes());
    }
    hanging.unlock(); // its image comes for a response that has gone
}

} // namespace
} // namespace kestavon
