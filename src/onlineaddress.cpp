#include "onlineaddress.h"

#include "configinfo.h"
#include "yxonlinehelpapi.h"

#include <algorithm>
#include <array>
#include <cctype>

OnlineAnswer AskOnlineAddress(const ConfigInfo& config, const OnlineQuestion& question)
{
    const bool home = question.language == QLatin1String("zh-CN");
    const QByteArray manager = (home ? config.HelpmanagerUrl : config.HelpmanagerAbroadUrl).toLocal8Bit();
    const QByteArray product = question.product.toLocal8Bit();
    const QByteArray version = QByteArray::number(question.version);
    const QByteArray language = question.language.toLocal8Bit();
    const QByteArray path = question.path.value_or(QString()).toLocal8Bit();
    std::array<char, 512> address{};
    OnlineAnswer answer;
    answer.code = QueryOnlineHelpAddress(manager.constData(), product.constData(), version.constData(),
                                         language.constData(), question.topic.constData(),
                                         question.path ? path.constData() : nullptr, address.data(),
                                         static_cast<std::int32_t>(address.size()));
    if (answer.code == 0)
        answer.address = QString::fromUtf8(address.data());
    return answer;
}

QString FileBaseName(const QString& path)
{
    const int start = path.lastIndexOf(QLatin1Char('\\')) + 1;
    return path.mid(start, path.lastIndexOf(QLatin1Char('.')) - start);
}

QByteArray KeyFromPath(const QString& path)
{
    QByteArray key = FileBaseName(path).toLocal8Bit();
    // By bytes: what lies outside ASCII is up to the C locale.
    std::transform(key.begin(), key.end(), key.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return key;
}
