#include "qhpreader.h"

#include "docsite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QXmlStreamReader>

namespace helpbuild {
namespace {

struct Section
{
    QString title;
    QString reference;
    int line = 0;
    std::vector<Section> children;
};

struct Keyword
{
    QString key;
    QString reference;
    int line = 0;
};

struct ListedFile
{
    QString path;
    int line = 0;
};

// References are resolved when all files are known, and the files stand last in a project.
struct ProjectText
{
    QString virtualFolder;
    std::vector<Section> sections;
    std::vector<Keyword> keywords;
    std::vector<ListedFile> files;
};

class ProjectParser
{
public:
    ProjectParser(QIODevice* device, ProjectText& text) : xml(device), project(text) {}

    bool Read()
    {
        if (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("QtHelpProject"))
                ReadProject();
            else
                xml.raiseError(QStringLiteral("this is no Qt help project"));
        }
        return !xml.hasError();
    }

    QString Error() const { return xml.errorString(); }
    int Line() const { return static_cast<int>(xml.lineNumber()); }

private:
    void ReadProject()
    {
        while (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("virtualFolder"))
                project.virtualFolder = xml.readElementText().trimmed();
            else if (xml.name() == QLatin1String("filterSection"))
                ReadFilterSection();
            else
                xml.skipCurrentElement();
        }
    }

    void ReadFilterSection()
    {
        while (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("toc"))
                ReadSections(project.sections);
            else if (xml.name() == QLatin1String("keywords"))
                ReadKeywords();
            else if (xml.name() == QLatin1String("files"))
                ReadFiles();
            else
                xml.skipCurrentElement();
        }
    }

    void ReadSections(std::vector<Section>& sections)
    {
        while (xml.readNextStartElement()) {
            if (xml.name() != QLatin1String("section")) {
                xml.skipCurrentElement();
                continue;
            }
            Section section{Attribute("title").simplified(), Attribute("ref"), Line(), {}};
            ReadSections(section.children);
            sections.push_back(std::move(section));
        }
    }

    void ReadKeywords()
    {
        while (xml.readNextStartElement()) {
            const QString id = Attribute("id");
            project.keywords.push_back({id.isEmpty() ? Attribute("name") : id, Attribute("ref"), Line()});
            xml.skipCurrentElement();
        }
    }

    void ReadFiles()
    {
        while (xml.readNextStartElement()) {
            const int line = Line();
            project.files.push_back({xml.readElementText().trimmed(), line});
        }
    }

    QString Attribute(const char* name) const
    {
        return xml.attributes().value(QLatin1String(name)).toString();
    }

    QXmlStreamReader xml;
    ProjectText& project;
};

class ProjectReader
{
public:
    ProjectReader(const QString& projectFile, DocSite& docSite, Diagnostics& messages, DocInput& result)
        : file(projectFile)
        , folder(QFileInfo(projectFile).absolutePath())
        , site(docSite)
        , diagnostics(messages)
        , input(result)
    {
    }

    bool Read()
    {
        QFile device(file);
        if (!device.open(QIODevice::ReadOnly))
            return diagnostics.Fail({file, 0}, QStringLiteral("can't be read: ") + device.errorString());
        ProjectParser parser(&device, project);
        if (!parser.Read())
            return diagnostics.Fail(At(parser.Line()), parser.Error());
        project.virtualFolder = CleanPath(project.virtualFolder);
        site.AddFolder(project.virtualFolder, folder);
        if (!AddFiles() || !AddSections(project.sections, input.tops))
            return false;
        if (input.tops.empty())
            return diagnostics.Fail({file, 0}, QStringLiteral("the project has no sections"));
        AddKeywords();
        for (const QString& page : qAsConst(pages)) {
            if (!shown.contains(page))
                input.outside.push_back({{}, page, {}, false, {file, 0}, {}});
        }
        return true;
    }

private:
    static QString CleanPath(const QString& path)
    {
        QString clean = path.isEmpty() ? QString() : QDir::cleanPath(path);
        while (clean.startsWith(QLatin1Char('/')))
            clean.remove(0, 1);
        return clean == QLatin1String(".") ? QString() : clean;
    }

