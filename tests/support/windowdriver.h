#pragma once

#include "launchargs.h"
#include "yxhelp.h"

#include <QApplication>
#include <QString>
#include <QTimer>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;
class QWebEnginePage;
class HelpDatabase;

/// Drives a real window by the object names of its widgets, the way a user would.
class WindowDriver
{
public:
    /// A window on the help database. Init has been called, the window is not shown yet.
    explicit WindowDriver(const HelpDatabase& database, HelpLaunchArgs args = {});
    /// A window on the deployment and the language that the arguments name.
    explicit WindowDriver(const HelpLaunchArgs& args);

    YxHelp& Window() { return window; }
    bool Initialised() const { return initialised; }
    void Show();

    template <class Widget>
    Widget* Find(const char* name)
    {
        auto* widget = window.findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("the window has no %s", name);
        return widget;
    }

    QWebEnginePage* OfflinePage();
    /// Plain text of the offline page, its lines joined by blanks.
    QString PageText();
    /// Result of a script run in the offline page.
    QVariant RunScript(const QString& script);

    /// Entry of a tree by its text; null when there is none.
    QTreeWidgetItem* Entry(const char* tree, const QString& text);
    /// Scrolls to the entry and clicks it with the mouse.
    void ClickEntry(const char* tree, const QString& text, Qt::MouseButton button = Qt::LeftButton);
    /// Clicks a button or another widget with the mouse, in its middle.
    void Click(const char* name, Qt::MouseButton button = Qt::LeftButton);
    /// Clicks the element of the offline page that the CSS selector finds.
    void ClickInPage(const QString& selector);

    /// True when the button shows the built-in picture of that file name.
    bool ShowsIcon(const char* button, const char* file);
    /// Text of the tree's current entry; empty without one.
    QString Current(const char* tree);

private:
    YxHelp window;
    bool initialised = false;
};

/// Runs xdotool with these words, with mouse and keyboard of the whole screen, while the window lives on.
/// False when that fails.
bool XDo(const QString& words, QString* output = nullptr);

/// Runs `act` in the dialog of class `Dialog` that opens next, and closes what is still open then.
template <class Dialog>
void WithNext(const std::function<void(Dialog&)>& act)
{
    auto* watch = new QTimer(qApp);
    QObject::connect(watch, &QTimer::timeout, watch, [watch, act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        watch->deleteLater();
        watch->stop();
        act(*dialog);
        dialog->close();
    });
    watch->start(10);
}

/// The visible shape of a tree as indented text.
QString TreeText(const QTreeWidget* tree);
