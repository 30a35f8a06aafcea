#pragma once

#include <QString>

/// The product description as callers get it, by value.
struct ConfigInfo
{
    int Group = 0; ///< Display family: 1 offline only, 2 online only, 3 both.
    QString Product;
    QString ProductName;
    QString VersionName;
    QString DefaultURL;
    QString AbroadURL;
    QString HelpmanagerUrl;
    QString HelpmanagerAbroadUrl;
    int VersionYear = 0;
    int CopyrightYear = 0;
    bool Filter = false;
    bool ResizeMemory = false;
};

/// The user's preferences for the online help.
struct OpenModeInfo
{
    int RunMode = 0; ///< 0 offline, 1 online.
    bool AutoChange = false;
    bool ChangeRemin = false;
};
