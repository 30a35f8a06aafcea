#pragma once

#include "buildoptions.h"
#include "helpdatabase.h"

#include <memory>

class YxViewModel;

/// Documentation made of a few lines, built into a help database and looked at as the viewer looks at it.
class BuildFixture
{
public:
    BuildFixture();
    ~BuildFixture();

    /// A file below the folder for inputs.
    void Write(const QString& path, const QByteArray& content);
    /// A page with the title and the text; the markup around it is sound.
    void WritePage(const QString& path, const QString& title, const QByteArray& body = {});
    /// Absolute path of a file or folder below the folder for inputs.
    QString Input(const QString& path = {}) const { return input.filePath(path); }

    /// What the next build is told, beside its inputs.
    helpbuild::BuildOptions options;
    QString OutputDir() const { return output.path(); }
    QString HelpDir() const
    {
        return options.output + QLatin1Char('/') + options.language + QLatin1String("/Help");
    }

    /// Builds from inputs below the folder for inputs; false when the build failed.
    bool Build(const QStringList& inputs);
    /// The one line that ended the last build, with the folder for inputs left out.
    QString Error() const { return error; }
    /// What the last build reported, in the same form.
    QStringList Reports() const { return reports; }

    /// First column of all rows.
    QStringList Select(const QString& statement) const;
    /// The contents tree as indented text, with the key of each entry behind it; pages outside follow with
    /// "~".
    QString Tree() const;
    /// The page as the viewer hands it to the web view.
    QString Finished(const QString& title);
    /// Title of the topic that a click on the link brings up; empty when there is none.
    QString Follow(const QString& href);

    /// A small PNG; different for each number.
    static QByteArray Png(int number = 0, int size = 4)
    {
        return NoiseImage(size, size, "png", static_cast<quint32>(number) + 1);
    }

private:
    QString WithoutFolder(QString text) const { return text.remove(input.path() + QLatin1Char('/')); }
    YxViewModel& Viewer();

    QTemporaryDir input;
    QTemporaryDir output;
    QString error;
    QStringList reports;
    std::unique_ptr<YxViewModel> viewer;
};

/// Text of a Qt help project in the given virtual folder.
QByteArray Project(const QByteArray& sections, const QByteArray& keywords, const QByteArray& files,
                   const QByteArray& folder = "doc");

/// Builds the page and hands it over finished. Beside it lie the style sheets "s.css" and "sub/t.css", the
/// scripts "a.js" and "lib.js.min.js", the image "i.png", "notes.txt" and the page "sub/other.html", "Other".
QString Finish(BuildFixture& fixture, const QByteArray& page);

/// Values of an attribute in a finished page, in their order: "img", "src".
QStringList AttributesIn(const QString& html, const char* tag, const char* attribute);
/// What a reader sees of a finished page.
QString TextIn(const QString& html);
/// Texts of the elements of a kind.
QStringList ContentsOf(const QString& html, const char* tag);
