#pragma once

#include <QString>
#include <QVector>

#include <utility>

/// Replaces every occurrence of each first text by its second, one pair after the other, so that a later
/// pair also finds what an earlier one brought in. Empty texts to look for are passed over.
void ReplaceInOrder(QString& text, const QVector<std::pair<QString, QString>>& pairs);
