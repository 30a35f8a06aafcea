// Shows a topic of the help, as the Help button of a host application does:
//   helphost VIEWER LANGUAGE TITLE TOPIC [PRODUCT [VERSION]]
// It prints the process id of the viewer that it started. That one ends at once, with exit code
// 0, when a viewer of this language and title is running and takes the topic over.

#include <QCoreApplication>
#include <QProcess>
#include <QTextStream>

#include <algorithm>

namespace {

/// True for a word that every viewer reads as it was meant: no switch, and short ASCII without
/// blanks, so that it can be handed over too.
bool CanTravel(const QString& word)
{
    constexpr int kLongest = 127;
    return word.size() <= kLongest && !word.startsWith(QLatin1Char('/')) &&
           std::all_of(word.cbegin(), word.cend(),
                       [](QChar c) { return c > u' ' && c < u'\x7f'; });
}

/// Each switch with its value as the next word; none for a value that is empty.
QStringList Switches(const QStringList& values)
{
    const QStringList names{QStringLiteral("/Language"), QStringLiteral("/helpTitle"),
                            QStringLiteral("/Topic"), QStringLiteral("/Product"),
                            QStringLiteral("/Version")};
    QStringList words;
    for (int i = 0; i < std::min(names.size(), values.size()); ++i) {
        if (!values.at(i).isEmpty())
            words << names.at(i) << values.at(i);
    }
    return words;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream errors(stderr);
    QStringList values = QCoreApplication::arguments().mid(1);
    if (values.size() < 4 || values.size() > 6) {
        errors << "helphost VIEWER LANGUAGE TITLE TOPIC [PRODUCT [VERSION]]\n";
        return 2;
    }
    const QString viewer = values.takeFirst();
    if (!std::all_of(values.cbegin(), values.cend(), &CanTravel)) {
        errors << "Only ASCII without blanks, up to 127 characters and no slash in front\n";
        return 2;
    }

    qint64 pid = 0;
    if (!QProcess::startDetached(viewer, Switches(values), QString(), &pid)) {
        errors << viewer << " can't be started\n";
        return 1;
    }
    QTextStream(stdout) << pid << '\n';
    return 0;
}
