#include "ui/widgets/disk_bar_rules.h"

#include "core/domain/record_list.h"
#include "ui/widgets/display_text.h"

#include <algorithm>

namespace kestavon {

namespace {

QString barColor(double fraction, std::int64_t total)
{
    if (total < 1)
        return u"accent"_s;
    if (fraction > 0.9)
        return u"red"_s;
    if (fraction > 0.75)
        return u"orange"_s;
    return u"accent"_s;
}

} // namespace

DiskBar diskBar(std::int64_t used, std::int64_t total)
{
    const double fraction
        = total >= 1 ? static_cast<double>(used) / static_cast<double>(total) : 0.0;
    const auto free = saturatingSum(total, -used);
    return {
        .fill = std::clamp(fraction, 0.0, 1.0),
        .color = barColor(fraction, total),
        .used = byteText(used),
        .free = u"%1 free of %2"_s.arg(byteText(free), byteText(total)),
    };
}

DiskBar diskBarOfVolume(std::int64_t total, std::int64_t free)
{
    return total >= 1 ? diskBar(saturatingSum(total, -free), total) : diskBar(0, 0);
}

} // namespace kestavon
