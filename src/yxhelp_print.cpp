#include "yxhelp.h"

#include "redirectwebenginepage.h"

#include <QEventLoop>
#include <QIcon>
#include <QPrintPreviewDialog>
#include <QPrinter>

namespace {

/// One rendering of the page onto the printer. The engine may call back after the waiting has ended, when the
/// program quits, so all that it touches lives as long as the call.
struct PrintRun
{
    std::shared_ptr<QPrinter> printer;
    QEventLoop loop;
    bool finished = false;
};

void PrintAndWait(QWebEnginePage* page, const std::shared_ptr<QPrinter>& printer)
{
    constexpr qreal kMargin = 20.0;
    printer->setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin));
    auto run = std::make_shared<PrintRun>();
    run->printer = printer;
    page->print(printer.get(), [run](bool) {
        run->finished = true;
        run->loop.quit();
    });
    // The preview is not to ask for the next rendering while it waits for this one; clicks are kept till
    // then.
    if (!run->finished)
        run->loop.exec(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

void YxHelp::SlotPrint()
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::ScreenResolution);
    printer->setPageSize(QPageSize(QPageSize::A4));
    printer->setFullPage(false);
    QPrintPreviewDialog dialog(printer.get());
    dialog.setWindowFlags(dialog.windowFlags() & Qt::WindowMinMaxButtonsHint);
    dialog.setWindowTitle(tr("Print Preview"));
    dialog.setWindowIcon(QIcon(QStringLiteral(":/Resource/CommonResources/YxPrdIcon.png")));
    connect(
        &dialog, &QPrintPreviewDialog::paintRequested, this,
        [this, printer](QPrinter*) { PrintAndWait(offlinePage, printer); }, Qt::DirectConnection);
    dialog.exec();
}
