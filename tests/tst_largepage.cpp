#include "diagnostics.h"
#include "imagehelper.h"
#include "largepage.h"
#include "testtable.h"

#include <QUrl>

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
    void lengthIsThatOfThePercentEncoding();
    void baseGoesToTheStartOfTheHead();
    void fileIsWrittenOnceAndRepaired();
    void pageThatCannotBeWrittenGivesNoPath();

private:
    const QString language = "zh-CN"_s;
    const QString tree = QDir::tempPath() + "/HelpImageTemp"_s;
};

void TestLargePage::init()
{
    QVERIFY(ImageHelper().RemoveTempDir(tree));
}

void TestLargePage::lengthIsThatOfThePercentEncoding()
{
    // Letters, marks, texts of two, three and four bytes, and halves of pairs.
    for (const QString& unit : {"azAZ09-._~"_s, "<>\"!*'();:@&=+$,/?#[]% \n\x7f"_s, QString(1, QChar(0)),
                                "\u0080\u07ff"_s, "\u0800\u4e2d\uffff"_s, "\xf0\x9f\x98\x80"_s,
                                QString(QChar(0xd83d)), "%1%2x"_s.arg(QChar(0xde00)).arg(QChar(0xd83d)),
                                "%1%1%2"_s.arg(QChar(0xd83d)).arg(QChar(0xde00))}) {
        // Up to just below the limit, so that the letters behind decide.
        const int unitLength = QUrl::toPercentEncoding(unit).size();
        QString html = unit.repeated((kLongest - 100) / unitLength);
        html += QString(kLongest - AddressLength(html), QLatin1Char('x'));
        QCOMPARE(AddressLength(html), kLongest);
        QVERIFY2(FitsDataAddress(html), qPrintable(unit));
        QVERIFY2(!FitsDataAddress(html + QLatin1Char('x')), qPrintable(unit));
    }
}

void TestLargePage::baseGoesToTheStartOfTheHead()
{
    // "@" stands where the base goes.
    for (const char* text :
         {"<!DOCTYPE html><html><head>@<title>", "<!doctype html>\n<HTML lang=\"a>b\">\n<HEAD id='>'>@",
          "<!-- <head> --><!DOCTYPE html><!-- --!x> <head> --><html><head>@", "<!--><head>@<!-- -->",
          "<!---><head>@",
          "<?xml version=\"1.0\"?><!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0//EN\"><html><head>@",
          "<!DOCTYPE html>@<p><head>", "<!DOCTYPE html>\n<html>@\n<body>", "<!DOCTYPE html>@\n<header><head>",
          "<!DOCTYPE html>@text", "@<p>no doctype", "@<head-line>", "@<!-- never closed <head>", "@", "@<",
          "<html>@<head"}) {
        const QString page = QString::fromUtf8(text).remove(QLatin1Char('@'));
        const QString rebased = RebaseLargePage(page);
        const QString inserted =
            rebased.mid(QString::fromUtf8(text).indexOf(QLatin1Char('@')), rebased.size() - page.size());
        QVERIFY2(inserted.startsWith("<base href=\"file:///\"><script>"_s) &&
                     inserted.endsWith("</script>"_s),
                 qPrintable(rebased));
        QCOMPARE(RebaseLargePage(QChar(QChar::ByteOrderMark) + page), rebased);
    }
}

void TestLargePage::fileIsWrittenOnceAndRepaired()
{
    const QString html = "<!DOCTYPE html><head><title>\u4e2d</title>"_s;
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
    QCOMPARE(WriteLargePage("x"_s, language), QString());
    QVERIFY(log.Count("yxhelp.largepage: page not written"_s) == 1);
    QVERIFY(inTheWay.remove());
}

QTEST_GUILESS_MAIN(TestLargePage)
#include "tst_largepage.moc"
