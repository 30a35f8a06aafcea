#include "jobs.h"

#include "yxglobalsignal.h"
#include "yxviewmodel.h"

#include <QObject>

SearchRun::SearchRun(YxViewModel& model, const QString& word)
{
    const QObject receiver;
    const bench::Stopwatch watch;
    QObject::connect(
        YxGlobalSignal::Instance(), &YxGlobalSignal::SearchResultChange, &receiver,
        [&](const QList<TreeViewModel>& list, int, bool) {
            if (firstTen == 0)
                firstTen = watch.Elapsed();
            hits = list.size();
        },
        Qt::DirectConnection);
    model.SearchAllFiles(word);
    whole = watch.Elapsed();
}
