#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// Lets a failing comparison print the texts as they read.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toUtf8().constData() << '"';
}
