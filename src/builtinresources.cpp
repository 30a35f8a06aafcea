#include "builtinresources.h"

#include <QDir>

void InitBuiltInResources()
{
    // Resources of a static library are not registered by themselves.
    Q_INIT_RESOURCE(YxHelp);
    Q_INIT_RESOURCE(YxHelpQtQm);
#ifdef YXHELP_BUNDLED_QT
    Q_INIT_RESOURCE(YxHelpQtConf);
#endif
}
