#include "product.h"

#include "yxconfig.h"

#include <QFile>
#include <QProcess>
#include <QResource>
#include <QTemporaryDir>

namespace {

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

QByteArray ProductIni(int group, const QByteArray& display, const QByteArray& more)
{
    return "[YxHelp]\nProduct=YXCAD\nProductName=Test Help\nVersionName=Test 2024\nVersionYear=2024\n"
           "CopyrightYear=2024\n[Display]\nGroup=" +
           QByteArray::number(group) + "\n" + display + more;
}

bool WriteResourceFile(const QString& path, const QByteArray& ini)
{
    const QTemporaryDir dir;
    const QByteArray qrc =
        "<RCC><qresource prefix=\"/Resource\"><file alias=\"Config/YxHelp.ini\">YxHelp.ini</file>"
        "</qresource></RCC>";
    if (!dir.isValid() || !WriteFile(dir.filePath(QStringLiteral("YxHelp.ini")), ini) ||
        !WriteFile(dir.filePath(QStringLiteral("product.qrc")), qrc))
        return false;
    return QProcess::execute(QStringLiteral(YXHELP_RCC),
                             {QStringLiteral("--binary"), QStringLiteral("-o"), path,
                              dir.filePath(QStringLiteral("product.qrc"))}) == 0;
}

bool UseProduct(const QByteArray& ini)
{
    static QTemporaryDir dir;
    static QString registered;
    static int count = 0;
    if (!registered.isEmpty())
        QResource::unregisterResource(registered);
    registered = dir.filePath(QStringLiteral("product%1.rcc").arg(++count));
    delete YxConfig::Instance();
    return WriteResourceFile(registered, ini) && QResource::registerResource(registered);
}
