#pragma once

#include "platform/byte_count.h"

#include <QString>

#include <cstdint>
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

} // namespace kestavon
