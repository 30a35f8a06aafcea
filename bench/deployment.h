#pragma once

#include <QRgb>
#include <QString>
#include <QTemporaryDir>

/// A copy of a deployment whose start page has a background that nothing else on the screen has.
class MarkedDeployment
{
public:
    /// `source` is a folder with the viewer's help, `language` the one to copy, `program` the viewer. `topic`
    /// is the key of the page to mark, empty for the first row.
    MarkedDeployment(const QString& program, const QString& source, const QString& language,
                     const QString& topic);

    static constexpr QRgb kColour = 0xffb07be3;

    QString Program() const { return dir.filePath(QStringLiteral("YxHelp")); }
    /// File with the marked page as the viewer gives it to the web engine.
    QString PageFile() const { return dir.filePath(QStringLiteral("page.html")); }
    int PageSize() const { return pageSize; }
    int Topics() const { return topics; }

private:
    void Mark(const QString& condition);
    void WritePage(const QString& topic);

    QTemporaryDir dir;
    QString language;
    QString database;
    int pageSize = 0;
    int topics = 0;
};
