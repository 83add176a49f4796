#include "support/temporary_folder.h"
#include "ui/processes/app_icon_provider.h"
#include "ui/processes/processes_rules.h"

#include <QImage>

#include <gtest/gtest.h>
#include <sys/stat.h>

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
    /// What stands in the middle of the icon.
    QColor shown(const std::string& icon)
    {
        AppIconProvider provider({folder / "user", folder / "system"});
        QSize size;
        const auto image = provider.requestImage("00ff00/" + iconKey(icon), &size, {24, 24});
        EXPECT_EQ(size, QSize(24, 24)) << icon;
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
    EXPECT_EQ(shown("viewer"), Qt::blue);
    EXPECT_EQ(shown("viewer.png"), Qt::blue);
    EXPECT_EQ(shown(folder / "elsewhere/odd name%2F.png"), Qt::cyan);
    write("user/icons/hicolor/48x48/apps/editor.png", Qt::yellow);
    EXPECT_EQ(shown("editor"), Qt::yellow) << "the user's own goes first";
}

TEST_F(AppIcons, AreASymbolWhereNothingCanBeRead)
{
    const auto missing = shown("missing");
    ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
    folder.writeFile("text.png", "no picture");
    folder.writeFile("huge.png", std::string(5 * 1024 * 1024, 'x'));
    folder.writeFile("broken.svg", "<svg");
    for (const auto& icon : {std::string(), folder / "pipe.png", folder / "text.png",
             folder / "huge.png", folder / "broken.svg", folder.path(), std::string("../x")})
        EXPECT_EQ(shown(icon), missing) << icon;
}

} // namespace
} // namespace kestavon
