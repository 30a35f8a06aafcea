#pragma once

#include <QByteArray>
#include <QString>

/// Product description as a packager writes it, with sensible values and the given display family.
QByteArray ProductIni(int group, const QByteArray& display = {}, const QByteArray& more = {});

/// Packs `ini` into a resource file at `path` the way a deployment has it, by the resource compiler. False
/// when that fails.
bool WriteResourceFile(const QString& path, const QByteArray& ini);

/// Makes `ini` the product description of this process, in place of the one before.
bool UseProduct(const QByteArray& ini);