    SourcePlace At(int line) const { return {file, line}; }

    QString InSite(const QString& path) const
    {
        return project.virtualFolder.isEmpty() ? path
                                               : QString(project.virtualFolder + QLatin1Char('/') + path);
    }

    // The last part of a listed path may be a pattern.
    QStringList Expand(const QString& path) const
    {
        const int slash = path.lastIndexOf(QLatin1Char('/'));
        const QString name = path.mid(slash + 1);
        if (!name.contains(QLatin1Char('*')) && !name.contains(QLatin1Char('?')))
            return QFileInfo(folder + QLatin1Char('/') + path).isFile() ? QStringList{path} : QStringList{};
        QStringList found;
        const QDir directory(folder + QLatin1Char('/') + path.left(slash + 1));
        for (const QString& entry : directory.entryList({name}, QDir::Files, QDir::Name))
            found << path.left(slash + 1) + entry;
        return found;
    }

    bool AddFiles()
    {
        for (const ListedFile& listed : project.files) {
            const QString path = CleanPath(listed.path);
            const QStringList found = Expand(path);
            if (found.isEmpty())
                return diagnostics.Fail(At(listed.line), QLatin1String("the file \"") + listed.path +
                                                             QLatin1String("\" doesn't exist"));
            for (const QString& each : found)
                AddFile(each, listed.line);
        }
        return true;
    }

    void AddFile(const QString& path, int line)
    {
        const QString inSite = InSite(path);
        if (!site.AddFile(inSite, folder + QLatin1Char('/') + path)) {
            diagnostics.Report(Finding::Section, At(line),
                               QLatin1String("\"") + inSite +
                                   QLatin1String("\" is already there from another project"));
        } else if (IsPageName(path) && !pages.contains(inSite)) {
            pages << inSite;
        }
    }

    bool AddSections(const std::vector<Section>& sections, std::vector<DocNode>& nodes)
    {
        for (const Section& section : sections) {
            if (!AddSection(section, nodes))
                return false;
        }
        return true;
    }

    bool AddSection(const Section& section, std::vector<DocNode>& nodes)
    {
        if (section.reference.isEmpty())
            return diagnostics.Fail(At(section.line), QLatin1String("the section \"") + section.title +
                                                          QLatin1String("\" names no page"));
        const Target target = Resolve(section.reference);
        // Projects that come with libraries do name pages they don't have.
        if (target.kind != Target::File || !IsPageName(target.path)) {
            diagnostics.Report(Finding::Section, At(section.line),
                               QLatin1String("the section's page \"") + section.reference +
                                   (target.kind == Target::Missing ? QLatin1String("\" doesn't exist")
                                                                   : QLatin1String("\" is no page")));
            return AddSections(section.children, nodes);
        }
        DocNode node{section.title, target.path, {}, !target.fragment.isEmpty(), At(section.line), {}};
        shown.insert(target.path);
        if (!AddSections(section.children, node.children))
            return false;
        nodes.push_back(std::move(node));
        return true;
    }

    // The first keyword that means a page as a whole gives its key.
    void AddKeywords()
    {
        for (const Keyword& keyword : project.keywords) {
            if (keyword.key.isEmpty() || keyword.reference.contains(QLatin1Char('#')))
                continue;
            const Target target = Resolve(keyword.reference);
            if (target.kind == Target::File && !input.keys.contains(target.path))
                input.keys.insert(target.path, {keyword.key, At(keyword.line)});
        }
    }

    Target Resolve(const QString& reference) const
    {
        return site.Resolve(reference, DocSite::AddressOf(InSite(QString())), QString());
    }

    QString file;
    QString folder;
    DocSite& site;
    Diagnostics& diagnostics;
    DocInput& input;
    ProjectText project;
    QStringList pages;
    QSet<QString> shown;
};

} // namespace

bool ReadHelpProject(const QString& file, DocSite& site, Diagnostics& diagnostics, DocInput& input)
{
    return ProjectReader(file, site, diagnostics, input).Read();
}

} // namespace helpbuild
