#pragma once

#include <QCoreApplication>
#include <QMutex>
#include <QProcess>
#include <QString>
#include <QStringList>

/// Collects the messages of a test instead of printing them, each as "category: text".
class LogCapture
{
public:
    LogCapture()
    {
        Messages().clear();
        previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
                static QMutex mutex;
                const QMutexLocker lock(&mutex);
                Messages().append(QLatin1String(context.category) + QLatin1String(": ") + text);
            });
    }
    ~LogCapture() { qInstallMessageHandler(previous); }
    Q_DISABLE_COPY_MOVE(LogCapture)

    /// How many messages hold the text.
    int Count(const QString& text) const { return Messages().filter(text).size(); }
    QString All() const { return Messages().join(QLatin1Char('\n')); }

private:
    static QStringList& Messages()
    {
        static QStringList messages;
        return messages;
    }

    QtMessageHandler previous = nullptr;
};

/// Runs this test program again with the arguments, and returns what it said when it crashed; empty when it
/// ended by itself.
inline QString FatalMessage(const QStringList& arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished();
    return process.exitStatus() == QProcess::CrashExit ? QString::fromUtf8(process.readAllStandardError())
                                                       : QString();
}
