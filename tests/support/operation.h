#pragma once

#include "sqltool.h"

#include <functional>

/// One operation on a help database, from opening to closing. True when the reader was.
inline bool Operate(const QString& path, const std::function<bool(SQLTOOL&)>& reader)
{
    SQLTOOL tool(path, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    const bool result = reader(tool);
    tool.CloseDb();
    return result;
}
