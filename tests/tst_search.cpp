#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "testtable.h"
#include "windowdriver.h"
#include "yxviewmodel.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>

namespace {

const char* const kResults = "treeWidget_result";
const char* const kIndex = "treeWidget_index";

QStringList VisibleRows(WindowDriver& driver, const char* tree)
{
    QStringList rows;
    const auto* widget = driver.Find<QTreeWidget>(tree);
    for (int i = 0; i < widget->topLevelItemCount(); ++i) {
        if (!widget->topLevelItem(i)->isHidden())
            rows += widget->topLevelItem(i)->text(0);
    }
    return rows;
}

void Search(WindowDriver& driver, const QString& text)
{
    auto* edit = driver.Find<QLineEdit>("lineEdit_context");
    edit->setText(text);
    QTest::keyClick(edit, Qt::Key_Return);
}

QString Count(WindowDriver& driver)
{
    return driver.Find<QLabel>("lab_resutlNum")->text();
}

int LeftPage(WindowDriver& driver)
{
    return driver.Find<QStackedWidget>("stackedWidget_wizard")->currentIndex();
}

} // namespace

class TestSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void resultsAreFilteredByCategory();
    void oneCategoryNeedsNoFilter_data();
    void oneCategoryNeedsNoFilter();
    void sameWordIsNotSearchedAgain();
    void hitsAndKeywordsShowTheirPages();
    void typingWalksTheIndex();
    void jobsAreReplacedAndClosedAtAnyMoment();
};

void TestSearch::initTestCase()
{
    InitBuiltInResources();
    QVERIFY(UseProduct(ProductIni(1, "Filter=true\n")));
}

void TestSearch::resultsAreFilteredByCategory()
{
    HelpDatabase database("Home\n"
                          "  Bolts | html=<body>a bolt</body>\n"
                          "    Steel | html=<body>a bolt</body>\n"
                          "    Brass | html=<body>a bolt</body>\n"
                          "  Nuts | html=<body>a nut</body>\n"
                          "    For bolts | html=<body>a bolt</body>\n"
                          "  Tools | html=<body>a tool</body>\n"_s);
    WindowDriver driver(database);
    driver.Show();
    auto* filter = driver.Find<QToolButton>("tbn_Filter");
    QVERIFY(filter->isHidden());
    Search(driver, "bolt"_s);
    QTRY_COMPARE(Count(driver), "4"_s);
    QCOMPARE(VisibleRows(driver, kResults), (QStringList{"Bolts"_s, "Brass"_s, "For bolts"_s, "Steel"_s}));
    QVERIFY(filter->isVisible() && !driver.Find<QWidget>("widget_Filter")->isVisible());

    driver.Click("tbn_Filter");
    QTRY_VERIFY(driver.Find<QWidget>("widget_Filter")->isVisible());
    for (const char* category : {"Bolts", "Nuts", "Tools"})
        QVERIFY(driver.Find<QCheckBox>(category)->isChecked());
    driver.Find<QCheckBox>("Bolts")->click();
    QCOMPARE(VisibleRows(driver, kResults), QStringList("For bolts"_s));
    QCOMPARE(Count(driver), "1"_s);

    // What is ticked counts for the next search too, once it has ended.
    Search(driver, "a"_s);
    QTRY_COMPARE(Count(driver), "3"_s);
    QCOMPARE(VisibleRows(driver, kResults), (QStringList{"For bolts"_s, "Nuts"_s, "Tools"_s}));
    driver.Find<QCheckBox>("Bolts")->click();
    QCOMPARE(Count(driver), "6"_s);
    driver.Click("tbn_Filter");
    QTRY_VERIFY(!driver.Find<QWidget>("widget_Filter")->isVisible());
    driver.Click("tbn_index");
    QVERIFY(!filter->isVisible());
}

void TestSearch::oneCategoryNeedsNoFilter_data()
{
    const auto row = Columns<QString, QString>("display", "topics");
    row("no categories", "Filter=true\n", "Home\nBolts | html=<body>a bolt</body>\n");
    row("no filter", "Filter=false\n", "Home\n  Bolts | html=<body>a bolt</body>\n");
}

void TestSearch::oneCategoryNeedsNoFilter()
{
    QFETCH(QString, display);
    QFETCH(QString, topics);
    QVERIFY(UseProduct(ProductIni(1, display.toUtf8())));
    HelpDatabase database(topics);
    WindowDriver driver(database);
    driver.Show();
    Search(driver, "bolt"_s);
    QTRY_COMPARE(Count(driver), "1"_s);
    QCOMPARE(VisibleRows(driver, kResults), QStringList("Bolts"_s));
    QVERIFY(driver.Find<QToolButton>("tbn_Filter")->isHidden());
    QVERIFY(UseProduct(ProductIni(1, "Filter=true\n")));
}

void TestSearch::sameWordIsNotSearchedAgain()
{
    HelpDatabase database("Home\n  Bolts | html=<body>a bolt</body>\n"_s);
    WindowDriver driver(database);
    driver.Show();
    Search(driver, QString());
    QCOMPARE(LeftPage(driver), 3);
    Search(driver, "bolt"_s);
    QTRY_COMPARE(Count(driver), "1"_s);
    database.AddTopics("More bolts | html=<body>a bolt</body>"_s);
    driver.Click("tbn_context");
    Search(driver, QString());
    QCOMPARE(LeftPage(driver), 0);
    Search(driver, "bolt"_s);
    QCOMPARE(LeftPage(driver), 3);
    QCOMPARE(Count(driver), "1"_s);
    Search(driver, "Bolt"_s);
    QTRY_COMPARE(Count(driver), "2"_s);
    Search(driver, "no such word"_s);
    QTRY_COMPARE(Count(driver), "0"_s);
    QCOMPARE(VisibleRows(driver, kResults), QStringList());
}

