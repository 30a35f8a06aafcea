#pragma once

#include <QByteArray>
#include <QString>

namespace helpbuild {

struct DecodedText
{
    QByteArray utf8;
    QString problem; ///< What didn't fit; empty when all did.
};

/// A page in UTF-8, without byte order mark and zero bytes. Its character set is the one of its byte order
/// mark or of its own declaration; without either UTF-8, or windows-1252 when it is no UTF-8.
DecodedText DecodePage(const QByteArray& bytes);

/// The same for a style sheet.
DecodedText DecodeStyleSheet(const QByteArray& bytes);

/// The same for a script, which has no declaration.
DecodedText DecodeScript(const QByteArray& bytes);

} // namespace helpbuild
