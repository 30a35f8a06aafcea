#include "yxhelp.h"

#include "redirectwebenginepage.h"

#include <QEventLoop>
#include <QIcon>
#include <QPrintPreviewDialog>
#include <QPrinter>

namespace {

void PrintAndWait(QWebEnginePage* page, QPrinter* printer, QPageLayout::Unit unit)
{
    constexpr qreal kMargin = 20.0;
    printer->setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), unit);
    bool printed = false;
    page->print(printer, [&printed](bool) { printed = true; });
    // The engine paints on the printer in a thread of its own, so it is waited for even when the program
    // quits meanwhile, which ends every other loop. The preview is not to ask for the next rendering before
    // this one is done; clicks are kept till then.
    QEventLoop loop;
    while (!printed)
        loop.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace

void YxHelp::SlotPrint()
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setFullPage(false);
    // The dialogs for paper and printing change the unit, and paper would not be what the preview was.
    const QPageLayout::Unit unit = printer.pageLayout().units();
    QPrintPreviewDialog dialog(&printer);
    dialog.setWindowFlags(dialog.windowFlags() & Qt::WindowMinMaxButtonsHint);
    dialog.setWindowTitle(tr("Print Preview"));
    dialog.setWindowIcon(QIcon(QStringLiteral(":/Resource/CommonResources/YxPrdIcon.png")));
    connect(
        &dialog, &QPrintPreviewDialog::paintRequested, this,
        [this, unit](QPrinter* target) { PrintAndWait(offlinePage, target, unit); }, Qt::DirectConnection);
    dialog.exec();
}
