#include "builtinresources.h"
#include "faultyserver.h"
#include "helpdatabase.h"
#include "product.h"
#include "testtable.h"
#include "windowdriver.h"
#include "yxconfig.h"
#include "yxinfowid.h"
#include "yxsettingwid.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QWebEngineView>

namespace {

const QString kTopics = "Home | key=K0\n"
                        "  One | key=K1\n"
                        "  Two | key=K2\n"
                        "  No key | key= | path=guide\\part.two\\no_key.html\n"_s;

Answer AddressOf(const QString& address)
{
    return Answer::Body(QJsonDocument(QJsonObject{{"address"_s, address}}).toJson());
}

/// A help web site with its manager, and a window on it.
class Site
{
public:
    explicit Site(int group = 3, const QString& language = "en-US"_s) : database(kTopics, language)
    {
        for (const char* name : {"home", "one", "two"}) {
            const QString file = QLatin1String(name);
            server.SetAnswer("/OriginalData/topics/%1.html"_s.arg(file),
                             Answer::Html("<h1>" + QByteArray(name)));
        }
        server.SetAnswer("/OriginalData/guide/part.two/no_key.html"_s, Answer::Html("<h1>no key"));
        server.SetAnswer("/home/en-US"_s, Answer::Html("<h1>fallback"));
        server.SetAnswer("/home/"_s, Answer::Html("<h1>site"));
        const auto answer = [this](const Request& request) {
            static const QHash<QByteArray, QString> pages{{"HOME", "topics/home"_s},
                                                          {"K0", "topics/home"_s},
                                                          {"K1", "topics/one"_s},
                                                          {"K2", "topics/two"_s},
                                                          {"NO_KEY", "guide/part.two/no_key"_s}};
            return AddressOf(
                server.Url("/OriginalData/%1.html?v=1"_s.arg(pages.value(request.Parameter("topic")))));
        };
        server.SetHandler("/address"_s, answer);
        server.SetHandler("/home-address"_s, answer);
        const QByteArray url = server.Url().toUtf8();
        UseProduct(ProductIni(group).replace(
            "[Display]", "DefaultURL=" + url + "home/\nAbroadURL=" + url + "home/\nHelpmanagerUrl=" + url +
                             "home-address\nHelpmanagerAbroadUrl=" + url + "address\n[Display]"));
    }

    void Open(HelpLaunchArgs args = {})
    {
        driver = std::make_unique<WindowDriver>(database, std::move(args));
        driver->Show();
    }

    QWebEngineView* View() { return driver->Find<QWebEngineView>("webView_online"); }

    /// Questions to the manager as "topic" or "topic path".
    QStringList Asked() const
    {
        QStringList asked;
        for (const Request& request : server.Requests()) {
            if (!request.path.endsWith("address"_s))
                continue;
            asked += QString::fromUtf8(request.Parameter("topic"));
            if (!request.Parameter("path").isNull())
                asked.last() += " "_s + QString::fromUtf8(request.Parameter("path"));
        }
        return asked;
    }
    /// How often pages were fetched.
    int Fetched() const
    {
        int count = 0;
        for (const Request& request : server.Requests())
            count += request.path.startsWith("/OriginalData/"_s) ? 1 : 0;
        return count;
    }

    FaultyServer server;
    HelpDatabase database;
    std::unique_ptr<WindowDriver> driver;
};

/// Answers every prompt that comes up, and notes it.
class Prompts : public QObject
{
public:
    explicit Prompts(const QString& replies) : reply(replies)
    {
        connect(&timer, &QTimer::timeout, this, &Prompts::Look);
        timer.start(20);
    }

    QStringList seen;

private:
    void Look()
    {
        auto* info = qobject_cast<YxInfoWid*>(QApplication::activeModalWidget());
        if (!info || !info->isVisible())
            return;
        const bool question = info->findChild<QPushButton*>("tbn_yes"_s)->isVisible();
        const QString text = info->findChild<QLabel*>("lab_info"_s)->text();
        seen += text.startsWith("Failed to load"_s) && question            ? "question"_s
                : text.startsWith("The current network is"_s) && !question ? "notice"_s
                                                                           : text;
        if (reply.contains("tick"_s))
            info->findChild<QCheckBox*>("checkBox"_s)->click();
        if (question)
            info->findChild<QPushButton*>(reply.contains("yes"_s) ? "tbn_yes"_s : "tbn_no"_s)->click();
        else
            info->findChild<QToolButton*>("tbn_close"_s)->click();
    }

