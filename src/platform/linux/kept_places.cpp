#include "platform/linux/kept_places.h"

#include <array>
#include <span>
#include <string_view>

namespace kestavon {

namespace {

// What lies in the cache folder and is in use, cannot be made again, or only in hours.
constexpr std::array keptInCache{
    // Parts of the running session: bleachbit.org keeps them too, having learnt from reports.
    std::string_view("doc"), // where Flatpak's documents portal was mounted
    std::string_view("gnome-control-center"), std::string_view("ibus*"), std::string_view("obexd"),
    std::string_view("kwin*"), std::string_view("plasmashell*"), std::string_view("drkonqi"),
    std::string_view("icon-cache.kcache"), std::string_view("plasma_theme_*"),
    std::string_view("ksycoca*"), std::string_view("mesa_shader_cache*"),
    std::string_view("qtshadercache-*"), std::string_view("wallpaper"), std::string_view("gvfs*"),
    std::string_view("dconf"), std::string_view("keyring*"), std::string_view("ssh*"),
    std::string_view("sessions"), // xfce4-session(1): the session as it was saved
    std::string_view("tracker*"), // the index that the running file search works with
    std::string_view("localsearch*"),
    // Data that is nowhere else.
    std::string_view("rclone"), // rclone.org/commands/rclone_mount: files not uploaded yet
    std::string_view("keepassxc"), // keepassxc.org: which databases were open, and their key files
    std::string_view("vim"), // where swap files with unsaved text are often put
    std::string_view("nvim"), std::string_view("emacs"),
    std::string_view("zsh"), // and histories of commands
    std::string_view("bash"), std::string_view("fish"),
    // Gigabytes that take hours to download or to work out again.
    std::string_view("huggingface"), std::string_view("torch"), std::string_view("whisper"),
    std::string_view("lm-studio"), std::string_view("gpt4all"), std::string_view("llama.cpp"),
    std::string_view("modelscope"), std::string_view("borg"), std::string_view("restic"),
    std::string_view("duplicity"), std::string_view("deja-dup"), std::string_view("kopia"),
    // Beside caches that are listed one by one: the history of files, virtual environments.
    std::string_view("JetBrains/*/LocalHistory"), std::string_view("pypoetry/virtualenvs"),
    std::string_view("Kestavon"),
    std::string_view("kestavon"), // what the window's toolkit keeps of the program running now
};

// Mail, wherever it is kept.
constexpr std::array mailInHome{
    std::string_view(".thunderbird/*/Mail"),
    std::string_view(".thunderbird/*/ImapMail"),
    std::string_view(".var/app/org.mozilla.Thunderbird/.thunderbird"),
    std::string_view("snap/thunderbird/common/.thunderbird"),
    std::string_view(".mutt"),
    std::string_view(".claws-mail"),
    std::string_view("Mail"),
    std::string_view("Maildir"),
};

// Programs, projects' tools and virtual machines below the home: installed, not cached.
constexpr std::array installedInHome{
    std::string_view(".gem/ruby/*/gems"),
    std::string_view(".gem/ruby/*/bin"),
    std::string_view(".gem/ruby/*/extensions"),
    std::string_view(".gem/ruby/*/specifications"),
    std::string_view(".rustup"),
    std::string_view(".nvm"),
    std::string_view(".sdkman"),
    std::string_view(".pyenv"),
    std::string_view(".rbenv"),
    std::string_view(".cargo/bin"),
    std::string_view(".pub-cache/bin"),
    std::string_view(".terraform.d/plugins"),
    std::string_view(".docker"),
    std::string_view(".steam"),
    std::string_view(".wine"),
    std::string_view(".var/app/com.valvesoftware.Steam/data"),
    std::string_view(".var/app/com.valvesoftware.Steam/.local"),
    std::string_view(".var/app/org.telegram.desktop/data"),
    std::string_view(".var/app/org.signal.Signal/config"),
};

constexpr std::array keptInData{
    std::string_view("akonadi*"),
    std::string_view("evolution"),
    std::string_view("local-mail"),
    std::string_view("contacts"),
    std::string_view("Steam"),
    std::string_view("lutris"),
    std::string_view("bottles"),
    std::string_view("wineprefixes"),
    std::string_view("containers"), // podman(1): images and volumes
    std::string_view("docker"),
    std::string_view("libvirt"),
    std::string_view("gnome-boxes"),
    std::string_view("flatpak"), // flatpak uninstall --unused tidies it
    std::string_view("TelegramDesktop"),
    std::string_view("epiphany"), // bookmarks, passwords, history
    // Folders of "logs" that hold what people wrote to each other.
    std::string_view("TpLogger"),
    std::string_view("weechat"),
    std::string_view("hexchat"),
    std::string_view("poezio"),
    std::string_view("profanity"),
    std::string_view("gajim"),
    std::string_view("Gajim"),
    std::string_view("konversation"),
    std::string_view("quassel-irc.org"),
};

constexpr std::array keptInConfig{
    std::string_view("evolution"),
    std::string_view("akonadi*"),
    std::string_view("Signal"),
    std::string_view("hexchat"),
    std::string_view("weechat"),
};

constexpr std::array keptInState{
    std::string_view("weechat"),
    std::string_view("profanity"),
    std::string_view("nvim"),
};

// What a browser keeps of a person. Profiles of Chromium and its kin lie in F/<browser>/<profile>.
constexpr std::array chromiumBrowsers{
    std::string_view("chromium"),
    std::string_view("google-chrome"),
    std::string_view("google-chrome-beta"),
    std::string_view("google-chrome-unstable"),
    std::string_view("BraveSoftware/Brave-Browser"),
    std::string_view("microsoft-edge"),
    std::string_view("vivaldi"),
    std::string_view("opera"),
};
constexpr std::array keptOfChromium{
    std::string_view("Bookmarks"),
    std::string_view("Cookies"),
    std::string_view("History"),
    std::string_view("IndexedDB"),
    std::string_view("Local Storage"),
    std::string_view("Login Data"),
    std::string_view("Service Worker"),
    std::string_view("Sessions"),
};
constexpr std::array keptOfFirefox{
    std::string_view("cookies.sqlite"),
    std::string_view("key4.db"),
    std::string_view("logins.json"),
    std::string_view("places.sqlite"),
    std::string_view("sessionstore*"),
    std::string_view("storage"),
};

void add(std::vector<PlacePattern>& places, const std::string& folder,
    std::span<const std::string_view> patterns, const std::string& before = {})
{
    for (const auto pattern : patterns)
        places.push_back({.folder = folder, .below = before + std::string(pattern)});
}

} // namespace

std::vector<PlacePattern> keptPlacesOf(const HostLayout& layout)
{
    if (layout.kind != HomeKind::native)
        return {};
    std::vector<PlacePattern> places;
    add(places, layout.cacheHome, keptInCache);
    add(places, layout.home, mailInHome);
    add(places, layout.home, installedInHome);
    add(places, layout.dataHome, keptInData);
    add(places, layout.configHome, keptInConfig);
    add(places, layout.stateHome, keptInState);
    for (const auto browser : chromiumBrowsers)
        add(places, layout.configHome, keptOfChromium, std::string(browser) + "/*/");
    add(places, layout.configHome, keptOfFirefox, "mozilla/firefox/*/");
    add(places, layout.home, keptOfFirefox, ".mozilla/firefox/*/");
    add(places, layout.home, keptOfFirefox, "snap/firefox/common/.mozilla/firefox/*/");
    return places;
}

} // namespace kestavon
