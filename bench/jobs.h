#pragma once

#include "benchkit.h"

#include <QString>

class YxViewModel;

/// One search without a window, on the calling thread, with what it took.
class SearchRun
{
public:
    SearchRun(YxViewModel& model, const QString& word);

    double whole = 0;
    double firstTen = 0; ///< Until they are handed over; the whole when there are fewer.
    int hits = 0;
};