    QString reply;
    QTimer timer;
};

/// Opens the settings, chooses a mode and ends the dialog.
void Settings(WindowDriver& driver, const QString& mode, bool accept)
{
    WithNext<YxSettingWid>([&](YxSettingWid& dialog) {
        dialog.findChild<QRadioButton*>("radioButton_%1"_s.arg(mode))->click();
        dialog.findChild<QPushButton*>(accept ? "btn_ok"_s : "btn_cancel"_s)->click();
    });
    driver.Click("tbn_setting");
}

/// One act of a user or of the network.
void Act(Site& site, const QString& step)
{
    WindowDriver& driver = *site.driver;
    QSignalSpy finished(site.View()->page(), &QWebEnginePage::loadFinished);
    const int asked = site.Asked().size();
    if (step == "click"_s) {
        driver.Click("tbn_online");
    } else if (step.startsWith("save-"_s) || step.startsWith("cancel-"_s)) {
        Settings(driver, step.section(QLatin1Char('-'), 1), step.startsWith("save"_s));
    } else if (step.startsWith("open-"_s)) {
        driver.ClickEntry("treeWidget", step.section(QLatin1Char('-'), 1));
    } else if (step.startsWith("topic-"_s)) {
        HelpLaunchArgs args;
        args.topic = step.section(QLatin1Char('-'), 1);
        driver.Window().ShowRedirectedTopic(MakeSMData(-1, args));
    } else if (step == "fail"_s) {
        site.View()->load(QUrl(site.server.Url("/nothing"_s)));
    } else if (step == "dead"_s) {
        site.server.SetAnswer("/address"_s, Answer::Fault(Answer::Way::Hang));
    }
    const bool loads = step == "fail"_s || site.Asked().size() > asked;
    QVERIFY(!loads || !finished.isEmpty() || finished.wait());
}

} // namespace

class TestOnline : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void modesFollowTheirRules_data();
    void modesFollowTheirRules();
    void otherFamiliesNeverAsk();
    void managerIsAskedForTheTopic();
    void managerIsChosenByLanguage();
    void withoutAnAddressTheSiteItselfIsShown_data();
    void withoutAnAddressTheSiteItselfIsShown();
    void deadNetworkDelaysTheWindowByItsLimit();
    void replacedLoadIsNoFailure();
    void failureWhileTheSettingsAreOpen();
};

void TestOnline::initTestCase()
{
    InitBuiltInResources();
    qputenv("YXHELP_ONLINE_CONNECT_MS", "300");
    qputenv("YXHELP_ONLINE_TOTAL_MS", "600");
}

void TestOnline::init()
{
    YxConfig::Instance()->WriteOpenMode({0, false, false});
}

void TestOnline::modesFollowTheirRules_data()
{
    // The state: mode, what the button's tip says, questions to the manager, online page, offline topic,
    // prompts.
    const auto row =
        Columns<int, bool, bool, QString, QString>("mode", "autoChange", "remind", "steps", "state");
    row("start", 0, 0, 0, "", "offline, tip offline, asked 1, home, Home,");
    row("go online", 0, 0, 0, "click", "online, tip online, asked 2, home, Home,");
    row("and back", 0, 0, 0, "click click", "offline, tip offline, asked 2, home, Home,");
    row("and again to what is there", 0, 0, 0, "click click click",
        "online, tip online, asked 2, home, Home,");
    row("another topic", 0, 0, 0, "click click open-Two click", "online, tip online, asked 3, two, Two,");
    row("save online", 0, 0, 0, "save-online", "online, tip offline, asked 1, home, Home,");
    row("save offline", 0, 0, 0, "save-offline", "offline, tip offline, asked 1, home, Home,");
    row("cancel", 0, 0, 0, "cancel-online", "offline, tip offline, asked 1, home, Home,");
    row("topic offline", 0, 0, 0, "topic-k2", "offline, tip offline, asked 1, home, Two,");
    row("no network", 0, 0, 0, "dead click", "online, tip online, asked 2, home, Home, notice");
    row("fails, offline preferred", 0, 1, 1, "click fail", "online, tip online, asked 2, nothing, Home,");

    row("start online", 1, 0, 0, "", "online, tip online, asked 1, home, ,");
    row("go offline", 1, 0, 0, "topic-K1 click", "offline, tip offline, asked 2, one, One,");
    row("save offline online", 1, 0, 0, "topic-K1 save-offline", "offline, tip online, asked 2, one, Home,");
    row("save online online", 1, 0, 0, "save-online", "online, tip online, asked 1, home, ,");
    row("topic online", 1, 0, 0, "topic-K2", "online, tip online, asked 2, two, ,");
    row("topic, no network", 1, 0, 0, "dead topic-K2", "online, tip online, asked 2, home, , notice");
    row("fails, changes by itself", 1, 1, 1, "fail", "offline, tip online, asked 1, nothing, Home,");
    row("fails, yes", 1, 0, 1, "fail yes", "offline, tip online, asked 1, nothing, Home, question");
    row("fails, no", 1, 0, 1, "fail no", "online, tip online, asked 1, nothing, , question");
    row("fails twice", 1, 0, 1, "fail fail no", "online, tip online, asked 1, nothing, , question question");
    row("never again", 1, 0, 1, "fail fail tick no", "online, tip online, asked 1, nothing, , question");
    row("fails, says nothing", 1, 0, 0, "fail", "online, tip online, asked 1, nothing, ,");
    row("fails offline", 1, 0, 1, "click fail yes", "offline, tip offline, asked 1, nothing, Home, question");
    row("after the fall", 1, 1, 0, "fail click", "online, tip online, asked 2, home, Home,");
}

