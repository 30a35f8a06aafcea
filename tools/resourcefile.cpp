#include "resourcefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLibraryInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTextCodec>
#include <QXmlStreamWriter>

#include <array>

// Outside the namespace: the macro declares a function.
static void InitBuiltInProduct()
{
    Q_INIT_RESOURCE(yxhelp_build);
}

namespace helpbuild {
namespace {

struct Part
{
    const char* fileName;
    const char* resourcePath;
    bool isImage;
};

const std::array<Part, 4> kParts{{
    {"YxHelp.ini", "Resource/Config/YxHelp.ini", false},
    {"YxHelp.qss", "Resource/qss/YxHelp.qss", false},
    {"top_background.png", "Resource/Resources/top_background.png", true},
    {"YxPrdIcon.png", "Resource/Resources/YxPrdIcon.png", true},
}};

const QLatin1String kBuiltIn(":/yxhelp-build/");
constexpr int kPackTimeoutMs = 60000;

// The settings reader makes a list of a value at its commas and ends it at a semicolon, unless it is quoted.
bool IsReadAsItStands(const QString& value)
{
    bool quoted = false;
    for (int i = 0; i < value.size(); ++i) {
        const QChar character = value.at(i);
        if (character == QLatin1Char('\\'))
            ++i;
        else if (character == QLatin1Char('"'))
            quoted = !quoted;
        else if (!quoted && (character == QLatin1Char(',') || character == QLatin1Char(';')))
            return false;
    }
    return !quoted;
}

bool CheckLine(const QString& line, const SourcePlace& place, Diagnostics& diagnostics)
{
    const QString text = line.trimmed();
    if (text.isEmpty() || text.startsWith(QLatin1Char(';')) || text.startsWith(QLatin1Char('#')) ||
        text.startsWith(QLatin1Char('[')))
        return true;
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals < 0)
        return diagnostics.Fail(place, QStringLiteral("this is no \"key=value\""));
    if (IsReadAsItStands(text.mid(equals + 1)))
        return true;
    return diagnostics.Fail(place,
                            QLatin1String("the value of \"") + text.left(equals).trimmed() +
                                QLatin1String("\" holds a comma, a semicolon or a single quotation mark: "
                                              "put all of it in quotation marks"));
}

bool CheckLines(const QString& iniFile, Diagnostics& diagnostics)
{
    QFile file(iniFile);
    if (!file.open(QIODevice::ReadOnly))
        return diagnostics.Fail({iniFile, 0}, QStringLiteral("can't be read: ") + file.errorString());
    int number = 0;
    while (!file.atEnd()) {
        ++number;
        QTextCodec::ConverterState state;
        const QByteArray bytes = file.readLine();
        const QString line =
            QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
        if (state.invalidChars > 0 || state.remainingChars > 0)
            return diagnostics.Fail({iniFile, number}, QStringLiteral("this is no UTF-8"));
        if (!CheckLine(line, {iniFile, number}, diagnostics))
            return false;
    }
    return true;
}

QString RccProgram()
{
    const QString name = QStringLiteral("rcc");
    const QString own =
        QStandardPaths::findExecutable(name, {QLibraryInfo::location(QLibraryInfo::BinariesPath)});
    return own.isEmpty() ? QStandardPaths::findExecutable(name) : own;
}

// The product's own file, or else the built-in one.
bool CopyPart(const Part& part, const QString& iniFile, const QString& folder, Diagnostics& diagnostics)
{
    const QString name = QLatin1String(part.fileName);
    QString source = kBuiltIn + name;
    if (!iniFile.isEmpty()) {
        const bool isIni = name.endsWith(QLatin1String(".ini"));
        const QString own =
            isIni ? iniFile : QString(QFileInfo(iniFile).absolutePath() + QLatin1Char('/') + name);
        if (QFileInfo::exists(own))
            source = own;
    }
    if (part.isImage && QImage(source).isNull())
        return diagnostics.Fail({source, 0}, QStringLiteral("can't be read as an image"));
    const QString target = folder + QLatin1Char('/') + name;
    if (!QFile::copy(source, target))
        return diagnostics.Fail({target, 0}, QLatin1String("can't be copied from ") + source);
    return true;
}

bool WriteCollection(const QString& collection)
{
    QFile file(collection);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&file);
    xml.writeStartElement(QStringLiteral("RCC"));
    xml.writeStartElement(QStringLiteral("qresource"));
    for (const Part& part : kParts) {
        xml.writeStartElement(QStringLiteral("file"));
        xml.writeAttribute(QStringLiteral("alias"), QLatin1String(part.resourcePath));
        xml.writeCharacters(QLatin1String(part.fileName));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return !xml.hasError();
}

bool Pack(const QString& collection, const QString& target, Diagnostics& diagnostics)
{
    const QString program = RccProgram();
    if (program.isEmpty())
        return diagnostics.Fail({}, QStringLiteral("Qt's resource compiler \"rcc\" is not installed"));
    QProcess rcc;
    rcc.setWorkingDirectory(QFileInfo(collection).absolutePath());
    // Later formats hold the times of the files, so that no two builds would be alike.
    rcc.start(program, {QStringLiteral("--binary"), QStringLiteral("--format-version"), QStringLiteral("1"),
                        QFileInfo(collection).fileName(), QStringLiteral("-o"), target});
    if (!rcc.waitForFinished(kPackTimeoutMs) || rcc.exitStatus() != QProcess::NormalExit ||
        rcc.exitCode() != 0)
        return diagnostics.Fail({program, 0}, QLatin1String("failed: ") +
                                                  QString::fromLocal8Bit(rcc.readAllStandardError()));
    return true;
}

} // namespace

bool CheckProduct(const QString& iniFile, Diagnostics& diagnostics, ProductInfo& info)
{
    InitBuiltInProduct();
    if (!iniFile.isEmpty() && !CheckLines(iniFile, diagnostics))
        return false;
    QSettings settings(iniFile.isEmpty() ? QString(kBuiltIn + QLatin1String("YxHelp.ini")) : iniFile,
                       QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    info.productName = settings.value(QStringLiteral("YxHelp/ProductName")).toString();
    info.product = settings.value(QStringLiteral("YxHelp/Product")).toString();
    info.version = settings.value(QStringLiteral("YxHelp/VersionYear")).toString();
    if (info.product.isEmpty())
        return diagnostics.Fail({iniFile, 0}, QStringLiteral("\"Product\" in [YxHelp] is missing"));
    const int group = settings.value(QStringLiteral("Display/Group")).toInt();
    if (group < 1 || group > 3)
        return diagnostics.Fail({iniFile, 0}, QStringLiteral("\"Group\" in [Display] must be 1, 2 or 3"));
    return true;
}

bool WriteResourceFile(const QString& iniFile, const QString& workFolder, const QString& target,
                       Diagnostics& diagnostics)
{
    InitBuiltInProduct();
    const QString folder = workFolder + QLatin1String("/product");
    if (!QDir().mkpath(folder))
        return diagnostics.Fail({folder, 0}, QStringLiteral("can't be created"));
    for (const Part& part : kParts) {
        if (!CopyPart(part, iniFile, folder, diagnostics))
            return false;
    }
    const QString collection = folder + QLatin1String("/product.qrc");
    if (!WriteCollection(collection))
        return diagnostics.Fail({collection, 0}, QStringLiteral("can't be written"));
    return Pack(collection, target, diagnostics);
}

} // namespace helpbuild
