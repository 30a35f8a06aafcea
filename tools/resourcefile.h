#pragma once

#include "diagnostics.h"

#include <QString>

namespace helpbuild {

/// What the product description says that the build needs to know.
struct ProductInfo
{
    QString product;
    QString productName;
    QString version;
};

/// Checks a product description: values that the viewer would read otherwise than they stand are refused.
/// An empty path means the built-in description, which is sound.
bool CheckProduct(const QString& iniFile, Diagnostics& diagnostics, ProductInfo& info);

/// Packs the resource file of a product: the description, and beside it its style sheet "YxHelp.qss" and the
/// images "top_background.png" and "YxPrdIcon.png". What the product's folder lacks is taken from the
/// built-in product. `workFolder` is for temporary files.
bool WriteResourceFile(const QString& iniFile, const QString& workFolder, const QString& target,
                       Diagnostics& diagnostics);

} // namespace helpbuild
