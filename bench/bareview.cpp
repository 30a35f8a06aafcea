// The floor that the viewer's start is held against: nothing but a web view with a finished page.
//   bareview PAGE X Y WIDTH HEIGHT

#include <QApplication>
#include <QFile>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <vector>

int main(int argc, char** argv)
{
    // The viewer's own switch and graphics, so that the engine has the same work.
    char webSecurity[] = "--disable-web-security";
    std::vector<char*> block(argv, argv + argc);
    block.push_back(webSecurity);
    block.push_back(nullptr);
    int count = argc + 1;
    QCoreApplication::setAttribute(Qt::AA_UseOpenGLES, true);
    const QApplication application(count, block.data());

    const QStringList arguments = QCoreApplication::arguments();
    QFile page(arguments.value(1));
    if (!page.open(QIODevice::ReadOnly))
        qFatal("no page");

    QWebEngineView view;
    view.setWindowFlags(Qt::FramelessWindowHint);
    view.setGeometry(arguments.value(2).toInt(), arguments.value(3).toInt(), arguments.value(4).toInt(),
                     arguments.value(5).toInt());
    view.page()->setHtml(QString::fromUtf8(page.readAll()), QUrl(QStringLiteral("file:///")));
    view.show();
    return QApplication::exec();
}
