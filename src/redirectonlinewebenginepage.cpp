#include "redirectonlinewebenginepage.h"

#include <QDesktopServices>

RedirectOnlineWebEnginePage::RedirectOnlineWebEnginePage(QObject* parent) : QWebEnginePage(parent) {}

QWebEnginePage* RedirectOnlineWebEnginePage::createWindow(WebWindowType)
{
    auto* page = new QWebEnginePage(this);
    connect(page, &QWebEnginePage::urlChanged, this, &RedirectOnlineWebEnginePage::SlotTempPageUrlChanged);
    return page;
}

void RedirectOnlineWebEnginePage::SlotTempPageUrlChanged(const QUrl& url)
{
    auto* page = qobject_cast<QWebEnginePage*>(sender());
    QDesktopServices::openUrl(url);
    // The page itself lives on until the online page goes: the site may still hold a reference to its window.
    disconnect(page, &QWebEnginePage::urlChanged, this, &RedirectOnlineWebEnginePage::SlotTempPageUrlChanged);
}
