#include "windowdriver.h"

#include "helpdatabase.h"

#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <QtTest>

#include <memory>

namespace {

HelpLaunchArgs Complete(HelpLaunchArgs args, const HelpDatabase& database)
{
    args.language = database.Language();
    args.mdbFile = database.FileName();
    args.rccPath = database.RccPath();
    return args;
}

/// Waits for a value that the web engine calls back with. The callback may come after the waiting has ended.
template <class Value, class Ask>
Value Await(Ask ask)
{
    struct Answer
    {
        QEventLoop loop;
        bool given = false;
        Value value;
    };
    auto answer = std::make_shared<Answer>();
    QTimer::singleShot(10000, &answer->loop, [loop = &answer->loop] { loop->exit(1); });
    ask([answer](const Value& value) {
        answer->value = value;
        answer->given = true;
        answer->loop.quit();
    });
    // The engine works in this thread's event loop, so a loop that sleeps in between would slow it down.
    if (!answer->given && answer->loop.exec() != 0)
        qWarning("the web engine gave no answer");
    return answer->value;
}

void AppendText(const QTreeWidgetItem* item, int level, QString& text)
{
    text += QString(2 * level, QLatin1Char(' ')) + item->text(0) + QLatin1Char('\n');
    for (int i = 0; i < item->childCount(); ++i)
        AppendText(item->child(i), level + 1, text);
}

} // namespace

WindowDriver::WindowDriver(const HelpDatabase& database, HelpLaunchArgs args)
    : WindowDriver(Complete(std::move(args), database))
{
}

WindowDriver::WindowDriver(const HelpLaunchArgs& args) : initialised(window.Init(args, args.language)) {}

void WindowDriver::Show()
{
    window.ShowCentered();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

QWebEnginePage* WindowDriver::OfflinePage()
{
    return Find<QWebEngineView>("webEngineView")->page();
}

QString WindowDriver::PageText()
{
    return Await<QString>([this](auto callback) { OfflinePage()->toPlainText(callback); }).simplified();
}

QVariant WindowDriver::RunScript(const QString& script)
{
    return Await<QVariant>([&](auto callback) { OfflinePage()->runJavaScript(script, callback); });
}

QTreeWidgetItem* WindowDriver::Entry(const char* tree, const QString& text)
{
    return Find<QTreeWidget>(tree)->findItems(text, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

void WindowDriver::ClickEntry(const char* tree, const QString& text, Qt::MouseButton button)
{
    QTreeWidgetItem* entry = Entry(tree, text);
    QVERIFY2(entry, qPrintable(text));
    auto* widget = Find<QTreeWidget>(tree);
    for (QTreeWidgetItem* parent = entry->parent(); parent; parent = parent->parent())
        parent->setExpanded(true);
    widget->scrollToItem(entry);
    QTest::mouseClick(widget->viewport(), button, {}, widget->visualItemRect(entry).center());
}

void WindowDriver::Click(const char* name, Qt::MouseButton button)
{
    QTest::mouseClick(Find<QWidget>(name), button);
}

void WindowDriver::ClickInPage(const QString& selector)
{
    const QVariantList rect =
        RunScript(
            QStringLiteral("(() => { const e = document.querySelector('%1'); e.scrollIntoView();"
                           "const r = e.getClientRects()[0]; return [r.left + 2, r.top + r.height / 2]; })()")
                .arg(selector))
            .toList();
    QVERIFY2(rect.size() == 2, qPrintable(selector));
    auto* view = Find<QWebEngineView>("webEngineView");
    const qreal zoom = view->page()->zoomFactor();
    const QPoint point(qRound(rect.at(0).toDouble() * zoom), qRound(rect.at(1).toDouble() * zoom));
    // The engine's own widget inside the view takes the mouse.
    QTest::mouseClick(view->focusProxy(), Qt::LeftButton, {}, point);
}

QString WindowDriver::Current(const char* tree)
{
    const QTreeWidgetItem* item = Find<QTreeWidget>(tree)->currentItem();
    return item ? item->text(0) : QString();
}

bool WindowDriver::ShowsIcon(const char* button, const char* file)
{
    constexpr int kSize = 32;
    const QIcon icon(QLatin1String(":/Resource/CommonResources/") + QLatin1String(file));
    return Find<QToolButton>(button)->icon().pixmap(kSize).toImage() == icon.pixmap(kSize).toImage();
}

bool XDo(const QString& words, QString* output)
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), words.split(QLatin1Char(' ')));
    const bool ended = QTest::qWaitFor([&] { return xdotool.state() == QProcess::NotRunning; }, 20000);
    if (output)
        *output = QString::fromLatin1(xdotool.readAllStandardOutput());
    return ended && xdotool.exitStatus() == QProcess::NormalExit && xdotool.exitCode() == 0;
}

QString TreeText(const QTreeWidget* tree)
{
    QString text;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        AppendText(tree->topLevelItem(i), 0, text);
    return text;
}