void TestOnline::modesFollowTheirRules()
{
    QFETCH(int, mode);
    QFETCH(bool, autoChange);
    QFETCH(bool, remind);
    QFETCH(QString, steps);
    QFETCH(QString, state);
    Site site;
    YxConfig::Instance()->WriteOpenMode({mode, autoChange, remind});
    site.Open();
    QTRY_COMPARE(site.View()->url().path(), "/OriginalData/topics/home.html"_s);
    const Prompts prompts(steps);
    const auto stateText = [&] {
        WindowDriver& driver = *site.driver;
        const QString tip = driver.Find<QToolButton>("tbn_online")->toolTip();
        const bool online =
            driver.Find<QStackedWidget>("stackedWidget")->currentWidget()->objectName() == "page_online"_s;
        if (driver.Find<QToolButton>("tbn_online")->property("selected").toBool() != online ||
            driver.Find<QToolButton>("tbn_flash")->isVisible() != online)
            return "buttons don't fit"_s;
        return "%1, tip %2, asked %3, %4, %5, %6"_s.arg(online ? "online"_s : "offline"_s)
            .arg(tip.startsWith("You are currently viewing online"_s) ? "online"_s : "offline"_s)
            .arg(site.Asked().size())
            .arg(site.View()->url().fileName().remove(".html"_s))
            .arg(driver.PageText())
            .arg(prompts.seen.join(QLatin1Char(' ')))
            .trimmed();
    };
    for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        Act(site, step);
    const bool reached = QTest::qWaitFor([&] { return stateText() == state; }, 5000);
    QVERIFY2(reached, qPrintable(stateText()));
    if (steps == "save-online"_s)
        QTRY_COMPARE(site.Fetched(), 2);
}

void TestOnline::otherFamiliesNeverAsk()
{
    for (int group : {1, 2}) {
        Site site(group);
        YxConfig::Instance()->WriteOpenMode({1, true, true});
        site.Open();
        QTRY_COMPARE(site.View()->url().path(), "/OriginalData/topics/home.html"_s);
        const Prompts prompts("yes"_s);
        const auto* pages = site.driver->Find<QStackedWidget>("stackedWidget");
        const int page = pages->currentIndex();
        Act(site, "fail"_s);
        if (group == 2)
            Act(site, "topic-K2"_s);
        QTRY_COMPARE(site.View()->url().fileName(), group == 2 ? "two.html"_s : "nothing"_s);
        QCOMPARE(pages->currentIndex(), page);
        QCOMPARE(prompts.seen, QStringList());
    }
}

void TestOnline::managerIsAskedForTheTopic()
{
    Site site;
    site.Open();
    for (const char* step : {"click", "click", "open-No key", "click"})
        Act(site, QLatin1String(step));
    QTRY_COMPARE(site.Asked(), (QStringList{"HOME"_s, "K0 topics/home.html"_s, "NO_KEY "_s}));
    const auto last = [&] {
        const Request request = site.server.Requests().last();
        QStringList values;
        for (const auto& [name, value] : request.Parameters())
            values += QString::fromUtf8(name + '=' + value);
        return values.join(QLatin1Char(' '));
    };
    // An unknown product word and a version that is no number give way to the product's own.
    for (const auto& [product, version, expected] :
         {std::tuple{"YX3D", "2019", "product=YX3D version=2019"},
          std::tuple{"YxMech", "abc", "product=YXCAD version=2024"}}) {
        HelpLaunchArgs args;
        args.product = QLatin1String(product);
        args.version = QLatin1String(version);
        args.language = "de-DE"_s;
        args.topic = "k x"_s;
        site.server.ClearRequests();
        site.server.SetAnswer("/address"_s, Answer::Body("{}"));
        site.driver->Window().ShowRedirectedTopic(MakeSMData(-1, args));
        QVERIFY(last().startsWith(QLatin1String(expected) + " language=en-US topic=k x"_s) ||
                site.Asked() == QStringList("k x"_s));
    }
}

