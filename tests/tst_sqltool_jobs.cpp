#include "helpdatabase.h"
#include "keywordfinder.h"
#include "sqltool.h"
#include "testtable.h"
#include "yxglobalsignal.h"

#include <QRandomGenerator>
#include <QRegExp>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <atomic>

namespace {

/// `count` topics with the word, each followed by one that only seems to have it.
QString Topics(int count)
{
    QString lines = "Home | html=<body>home</body>\n"_s;
    for (int i = 0; i < count; ++i) {
        // Titles count down, names up.
        lines += "  Name %1 | title=%2 | html=<body>a bolt.</body>\n"_s.arg(i, 3, 10, QLatin1Char('0'))
                     .arg(999 - i);
        lines += "  Other %1 | html=<body>bolted</body>\n"_s.arg(i);
    }
    return lines;
}

/// Runs one reader on a connection of its own and notes what it announces, such as "10@0 13@10!".
class Job
{
public:
    explicit Job(const HelpDatabase& database, int stopAtEmission = -1)
        : tool(database.Path(), "job %1"_s.arg(quintptr(this))), stopAt(stopAtEmission)
    {
        const auto note = [this](const QList<TreeViewModel>& list, int index, bool isEnd) {
            if (emissions++ == stopAt)
                std::atomic_ref(keepRunning).store(false);
            told += "%1@%2%3 "_s.arg(list.size()).arg(index).arg(isEnd ? "!"_s : QString());
        };
        const auto* hub = YxGlobalSignal::Instance();
        QObject::connect(hub, &YxGlobalSignal::SearchResultChange, &context, note, Qt::DirectConnection);
        QObject::connect(
            hub, &YxGlobalSignal::UpdataIndexPage, &context,
            [note](const QList<TreeViewModel>& list, int index) { note(list, index, false); },
            Qt::DirectConnection);
        tool.OpenDb();
    }
    ~Job() { tool.CloseDb(); }
    Q_DISABLE_COPY_MOVE(Job)

    SQLTOOL tool;
    QList<TreeViewModel> rows;
    int count = 0;
    bool keepRunning = true;
    int emissions = 0;
    QString told;

private:
    int stopAt;
    QObject context;
};

QStringList Names(const QList<TreeViewModel>& rows)
{
    QStringList names;
    for (const TreeViewModel& row : rows)
        names += row.FileName;
    return names;
}

} // namespace

class TestSqlToolJobs : public QObject
{
    Q_OBJECT

private slots:
    void rowsComeInTens_data();
    void rowsComeInTens();
    void recordsCanBeShownAlone();
    void searchFindsWords_data();
    void searchFindsWords();
    void damagedDatabaseEndsTheJob();
    void keywordIsFoundAsTheExpressionsFindIt();
};

void TestSqlToolJobs::rowsComeInTens_data()
{
    const auto row = Columns<bool, int, int, QString, bool>("search", "topics", "stopAt", "told", "result");
    row("search, 25 hits", true, 25, -1, "10@0 20@10 25@20! ", true);
    row("search, 20 hits", true, 20, -1, "10@0 20@10 20@20! ", true);
    row("search, none", true, 0, -1, "0@0! ", true);
    row("search, stopped", true, 25, 1, "10@0 20@10 ", false);
    row("search, stopped at its end", true, 20, 2, "10@0 20@10 20@20! ", true);
    row("index, 13 rows", false, 13, -1, "10@0 13@10 ", true);
    row("index, 20 rows", false, 20, -1, "10@0 20@10 ", true);
    row("index, none", false, 0, -1, "", true);
    row("index, stopped", false, 13, 0, "10@0 ", false);
}

void TestSqlToolJobs::rowsComeInTens()
{
    QFETCH(bool, search);
    QFETCH(int, topics);
    QFETCH(int, stopAt);
    HelpDatabase database(Topics(topics));
    database.Execute(search ? "SELECT 1"_s : "DELETE FROM HelpFileList WHERE FileName LIKE 'Other%'"_s);
    Job job(database, stopAt);
    if (search)
        job.rows.append(TreeViewModel());
    const bool result = search ? job.tool.SearchTextInAllFiles(job.rows, "Bolt"_s, job.keepRunning)
                               : job.tool.GetIndexFromDB(job.rows, job.count, job.keepRunning);
    QTEST(job.told, "told");
    QTEST(result, "result");
    // By raw titles, which count down, and by names.
    QStringList sorted = Names(job.rows);
    std::sort(sorted.begin(), sorted.end());
    if (search)
        std::reverse(sorted.begin(), sorted.end());
    QCOMPARE(Names(job.rows), sorted);
    if (!search && result)
        QCOMPARE(job.count, topics);
}

