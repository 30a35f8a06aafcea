#include "diagnostics.h"
#include "imagehelper.h"
#include "largepage.h"

#include <QRandomGenerator>
#include <QUrl>
#include <QtTest>

namespace {

constexpr int kLongest = 2 * 1024 * 1024;

int AddressLength(const QString& html)
{
    return static_cast<int>(strlen("data:text/html;charset=UTF-8,")) + QUrl::toPercentEncoding(html).size();
}

QByteArray ContentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestLargePage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void lengthIsThatOfThePercentEncoding_data();
    void lengthIsThatOfThePercentEncoding();
    void baseGoesToTheStartOfTheHead_data();
    void baseGoesToTheStartOfTheHead();
    void fileIsWrittenOnceAndRepaired();
    void pageThatCannotBeWrittenGivesNoPath();

private:
    const QString language = QStringLiteral("zh-CN");
    const QString tree = QDir::tempPath() + QStringLiteral("/HelpImageTemp");
};

void TestLargePage::init()
{
    QVERIFY(ImageHelper().RemoveTempDir(tree));
}

void TestLargePage::lengthIsThatOfThePercentEncoding_data()
{
    QTest::addColumn<QString>("unit");
    QTest::newRow("letters") << QStringLiteral("azAZ09");
    QTest::newRow("unreserved marks") << QStringLiteral("-._~");
    QTest::newRow("other marks") << QStringLiteral("<>\"!*'();:@&=+$,/?#[]% \n\x7f");
    QTest::newRow("zero") << QString(1, QChar(0));
    QTest::newRow("two bytes") << QStringLiteral("\u0080\u07ff");
    QTest::newRow("three bytes") << QStringLiteral("\u0800\u4e2d\uffff");
    QTest::newRow("pair") << QString::fromUtf8("\xf0\x9f\x98\x80");
    QTest::newRow("first half alone") << QString(QChar(0xd83d));
    QTest::newRow("second half first") << QString(QChar(0xde00)) + QChar(0xd83d) + QLatin1Char('x');
    QTest::newRow("first half twice") << QString(QChar(0xd83d)) + QChar(0xd83d) + QChar(0xde00);
}

void TestLargePage::lengthIsThatOfThePercentEncoding()
{
    QFETCH(QString, unit);
    // Up to just below the limit, so that the letters behind decide.
    const int unitLength = QUrl::toPercentEncoding(unit).size();
    QString html = unit.repeated((kLongest - 100) / unitLength);
    html += QString(kLongest - AddressLength(html), QLatin1Char('x'));
    QCOMPARE(AddressLength(html), kLongest);
    QVERIFY(FitsDataAddress(html));
    QVERIFY(!FitsDataAddress(html + QLatin1Char('x')));
    QVERIFY(!FitsDataAddress(unit + html));
}

void TestLargePage::baseGoesToTheStartOfTheHead_data()
{
    QTest::addColumn<QString>("html"); // with "@" where the base goes
    const auto row = [](const char* html) { QTest::newRow(html) << QString::fromUtf8(html); };
    row("<!DOCTYPE html><html><head>@<title>");
    row("<!doctype html>\n<HTML lang=\"a>b\">\n<HEAD id='>'>@");
    row("<!-- <head> --><!DOCTYPE html><!-- --!x> <head> --><html><head>@");
    row("<!--><head>@<!-- -->");
    row("<!---><head>@");
    row("<?xml version=\"1.0\"?><!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0//EN\"><html><head>@");
    row("<!DOCTYPE html>@<p><head>");
    row("<!DOCTYPE html>\n<html>@\n<body>");
    row("<!DOCTYPE html>@\n<header><head>");
    row("<!DOCTYPE html>@text");
    row("@<p>no doctype");
    row("@<head-line>");
    row("@<!-- never closed <head>");
    row("@");
    row("@<");
    row("<html>@<head");
}

void TestLargePage::baseGoesToTheStartOfTheHead()
{
    QFETCH(QString, html);
    const int place = html.indexOf(QLatin1Char('@'));
    const QString page = html.left(place) + html.mid(place + 1);
    const QString rebased = RebaseLargePage(page);
    const QString inserted = rebased.mid(place, rebased.size() - page.size());
    QVERIFY2(inserted.startsWith(QStringLiteral("<base href=\"file:///\"><script>")),
             qUtf8Printable(rebased));
    QVERIFY(inserted.endsWith(QStringLiteral("</script>")));
    QCOMPARE(RebaseLargePage(QChar(QChar::ByteOrderMark) + page), rebased);
}

void TestLargePage::fileIsWrittenOnceAndRepaired()
{
    const QString html = QStringLiteral("<!DOCTYPE html><head><title>\u4e2d</title>");
    const QString path = WriteLargePage(html, language);
    QCOMPARE(QFileInfo(path).path(), ImageHelper().DatedDir(language));
    const QByteArray content = ContentOf(path);
    QVERIFY(content.startsWith("\xef\xbb\xbf<!DOCTYPE html><head><base "));
    QVERIFY(content.endsWith("<title>\xe4\xb8\xad</title>"));
    QVERIFY(WriteLargePage(html + QLatin1Char(' '), language) != path);

    const QDateTime old = QDateTime::currentDateTime().addDays(-1);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(old, QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(WriteLargePage(html, language), path);
    QCOMPARE(QFileInfo(path).lastModified().toSecsSinceEpoch(), old.toSecsSinceEpoch());

    QVERIFY(file.open(QIODevice::ReadWrite) && file.write("damaged") == 7);
    file.close();
    QCOMPARE(WriteLargePage(html, language), path);
    QCOMPARE(ContentOf(path), content);
}

void TestLargePage::pageThatCannotBeWrittenGivesNoPath()
{
    QFile inTheWay(tree);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    inTheWay.close();
    const LogCapture log;
    QCOMPARE(WriteLargePage(QStringLiteral("x"), language), QString());
    QVERIFY(log.Count(QStringLiteral("yxhelp.largepage: page not written")) == 1);
    QVERIFY(inTheWay.remove());
}

QTEST_GUILESS_MAIN(TestLargePage)
#include "tst_largepage.moc"
