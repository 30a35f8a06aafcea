#pragma once

#include <QWebEnginePage>

/// Page of the online view. Links are followed in the ordinary way; a request for a new window goes to the
/// desktop's browser.
class RedirectOnlineWebEnginePage : public QWebEnginePage
{
    Q_OBJECT

public:
    explicit RedirectOnlineWebEnginePage(QObject* parent = nullptr);

signals:
    void openNewWindow(QUrl url);

protected:
    QWebEnginePage* createWindow(WebWindowType type) override;

private:
    void SlotTempPageUrlChanged(const QUrl& url);
};
