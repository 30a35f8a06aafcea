#include "folderreader.h"

#include "docsite.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace helpbuild {
namespace {

// Digits only of ASCII: others have no common value with them.
bool IsDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

QStringRef TakeNumber(const QString& text, int& position)
{
    const int begin = position;
    while (position < text.size() && IsDigit(text.at(position)))
        ++position;
    return text.midRef(begin, position - begin);
}

int CompareNumbers(QStringRef left, QStringRef right)
{
    while (left.startsWith(QLatin1Char('0')))
        left = left.mid(1);
    while (right.startsWith(QLatin1Char('0')))
        right = right.mid(1);
    return left.size() != right.size() ? left.size() - right.size() : left.compare(right);
}

int NaturalCompare(const QString& left, const QString& right)
{
    int i = 0;
    int j = 0;
    while (i < left.size() && j < right.size()) {
        if (IsDigit(left.at(i)) && IsDigit(right.at(j))) {
            const QStringRef leftNumber = TakeNumber(left, i);
            const int order = CompareNumbers(leftNumber, TakeNumber(right, j));
            if (order != 0)
                return order;
            continue;
        }
        const int order = left.at(i).toCaseFolded().unicode() - right.at(j).toCaseFolded().unicode();
        if (order != 0)
            return order;
        ++i;
        ++j;
    }
    return (left.size() - i) - (right.size() - j);
}

class FolderReader
{
public:
    FolderReader(DocSite& docSite, Diagnostics& messages) : site(docSite), diagnostics(messages) {}

    /// Entry of the folder with all that is below it; false when there is no page.
    bool Read(const QString& realFolder, const QString& path, DocNode& node)
    {
        const QString canonical = QFileInfo(realFolder).canonicalFilePath();
        if (open.contains(canonical)) {
            diagnostics.Report(Finding::Section, {realFolder, 0},
                               QStringLiteral("the folder contains itself by a link"));
            return false;
        }
        open << canonical;
        const bool found = ReadOpen(realFolder, path, node);
        open.removeLast();
        return found;
    }

private:
    bool ReadOpen(const QString& realFolder, const QString& path, DocNode& node)
    {
        QStringList names = QDir(realFolder).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
        std::sort(names.begin(), names.end(), NaturalLess);
        const QString prefix = path.isEmpty() ? QString() : QString(path + QLatin1Char('/'));

        const QString index = IndexPage(names, realFolder);
        node.place = {realFolder, 0};
        node.title = index.isEmpty() ? QFileInfo(realFolder).fileName() : QString();
        node.page = index.isEmpty() ? QString() : QString(prefix + index);
        node.folder = path;
        for (const QString& name : qAsConst(names))
            AddEntry(realFolder + QLatin1Char('/') + name, prefix + name, name == index, node);
        return !node.page.isEmpty() || !node.children.empty();
    }

    void AddEntry(const QString& real, const QString& path, bool isIndex, DocNode& parent)
    {
        if (QFileInfo(real).isDir()) {
            DocNode folder;
            if (Read(real, path, folder))
                parent.children.push_back(std::move(folder));
            return;
        }
        if (!site.AddFile(path, real))
            diagnostics.Report(Finding::Section, {real, 0},
                               QLatin1Char('"') + path +
                                   QLatin1String("\" is already there from another input"));
        else if (!isIndex && IsPageName(path))
            parent.children.push_back({{}, path, {}, false, {real, 0}, {}});
    }

    static QString IndexPage(const QStringList& names, const QString& realFolder)
    {
        for (const QString& wanted : IndexPageNames()) {
            for (const QString& name : names) {
                if (name.compare(wanted, Qt::CaseInsensitive) == 0 &&
                    QFileInfo(realFolder + QLatin1Char('/') + name).isFile())
                    return name;
            }
        }
        return {};
    }

    DocSite& site;
    Diagnostics& diagnostics;
    QStringList open; // folders being read, by their canonical paths
};

} // namespace

bool NaturalLess(const QString& left, const QString& right)
{
    const int order = NaturalCompare(left, right);
    return order != 0 ? order < 0 : left < right;
}

bool ReadPageFolder(const QString& folder, const QString& path, DocSite& site, Diagnostics& diagnostics,
                    DocInput& input)
{
    DocNode root;
    if (!FolderReader(site, diagnostics).Read(QDir(folder).absolutePath(), path, root))
        return diagnostics.Fail({folder, 0}, QStringLiteral("the folder holds no HTML page"));
    input.tops.push_back(std::move(root));
    return true;
}

} // namespace helpbuild