void TestSqlToolJobs::recordsCanBeShownAlone()
{
    HelpDatabase database("Home | html=<body>root</body>\n"
                          "  Page | top=2 | images=a.png,b.png | html=<body>one root</body>\n"
                          "  Empty | html=\n"
                          "~ Outside | html=<body>root</body>\n"_s);
    Job index(database);
    index.tool.GetIndexFromDB(index.rows, index.count, index.keepRunning);
    QCOMPARE(Names(index.rows), QStringList("Page"_s));
    QCOMPARE(index.count, 1);
    Job search(database);
    search.tool.SearchTextInAllFiles(search.rows, "one"_s, search.keepRunning);
    QCOMPARE(search.rows.size(), 1);
    for (const TreeViewModel& record : {index.rows.first(), search.rows.first()}) {
        QCOMPARE(record.Id, 2);
        QCOMPARE(record.ParentId, 1);
        QCOMPARE(record.TopParentId, 2);
        QCOMPARE(record.Title, "Page"_s);
        QCOMPARE(record.KeyName, "page"_s);
        QCOMPARE(record.FilePath, "topics\\page.html"_s);
        QCOMPARE(record.Html, "<body>one root</body>"_s);
        QCOMPARE(record.ImagePath, "a.png,b.png"_s);
    }
}

void TestSqlToolJobs::searchFindsWords_data()
{
    const auto row = Columns<QString, QString>("text", "found");
    row("word in any case", "BOLT", "plain title");
    row("part of a word", "bol", "");
    row("two words", "a bolt", "plain");
    row("apostrophe", "can't", "quote");
    row("double quote", "\"so\"", "quote");
    row("per cent is a wildcard of the table only", "5%", "sign");
    row("underscore as well", "a_b", "sign");
    row("class", "c[ou]t", "");
    row("expression that the table takes literally", "a.b", "");
    row("plus repeats", "c++", "");
    row("escaped", "\\(nut\\)", "");
    row("invalid", "(", "");
    row("Chinese inside a longer word", "螺栓", "chinese");
    row("emoji", "🔩", "chinese");
    row("one letter", "a", "plain quote sign");
    row("blank", " ", "chinese");
    row("zero byte", QString(1, QChar(0)), "");
    row("beyond what LIKE takes", QString(60000, QLatin1Char('a')), "");
}

void TestSqlToolJobs::searchFindsWords()
{
    HelpDatabase database("chinese | html=<body>六角 螺栓头 🔩</body>\n"
                          "plain | html=<body>a bolt</body>\n"
                          "quote | html=<body>you can't say \"so\" to a</body>\n"
                          "sign | html=<body>it is 5% of a_b <b>(nut)</b> c++ cut</body>\n"
                          "title | body=bolt | html=<title>A bolt</title>\n"
                          "unseen | body=bolt | html=<body>thunderbolt</body> bolt\n"_s);
    QFETCH(QString, text);
    Job job(database);
    QVERIFY(job.tool.SearchTextInAllFiles(job.rows, text, job.keepRunning));
    QStringList names = Names(job.rows);
    names.sort();
    QTEST(names.join(QLatin1Char(' ')), "found");
    QVERIFY(job.told.endsWith("! "_s));
}

void TestSqlToolJobs::damagedDatabaseEndsTheJob()
{
    HelpDatabase database(Topics(30));
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase("QSQLITE"_s, "writer"_s);
        writer.setDatabaseName(database.Path());
        QVERIFY(writer.open());
        writer.exec("BEGIN EXCLUSIVE"_s);
        Job locked(database);
        QVERIFY(locked.tool.SearchTextInAllFiles(locked.rows, "bolt"_s, locked.keepRunning));
        QCOMPARE(locked.told, "0@0! "_s);
    }
    QSqlDatabase::removeDatabase("writer"_s);
    database.Execute("DROP TABLE HelpFileList"_s);
    Job search(database);
    QVERIFY(search.tool.SearchTextInAllFiles(search.rows, "bolt"_s, search.keepRunning));
    QCOMPARE(search.told, "0@0! "_s);
    search.tool.CloseDb();
    QVERIFY(!search.tool.SearchTextInAllFiles(search.rows, "bolt"_s, search.keepRunning));
    QCOMPARE(search.told, "0@0! "_s);
}

void TestSqlToolJobs::keywordIsFoundAsTheExpressionsFindIt()
{
    QRandomGenerator random(quint32(qEnvironmentVariableIntValue("YXHELP_SEED")));
    const QString letters = "aAbBkK\u212a\u017f\u0131İß.*( 帮\n"_s;
    const auto text = [&](int most) {
        QString result;
        for (int i = random.bounded(most + 1); i > 0; --i)
            result += letters.at(random.bounded(letters.size()));
        return result;
    };
    int prefixes = 0;
    int inner = 0;
    for (int round = 0; round < 20000; ++round) {
        QVector<QString> names;
        for (int i = random.bounded(8); i > 0; --i)
            names.append(text(6));
        const QString typed = text(2) + letters.at(random.bounded(letters.size()));
        int expected = -1;
        for (const char* pattern : {"^%1.*", "^.*%1.*"}) {
            const QRegExp expression(QString::fromLatin1(pattern).replace("%1"_s, typed),
                                     Qt::CaseInsensitive);
            for (int row = 0; row < names.size() && expected < 0; ++row) {
                if (expression.indexIn(names.at(row)) < 0)
                    continue;
                expected = row;
                ++(pattern[1] == '%' ? prefixes : inner);
            }
        }
        QVERIFY2(FindKeyword(names, typed) == expected,
                 qPrintable(typed + "|"_s + QStringList(names.toList()).join("|"_s)));
    }
    QVERIFY(prefixes > 1000 && inner > 1000);
}

QTEST_GUILESS_MAIN(TestSqlToolJobs)
#include "tst_sqltool_jobs.moc"
