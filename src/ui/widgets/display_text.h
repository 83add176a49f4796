#pragma once

#include "platform/byte_count.h"
#include "platform/calendar.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

namespace kestavon {

using namespace Qt::StringLiterals;

/// Bytes of a path or message as a text to show; what is not UTF-8 becomes U+FFFD. One way only: a
/// shown text never becomes a path again.
inline QString displayText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// Bytes in the units that every screen uses, "12.35 GB".
inline QString byteText(std::int64_t bytes)
{
    return displayText(fileByteCount(bytes));
}

/// A moment as every screen writes it, "16 Nov 2026 at 14:05"; a dash where it is not known.
inline QString momentText(std::optional<Timestamp> moment, const Calendar& calendar)
{
    return moment ? displayText(calendar.dateText(*moment)) : u"—"_s;
}

} // namespace kestavon
