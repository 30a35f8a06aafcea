#pragma once

#include "qcommon.h"
#include "treeviewmodel.h"

#include <QList>
#include <QObject>

#include <memory>

/// Signals by which code that knows no window reaches the window, and the window reaches the view model and
/// the filter panel. The lists go by reference, so their signals can only be connected directly.
class YxGlobalSignal : public QObject
{
    Q_OBJECT

public:
    /// The one instance; lives on the main thread, which must be the first to ask for it.
    static YxGlobalSignal* Instance();

signals:
    void dpiChange();
    void SearchResultChange(QList<TreeViewModel>& list, int index, bool isEnd);
    void TerminateResultSearch();
    void UpdataIndexPage(QList<TreeViewModel>& list, int index);
    void DragWidgetBMaximized();
    void RedirectTopicSig(SMData data);
    void SetExeOnTheTop();

private:
    YxGlobalSignal() = default;

    static std::unique_ptr<YxGlobalSignal> instance;
};