void TestOnline::managerIsChosenByLanguage()
{
    for (const char* language : {"zh-CN", "zh-TW", "de-DE"}) {
        Site site(3, QLatin1String(language));
        site.Open();
        QVERIFY(!site.server.Requests().isEmpty());
        QCOMPARE(site.server.Requests().first().path,
                 QLatin1String(language) == "zh-CN"_s ? "/home-address"_s : "/address"_s);
    }
}

void TestOnline::withoutAnAddressTheSiteItselfIsShown_data()
{
    const auto row = Columns<bool, QString, QString>("database", "manager", "shown");
    row("refused", true, "404", "/home/en-US");
    row("empty address", true, "empty", "/home/en-US");
    row("no network", true, "dead", "/home/en-US");
    row("no database", false, "", "/home/");
}

void TestOnline::withoutAnAddressTheSiteItselfIsShown()
{
    QFETCH(bool, database);
    QFETCH(QString, manager);
    Site site(2);
    const Prompts prompts("no"_s);
    if (manager == "404"_s)
        site.server.SetAnswer("/address"_s, Answer::Body("gone", 404));
    else if (manager == "empty"_s)
        site.server.SetAnswer("/address"_s, AddressOf(QString()));
    else if (manager == "dead"_s)
        site.server.SetAnswer("/address"_s, Answer::Fault(Answer::Way::Hang));
    if (!database)
        QVERIFY(QFile::remove(site.database.Path()));
    site.Open();
    QFETCH(QString, shown);
    QTRY_COMPARE(site.View()->url().path(), shown);
    QCOMPARE(prompts.seen, QStringList());
}

void TestOnline::deadNetworkDelaysTheWindowByItsLimit()
{
    Site site;
    site.server.SetAnswer("/address"_s, Answer::Fault(Answer::Way::Hang));
    QElapsedTimer timer;
    timer.start();
    site.Open();
    QVERIFY(timer.elapsed() >= 500 && timer.elapsed() < 5000);
    QTRY_COMPARE(site.driver->PageText(), "Home"_s);
}

void TestOnline::replacedLoadIsNoFailure()
{
    Site site;
    YxConfig::Instance()->WriteOpenMode({1, true, true});
    site.server.SetAnswer("/OriginalData/topics/one.html"_s, Answer::Fault(Answer::Way::Hang));
    Answer slow = Answer::Html(QByteArray(5000, 'x'));
    slow.way = Answer::Way::Drip;
    site.server.SetAnswer("/slow"_s, slow);
    site.Open();
    QTRY_COMPARE(site.View()->url().fileName(), "home.html"_s);
    HelpLaunchArgs args;
    args.topic = "K1"_s;
    site.driver->Window().ShowRedirectedTopic(MakeSMData(-1, args));
    Act(site, "topic-K2"_s);
    QTRY_COMPARE(site.View()->url().fileName(), "two.html"_s);
    site.View()->load(QUrl(site.server.Url("/slow"_s)));
    QTRY_COMPARE(site.View()->url().fileName(), "slow"_s);
    Act(site, "topic-K2"_s);
    QTRY_COMPARE(site.View()->url().fileName(), "two.html"_s);
    QCOMPARE(site.driver->Find<QStackedWidget>("stackedWidget")->currentWidget()->objectName(),
             "page_online"_s);
}

void TestOnline::failureWhileTheSettingsAreOpen()
{
    Site site;
    YxConfig::Instance()->WriteOpenMode({1, false, true});
    site.Open();
    QTRY_COMPARE(site.View()->url().fileName(), "home.html"_s);
    const Prompts prompts("yes"_s);
    bool stacked = false;
    WithNext<YxSettingWid>([&](YxSettingWid& dialog) {
        site.View()->load(QUrl(site.server.Url("/nothing"_s)));
        stacked =
            QTest::qWaitFor([&] { return prompts.seen == QStringList("question"_s); }) && dialog.isVisible();
    });
    site.driver->Click("tbn_setting");
    QVERIFY(stacked);
    QTRY_COMPARE(site.driver->PageText(), "Home"_s);
}

QTEST_MAIN(TestOnline)
#include "tst_online.moc"
