#include "desktopentry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace outside {

namespace {

QStringList dataDirs()
{
    QStringList dirs;
    QString home = qEnvironmentVariable("XDG_DATA_HOME");
    if (home.isEmpty())
        home = QDir::homePath() + QStringLiteral("/.local/share");
    dirs << home;
    QString system = qEnvironmentVariable("XDG_DATA_DIRS");
    if (system.isEmpty())
        system = QStringLiteral("/usr/local/share/:/usr/share/");
    dirs << system.split(u':', Qt::SkipEmptyParts);
    return dirs;
}

// The general escapes of a desktop entry value: \s \n \t \r \\.
QString unescapeValue(const QString &raw)
{
    QString out;
    out.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const QChar c = raw.at(i);
        if (c != u'\\' || i + 1 == raw.size()) {
            out += c;
            continue;
        }
        const QChar next = raw.at(++i);
        switch (next.unicode()) {
        case 's':
            out += u' ';
            break;
        case 'n':
            out += u'\n';
            break;
        case 't':
            out += u'\t';
            break;
        case 'r':
            out += u'\r';
            break;
        case '\\':
            out += u'\\';
            break;
        default:
            // Unknown escapes are kept, so that the quoting rules of Exec still see them.
            out += c;
            out += next;
            break;
        }
    }
    return out;
}

bool isFieldCode(QChar c)
{
    return QStringLiteral("fFuUdDnNickvm").contains(c);
}

} // namespace

QString findDesktopEntry(const QString &desktopId)
{
    if (desktopId.isEmpty() || desktopId.contains(u'/'))
        return {};
    for (const QString &dir : dataDirs()) {
        const QString applications = dir + QStringLiteral("/applications/");
        const QString direct = applications + desktopId;
        if (QFileInfo(direct).isFile())
            return direct;
        // "vendor-app.desktop" may stand for applications/vendor/app.desktop.
        const qsizetype dash = desktopId.indexOf(u'-');
        if (dash > 0) {
            const QString nested = applications + desktopId.left(dash) + u'/' + desktopId.mid(dash + 1);
            if (QFileInfo(nested).isFile())
                return nested;
        }
    }
    return {};
}

QString desktopEntryExec(const QString &desktopFile)
{
    QFile file(desktopFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream in(&file);
    in.setEncoding(QStringConverter::Utf8);
    bool inMainGroup = false;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            inMainGroup = line == QStringLiteral("[Desktop Entry]");
            continue;
        }
        if (!inMainGroup)
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0 || line.left(eq).trimmed() != QStringLiteral("Exec"))
            continue;
        return unescapeValue(line.mid(eq + 1).trimmed());
    }
    return {};
}

QStringList splitExec(const QString &exec)
{
    QStringList args;
    QString current;
    bool hasArg = false;
    bool quoted = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec.at(i);
        if (quoted) {
            if (c == u'"') {
                quoted = false;
            } else if (c == u'\\' && i + 1 < exec.size()
                && QStringLiteral("\"`$\\").contains(exec.at(i + 1))) {
                current += exec.at(++i);
            } else {
                current += c;
            }
            continue;
        }
        if (c == u' ' || c == u'\t' || c == u'\n') {
            if (hasArg)
                args << current;
            current.clear();
            hasArg = false;
        } else if (c == u'"') {
            quoted = true;
            hasArg = true;
        } else if (c == u'%' && i + 1 < exec.size() && exec.at(i + 1) == u'%') {
            current += u'%';
            hasArg = true;
            ++i;
        } else if (c == u'%' && i + 1 < exec.size() && isFieldCode(exec.at(i + 1))) {
            ++i; // a field code with nothing to hand over vanishes
        } else {
            current += c;
            hasArg = true;
        }
    }
    if (hasArg)
        args << current;
    return args;
}

} // namespace outside
