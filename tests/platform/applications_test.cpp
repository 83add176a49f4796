#include "platform/application_bundles.h"
#include "platform/letter_case.h"
#include "platform/linux/application_units.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestavon {
namespace {

using testing::ElementsAre;

std::string list(const std::string& entries)
{
    return "<plist><dict>" + entries + "</dict></plist>";
}

TEST(BundleInfo, IsReadFromTheListInsideOrAtTheTop)
{
    const test::TemporaryFolder folder;
    const auto identifier = [](const std::string& text) {
        return "<key>CFBundleIdentifier</key><string>" + text + "</string>";
    };
    folder.writeFile("Both.app/Contents/Info.plist", list(identifier("com.example.Inner")));
    folder.writeFile("Both.app/Info.plist", list(identifier("com.example.Top")));
    EXPECT_EQ(bundleInfo(folder / "Both.app").identifier, "com.example.Inner");
    folder.writeFile("Flat.app/Info.plist", list(identifier("com.example.Flat")));
    EXPECT_EQ(bundleInfo(folder / "Flat.app").identifier, "com.example.Flat");
    folder.writeFile("Named.app/Contents/Info.plist",
        list("<key>CFBundleName</key><string>Short</string>"
             "<key>CFBundleDisplayName</key><string>Long Name</string>"));
    EXPECT_EQ(
        bundleInfo(folder / "Named.app"), (BundleInfo{.identifier = {}, .name = "Long Name"}));
    for (const std::string name : {"App Icon", "App Icon.icns", "../Icon"}) {
        folder.writeFile("Drawn.app/Contents/Info.plist",
            list("<key>CFBundleIconFile</key><string>" + name + "</string>"));
        const auto icon = folder / "Drawn.app/Contents/Resources/App Icon.icns";
        EXPECT_EQ(bundleInfo(folder / "Drawn.app").icon,
            name.starts_with('.') ? std::nullopt : std::optional(icon));
    }
}

TEST(BundleInfo, IsAbsentWhereTheListIsBrokenOrSaysSomethingElse)
{
    const test::TemporaryFolder folder;
    const std::string contents[]{"", "<plist><dict>", list(""), "<plist><string>a</string></plist>",
        list("<key>CFBundleIdentifier</key><string></string>"),
        list("<key>CFBundleIdentifier</key><array><string>a</string></array>")};
    for (const auto& content : contents) {
        folder.writeFile("Odd.app/Contents/Info.plist", content);
        EXPECT_EQ(bundleInfo(folder / "Odd.app"), BundleInfo()) << content;
    }
    EXPECT_EQ(bundleInfo(folder / "Missing.app"), BundleInfo());
    folder.writeFile("File.app", "text");
    EXPECT_EQ(bundleInfo(folder / "File.app"), BundleInfo());
}

TEST(LowerCased, GoesByUnicodeAndNoLanguage)
{
    EXPECT_EQ(lowerCased("Com.EXAMPLE.I"), "com.example.i");
    EXPECT_EQ(lowerCased("ÜBER Öffner ΣΑΣ ДОМ"), "über öffner σασ дом");
    EXPECT_EQ(lowerCased("A\xFF\xC3 Z"), "a\xFF\xC3 z") << "bytes that are no text";
}

TEST(ApplicationOfControlGroup, IsWhatItsUnitIsCalled)
{
    const std::string slice = "/user.slice/user-1000.slice/user@1000.service/app.slice/";
    const std::pair<const char*, const char*> units[]{
        {"app-gnome-org.gnome.Terminal-2716.scope", "org.gnome.Terminal"},
        {"app-org.gnome.Terminal-2716.scope", "org.gnome.Terminal"},
        {"app-flatpak-org.mozilla.firefox-12.scope", "org.mozilla.firefox"},
        {"app-org.kde.konsole@d9a1b2.service", "org.kde.konsole"},
        {"app-gnome-org.gnome.Evolution\\x2dalarm\\x2dnotify.service",
            "org.gnome.Evolution-alarm-notify"},
        {"app-gnome-firefox\\x2desr-77.scope/inner", "firefox-esr"},
        {"snap.firefox.firefox-0e5b9ae2-44ff.scope", "firefox"},
    };
    for (const auto& [unit, identifier] : units)
        EXPECT_EQ(applicationOfControlGroup(slice + unit), identifier) << unit;
    for (const auto* group : {"/", "", "/init.scope", "/user.slice/user-1000.slice/session-2.scope",
             "/user.slice/user-1000.slice/user@1000.service/session.slice/pipewire.service",
             "/user.slice/user-1000.slice/user@1000.service/app.slice/app-.scope",
             "/system.slice/snap.cups.cupsd.service"})
        EXPECT_EQ(applicationOfControlGroup(group), std::nullopt) << group;
}

} // namespace
} // namespace kestavon
