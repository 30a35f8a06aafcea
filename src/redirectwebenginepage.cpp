#include "redirectwebenginepage.h"

#include <QDesktopServices>

RedirectWebEnginePage::RedirectWebEnginePage(QObject* parent) : QWebEnginePage(parent) {}

QWebEnginePage* RedirectWebEnginePage::createWindow(WebWindowType)
{
    // The engine tells no address here; a page that nobody sees finds it out by loading it.
    auto* page = new QWebEnginePage(this);
    connect(page, &QWebEnginePage::urlChanged, this, &RedirectWebEnginePage::SlotTempPageUrlChanged);
    return page;
}

bool RedirectWebEnginePage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool)
{
    if (type != NavigationTypeLinkClicked)
        return true;

    constexpr int kSchemeLength = 8; // "file:///"
    QString link = url.toString().mid(kSchemeLength);
    link.replace(QLatin1Char('/'), QLatin1Char('\\'));
    emit linkClicked(link);
    return false;
}

void RedirectWebEnginePage::SlotTempPageUrlChanged(const QUrl& url)
{
    auto* page = qobject_cast<QWebEnginePage*>(sender());
    QDesktopServices::openUrl(url);
    // A redirect changes the address again, and the browser follows it by itself.
    disconnect(page, &QWebEnginePage::urlChanged, this, &RedirectWebEnginePage::SlotTempPageUrlChanged);
    page->deleteLater();
}
