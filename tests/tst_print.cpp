#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "windowdriver.h"

#include <QAction>
#include <QBuffer>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGraphicsView>
#include <QLineEdit>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebEnginePage>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

const QColor kColour(208, 16, 128);
const QString kPictureWidth = QStringLiteral("(document.images[0] || {}).naturalWidth");

QByteArray Picture()
{
    QImage image(300, 300, QImage::Format_RGB32);
    image.fill(kColour);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return data;
}

void Choose(QPrintPreviewDialog& dialog, const QString& text)
{
    for (QAction* action : dialog.findChildren<QAction*>()) {
        if (action->text() == text)
            return action->trigger();
    }
    QFAIL(qPrintable(text));
}

void Accept(const QDialog& dialog)
{
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
}

/// How much of the preview has the colour of the picture.
int Coloured(const QPrintPreviewDialog& dialog)
{
    const QImage image = dialog.findChild<QGraphicsView*>()->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += std::abs(pixel.red() - kColour.red()) < 24 &&
                     std::abs(pixel.green() - kColour.green()) < 24 &&
                     std::abs(pixel.blue() - kColour.blue()) < 24;
        }
    }
    return count;
}

} // namespace

class TestPrint : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void previewShowsTheTopicAndFollowsThePaper();
    void topicIsPrintedToAFile();
    void leavingWhileAPageIsPrinted();

private:
    std::unique_ptr<HelpDatabase> database;
    std::unique_ptr<WindowDriver> driver;
};

void TestPrint::initTestCase()
{
    InitBuiltInResources();
    QVERIFY(UseProduct(ProductIni(1)));
    const QString text = QStringLiteral("<p>") + QStringLiteral("some words ").repeated(60);
    database = std::make_unique<HelpDatabase>(
        QStringLiteral("Home | images=i/a.png | html=<html><head><title>Home</title></head><body>"
                       "<img src=\"i/a.png\">") +
        text.repeated(40) + QStringLiteral("</body></html>"));
    database->AddImage(QStringLiteral("i/a.png"), Picture());
    driver = std::make_unique<WindowDriver>(*database);
    driver->Show();
    QTRY_COMPARE(driver->RunScript(kPictureWidth).toInt(), 300);
}

void TestPrint::cleanupTestCase()
{
    driver.reset();
}

void TestPrint::previewShowsTheTopicAndFollowsThePaper()
{
    bool shown = false;
    WithNext<QPrintPreviewDialog>([&](QPrintPreviewDialog& dialog) {
        int asked = 0;
        connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [&] { ++asked; });
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Print Preview"));
        const auto* pages = dialog.findChild<QPrintPreviewWidget*>();
        const int portrait = pages->pageCount();
        QVERIFY(portrait > 1);
        QTRY_VERIFY(Coloured(dialog) > 1000);
        QCOMPARE(dialog.printer()->pageLayout().pageSize().id(), QPageSize::A4);
        QCOMPARE(dialog.printer()->pageLayout().margins(), QMarginsF(20, 20, 20, 20));

        Choose(dialog, QStringLiteral("Landscape"));
        QCOMPARE(asked, 1);
        QCOMPARE(dialog.printer()->orientation(), QPrinter::Landscape);
        QTRY_VERIFY(Coloured(dialog) > 1000);

        WithNext<QPageSetupDialog>([&](QPageSetupDialog& setup) {
            auto* size = setup.findChild<QComboBox*>(QStringLiteral("pageSizeCombo"));
            size->setCurrentText(QPageSize::name(QPageSize::A5));
            Accept(setup);
        });
        Choose(dialog, QStringLiteral("Page setup"));
        QCOMPARE(dialog.printer()->pageLayout().pageSize().id(), QPageSize::A5);
        QCOMPARE(asked, 2);
        QVERIFY(pages->pageCount() > portrait);
        QTRY_VERIFY(Coloured(dialog) > 1000);
        shown = true;
    });
    driver->Click("tbn_print");
    QVERIFY(shown);
}

void TestPrint::topicIsPrintedToAFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("topic.pdf"));
    int pages = 0;
    WithNext<QPrintPreviewDialog>([&](QPrintPreviewDialog& dialog) {
        pages = dialog.findChild<QPrintPreviewWidget*>()->pageCount();
        WithNext<QPrintDialog>([&](QPrintDialog& print) {
            auto* printers = print.findChild<QComboBox*>(QStringLiteral("printers"));
            printers->setCurrentIndex(printers->findText(QStringLiteral("Print to File (PDF)")));
            print.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(path);
            Accept(print);
        });
        Choose(dialog, QStringLiteral("Print"));
    });
    driver->Click("tbn_print");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    QVERIFY(pdf.startsWith("%PDF-"));
    QCOMPARE(pdf.count("/Type /Page\n"), pages);
    QVERIFY(pdf.contains("/Subtype /Image"));
}

void TestPrint::leavingWhileAPageIsPrinted()
{
    HelpLaunchArgs home;
    home.topic = QStringLiteral("home");
    const std::function<void(QDialog&)> ways[] = {
        [](QDialog& dialog) { dialog.close(); },
        [&](QDialog&) { driver->Window().ShowRedirectedTopic(MakeSMData(-1, home)); },
        // No loop of this program runs again after that.
        [](QDialog&) { QCoreApplication::quit(); }};
    for (const auto& leave : ways) {
        int pages = 0;
        bool printing = false;
        WithNext<QPrintPreviewDialog>([&](QPrintPreviewDialog& dialog) {
            pages = dialog.findChild<QPrintPreviewWidget*>()->pageCount();
            printing = true;
            connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [&] { printing = false; });
            QTimer::singleShot(0, &dialog, [&] {
                QVERIFY(printing);
                leave(dialog);
            });
            Choose(dialog, QStringLiteral("Landscape"));
        });
        QTRY_COMPARE(driver->RunScript(kPictureWidth).toInt(), 300);
        driver->Click("tbn_print");
        QVERIFY(pages > 1 && !printing);
    }
}

QTEST_MAIN(TestPrint)
#include "tst_print.moc"
