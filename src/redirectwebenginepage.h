#pragma once

#include <QWebEnginePage>

/// Page of the offline view. It follows no link: a click becomes a signal and the window decides what to
/// show. A request for a new window goes to the desktop's browser.
class RedirectWebEnginePage : public QWebEnginePage
{
    Q_OBJECT

public:
    explicit RedirectWebEnginePage(QObject* parent = nullptr);

signals:
    /// A link was clicked. `linkUrl` is its address without "file:///", in the form of a stored path:
    /// with backslashes.
    void linkClicked(QString linkUrl);

protected:
    QWebEnginePage* createWindow(WebWindowType type) override;
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;

private:
    void SlotTempPageUrlChanged(const QUrl& url);
};
