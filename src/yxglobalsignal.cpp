#include "yxglobalsignal.h"

#include <QCoreApplication>
#include <QThread>

// A member rather than a local of the function, so that it goes only after main has returned whoever asked
// first.
std::unique_ptr<YxGlobalSignal> YxGlobalSignal::instance;

YxGlobalSignal* YxGlobalSignal::Instance()
{
    if (!instance) {
        Q_ASSERT(!QCoreApplication::instance() ||
                 QCoreApplication::instance()->thread() == QThread::currentThread());
        instance.reset(new YxGlobalSignal);
    }
    return instance.get();
}