void TestSearch::hitsAndKeywordsShowTheirPages()
{
    HelpDatabase database("Home\n  Bolts | html=<body>a bolt</body>\n  Nuts | html=<body>a nut</body>\n"_s);
    WindowDriver driver(database);
    driver.Show();
    Search(driver, "bolt"_s);
    QTRY_COMPARE(Count(driver), "1"_s);
    driver.ClickEntry(kResults, "Bolts"_s);
    QTRY_COMPARE(driver.PageText(), "a bolt"_s);
    driver.Click("tbn_context");
    QCOMPARE(driver.Current("treeWidget"), "Bolts"_s);
    driver.Click("tbn_index");
    QTRY_COMPARE(VisibleRows(driver, kIndex), (QStringList{"Bolts"_s, "Nuts"_s}));
    // Both keep their page, so they can be shown when the database has gone.
    QVERIFY(QFile::remove(database.Path()));
    driver.ClickEntry(kIndex, "Nuts"_s);
    QTRY_COMPARE(driver.PageText(), "a nut"_s);
    driver.Click("tbn_result");
    driver.ClickEntry(kResults, "Bolts"_s);
    QTRY_COMPARE(driver.PageText(), "a bolt"_s);
    Search(driver, "nut"_s);
    QTRY_COMPARE(Count(driver), "0"_s);
    driver.Click("tbn_pre");
    QTRY_COMPARE(driver.PageText(), "a nut"_s);
}

void TestSearch::typingWalksTheIndex()
{
    HelpDatabase database("Home\n  Adding bolts\n  Bolts\n  Brass (alloy)\n  Steel\n"_s);
    WindowDriver driver(database);
    driver.Show();
    driver.Click("tbn_index");
    QTRY_COMPARE(VisibleRows(driver, kIndex).size(), 4);
    auto* edit = driver.Find<QLineEdit>("lineEdit_index");
    const std::pair<const char*, const char*> steps[] = {
        {"b", "Bolts"},
        {"BR", "Brass (alloy)"},
        {"br(", "Brass (alloy)"},
        {"dding", "Adding bolts"},
        {"s.*y", "Brass (alloy)"},
        {"^s", "Steel"},
        {"stx", "Steel"},
        {"", ""},
    };
    for (const auto& [typed, current] : steps) {
        edit->clear();
        QTest::keyClicks(edit, QLatin1String(typed));
        QCOMPARE(driver.Current(kIndex), QLatin1String(current));
    }
    QTest::keyClicks(edit, "steel"_s);
    QTRY_COMPARE(driver.PageText(), "Home"_s);
}

void TestSearch::jobsAreReplacedAndClosedAtAnyMoment()
{
    constexpr int kTopics = 1500;
    constexpr int kWords = 5;
    const QString padding = "some padding "_s.repeated(150);
    QString lines = "Home\n"_s;
    for (int i = 0; i < kTopics; ++i)
        lines += "  word%1 %2 | html=<body>%3 word%1 </body>\n"_s.arg(i % kWords)
                     .arg(i, 4, 10, QLatin1Char('0'))
                     .arg(padding);
    HelpDatabase database(lines);
    WindowDriver driver(database);
    driver.Show();
    QRandomGenerator random(quint32(qEnvironmentVariableIntValue("YXHELP_SEED")));
    const auto* results = driver.Find<QTreeWidget>(kResults);
    QString word;
    // The rows of the word, each once and in order.
    const auto expected = [&](int count) {
        QStringList rows;
        for (int i = word.at(4).digitValue(); rows.size() < count; i += kWords)
            rows += "%1 %2"_s.arg(word).arg(i, 4, 10, QLatin1Char('0'));
        return rows;
    };
    for (int round = 0; round < 200; ++round) {
        word = "word%1"_s.arg((round + 1) % kWords);
        Search(driver, word);
        const int some = random.bounded(kTopics / kWords + 1);
        QVERIFY(QTest::qWaitFor([&] { return results->topLevelItemCount() >= some; }, 20000));
        const QStringList rows = VisibleRows(driver, kResults);
        QCOMPARE(rows, expected(rows.size()));
        if (round % 4 == 0 && !rows.isEmpty())
            driver.ClickEntry(kResults, rows.first());
        if (round % 10 == 0)
            driver.ClickEntry("treeWidget", "Home"_s);
    }
    QTRY_COMPARE(results->topLevelItemCount(), kTopics / kWords);
    QCOMPARE(Count(driver), QString::number(kTopics / kWords));
    // A search that replaces another stops the index for good.
    const QStringList index = VisibleRows(driver, kIndex);
    QVERIFY(std::is_sorted(index.begin(), index.end()));
    QVERIFY(std::adjacent_find(index.begin(), index.end()) == index.end());

    Search(driver, "padding"_s);
    QElapsedTimer timer;
    timer.start();
    driver.Click("tbn_close");
    QVERIFY(!driver.Window().isVisible());
    QVERIFY(timer.elapsed() < 1000);
}

QTEST_MAIN(TestSearch)
#include "tst_search.moc"
