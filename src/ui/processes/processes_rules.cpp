#include "ui/processes/processes_rules.h"

#include "core/model/text_folding.h"
#include "ui/widgets/display_text.h"

#include <QByteArray>

#include <algorithm>
#include <iterator>
#include <limits>

namespace kestavon {

namespace {

/// A name that a sentence can hold: programs may call themselves anything, at any length.
QString shortened(const QString& name)
{
    constexpr qsizetype most = 80;
    if (name.size() <= most)
        return name;
    auto start = name.first(most - 1);
    if (start.back().isHighSurrogate()) // half a character
        start.chop(1);
    return start + u'…';
}

} // namespace

QString memoryFigure(std::uint64_t bytes)
{
    constexpr auto most = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
    return byteText(static_cast<std::int64_t>(std::min(bytes, most)));
}

bool isLargeProcess(const AppProcessInfo& process)
{
    return process.memoryBytes > 400'000'000;
}

std::vector<AppProcessInfo> processesNamed(
    const std::vector<AppProcessInfo>& processes, std::string_view text)
{
    std::vector<AppProcessInfo> named;
    std::ranges::copy_if(processes, std::back_inserter(named),
        [text](const auto& process) { return containsFolded(process.processName, text); });
    return named;
}

ConfirmationTexts forceQuitQuestion(const QString& name)
{
    return {.title = u"Force quit \"%1\"?"_s.arg(shortened(name)),
        .message = u"The app will be asked to quit. Unsaved data may be lost."_s,
        .action = u"Force Quit"_s,
        .destructive = true};
}

QString quitFailure(const QString& name)
{
    return u"Could not quit %1 — permission denied."_s.arg(shortened(name));
}

QString iconKey(const std::optional<std::string>& icon)
{
    if (!icon)
        return {};
    const auto bytes = QByteArray::fromRawData(icon->data(), static_cast<qsizetype>(icon->size()));
    return QString::fromLatin1(bytes.toHex());
}

std::string iconOfKey(const QString& key)
{
    return QByteArray::fromHex(key.toLatin1()).toStdString();
}

} // namespace kestavon
