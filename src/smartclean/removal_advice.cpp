#include "smartclean/removal_advice.h"

#include <array>

namespace kestavon {

namespace {

struct Advice {
    std::string_view label; ///< the reason of the items that it is for
    std::string_view text;
    std::string_view within = {}; ///< a part of their paths; empty: wherever they lie
};

constexpr std::array advices{
    // What is special by its place comes first.
    Advice{"Application cache",
        "File managers draw these small pictures again as folders are opened.", "/thumbnails/"},
    Advice{"Application cache",
        "File managers draw these small pictures again as folders are opened.", "/.thumbnails/"},
    Advice{"Crash report",
        "The system kept it to report the crash of a program; one that was not sent is lost, and "
        "nothing else needs it.",
        "/var/crash/"},
    Advice{"npm cache", "npx downloads the tools that it runs again the next time.", "/.npm/_npx/"},
    Advice{"Cargo registry source",
        "Cargo checks the sources out again from its copies of the repositories at the next build.",
        "/.cargo/git/"},
    Advice{"Go module cache", "Go compiles the packages again; the next build takes longer once.",
        "/go-build/"},
    Advice{"Ruby gem cache",
        "These are the archives that gems were installed from; the installed gems stay, and Ruby "
        "downloads an archive again if it must.",
        "/cache/"},
    Advice{"Terraform plugins", "Terraform downloads the plugins again at the next init.",
        "/plugin-cache/"},
    Advice{"Mail cache",
        "Thunderbird loads what messages show from the network again; the messages stay.",
        "/thunderbird/"},
    Advice{"Mail cache",
        "These are copies of messages that lie on the server: they are downloaded again as they "
        "are "
        "opened.",
        "/evolution/"},
    Advice{"Mail cache", "Geary loads pictures and previews of messages again.", "/geary/"},
    Advice{
        "Mail cache", "Geary loads pictures and previews of messages again.", "/org.gnome.Geary/"},
    Advice{"Mail downloads",
        "These are attachments of messages on the server: Geary downloads them again when they are "
        "opened.",
        "/geary/"},

    Advice{"Application cache",
        "The app makes this again from its own data or the network; it may start more slowly the "
        "next time."},
    Advice{"System log",
        "Logs are only read to find the cause of a fault; new ones are begun by themselves, but "
        "what "
        "these recorded is gone."},
    Advice{"Crash report",
        "Only those who look into a crash read it; nothing makes it again, and nothing needs it."},
    Advice{"Trash item",
        "It was thrown away before; moved to the Safe Area it can still come back, deleted it "
        "cannot."},
    Advice{"iOS/iPadOS backup",
        "The device does not need it, but it is the only way back to what the device held then, "
        "and a new backup takes hours."},

    Advice{"npm cache", "npm downloads the packages that it needs again at the next install."},
    Advice{"Yarn cache", "Yarn downloads the packages that it needs again at the next install."},
    Advice{"Yarn v2 cache", "Yarn downloads the packages that it needs again at the next install."},
    Advice{"pip cache", "pip downloads or builds the packages that it needs again."},
    Advice{"Homebrew download cache",
        "These are the downloads of what is installed already; Homebrew fetches them again if it "
        "must."},
    Advice{"Homebrew cache",
        "These are the downloads of what is installed already; Homebrew fetches them again if it "
        "must."},
    Advice{"pnpm content store",
        "Projects keep what is linked into them; pnpm downloads the rest again at the next "
        "install."},
    Advice{"pnpm store",
        "Projects keep what is linked into them; pnpm downloads the rest again at the next "
        "install."},
    Advice{"Cargo registry cache", "Cargo downloads the crates again at the next build."},
    Advice{"Cargo registry source",
        "Cargo unpacks the crates again from its downloads at the next build."},
    Advice{"Gradle cache",
        "Gradle downloads and builds it again; the next build of each project takes much longer."},
    Advice{"Maven local repository",
        "Maven downloads the libraries again, but not those that were built and installed on this "
        "computer: they have to be built again."},
    Advice{"CocoaPods download cache", "CocoaPods downloads the pods again at the next install."},
    Advice{"Ruby gem cache",
        "Ruby downloads the archives again; gems that were installed here have to be installed "
        "again."},
    Advice{"Docker VM images",
        "Images are downloaded or built again, but the containers and volumes in it are gone for "
        "good."},
    Advice{
        "Bazel build cache", "Bazel builds it again; the next build takes as long as the first."},
    Advice{"Terraform plugins",
        "These were put here by hand: Terraform downloads those that a registry has, and the "
        "others "
        "have to be put here again."},
    Advice{"Go module cache", "Go downloads the modules again at the next build."},
    Advice{"Python package cache",
        "The package manager downloads or builds what it needs again; environments keep what is "
        "linked into them."},
    Advice{"Compiler cache",
        "The next build of each project compiles everything again and takes as long as the first."},
    Advice{"Composer cache", "Composer downloads the packages again at the next install."},
    Advice{"Tool download cache",
        "The tools download the programs that they need, such as browsers for tests, again when "
        "they need them."},
    Advice{"NuGet cache", "NuGet downloads the packages again at the next restore."},
    Advice{"Dart package cache", "Dart downloads the packages again at the next pub get."},
    Advice{"IDE cache",
        "The IDE makes its indexes again when a project is opened, which takes minutes for a large "
        "one."},

    Advice{"Orphaned app support data",
        "No app was found that goes by this name, running or at the top of the Applications "
        "folders; one that comes back starts without this data.",
        "/Library/"},
    Advice{"Orphaned app container",
        "No app was found that goes by this name, running or at the top of the Applications "
        "folders; one that comes back starts without its documents and settings in here.",
        "/Library/"},
    Advice{"Orphaned group container",
        "Several apps may share this, and one that is installed may be among them: it would start "
        "without the data in here."},
    Advice{"Orphaned preference file",
        "No app was found that goes by this name, running or at the top of the Applications "
        "folders; one that comes back starts with its first settings.",
        "/Library/"},

    Advice{"Orphaned app support data",
        "The program that left this is not installed any more; if it comes back it starts without "
        "what it had in here."},
    Advice{"Orphaned app container",
        "The Flatpak that lived in here is not installed any more; if it comes back it starts "
        "without its documents and settings."},
    Advice{"Orphaned preference file",
        "The program that left this is not installed any more; if it comes back it starts with its "
        "first settings."},

    Advice{"Old download (90+ days)",
        "Its own date is more than 90 days old, though a folder may hold newer files; whether it "
        "can be downloaded again depends on where it came from."},

    Advice{"Xcode Derived Data",
        "Xcode builds and indexes it again; the next build of each project takes as long as the "
        "first."},
    Advice{"Xcode iOS Device Support",
        "Xcode copies it again from a device with this system when one is connected."},
    Advice{"Xcode watchOS Device Support",
        "Xcode copies it again from a watch with this system when one is connected."},
    Advice{"Xcode Archive",
        "Nothing makes this again: with it go the debug symbols of what was shipped, so keep the "
        "archives of apps that are in use."},
    Advice{"iOS Simulator device data",
        "Xcode makes simulators anew; the apps and data that were put on this one are gone."},
    Advice{"IB Simulator data", "Xcode makes it again when a layout is shown."},

    Advice{"Safari cache", "Safari loads the pages again; they open more slowly once."},
    Advice{"Safari local storage",
        "Web sites kept this on the computer: they may ask to sign in again and forget what was "
        "set there."},
    Advice{"Chromium cache", "Chromium loads the pages again; they open more slowly once."},
    Advice{"Web cache", "Web loads the pages again; they open more slowly once."},
    Advice{"Chrome cache", "Chrome loads the pages again; they open more slowly once."},
    Advice{"Chrome system cache", "Chrome makes it again as it is used."},
    Advice{"Firefox profile cache", "Firefox loads the pages again; they open more slowly once."},
    Advice{"Brave cache", "Brave loads the pages again; they open more slowly once."},
    Advice{"Brave code cache", "Brave prepares the scripts of pages again as they are opened."},
    Advice{"Edge cache", "Edge loads the pages again; they open more slowly once."},
    Advice{"Edge code cache", "Edge prepares the scripts of pages again as they are opened."},
    Advice{"Arc cache", "Arc loads the pages again; they open more slowly once."},
    Advice{"Opera cache", "Opera loads the pages again; they open more slowly once."},
    Advice{"Vivaldi cache", "Vivaldi loads the pages again; they open more slowly once."},

    Advice{"Mail downloads",
        "These are copies of attachments that were opened; the messages still hold them, but not "
        "what was changed in the copies."},
    Advice{"Mail cache", "Mail makes it again from the messages."},
    Advice{"Mail message data",
        "These are the messages themselves: those of accounts on a server are downloaded again, "
        "those kept on this computer alone are gone."},
    Advice{"Messages cache", "Messages makes it again as conversations are opened."},
    Advice{"Messages attachments",
        "These are the pictures and files of conversations: what is not kept online as well is "
        "gone."},
};

/// A row of the catalogue that is called a cache and holds whole profiles.
constexpr std::string_view firefoxProfiles = "/Library/Application Support/Firefox/Profiles/";
constexpr std::string_view profileAdvice
    = "This is a whole profile: bookmarks, passwords and history go with it, and nothing makes "
      "them again.";
/// It is called like an application's settings, and yet holds everybody's.
constexpr std::string_view sharedSettings = "/Library/Preferences/.GlobalPreferences.plist";
constexpr std::string_view sharedSettingsAdvice = "These are settings that all apps share, such as "
                                                  "language, keyboard and formats: they go back "
                                                  "to the first ones.";
constexpr std::string_view unknownAdvice
    = "What it costs to have this again is not known: look at it before it goes.";

} // namespace

std::string_view removalAdvice(const CleanupCandidate& item)
{
    if (item.record.path.find(firefoxProfiles) != std::string::npos)
        return profileAdvice;
    if (item.record.path.ends_with(sharedSettings))
        return sharedSettingsAdvice;
    for (const auto& advice : advices) {
        if (advice.label == item.reason
            && item.record.path.find(advice.within) != std::string::npos)
            return advice.text;
    }
    return unknownAdvice;
}

} // namespace kestavon
