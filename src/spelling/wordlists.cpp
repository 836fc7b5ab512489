#include "wordlists.h"

#include <database.h>
#include <logging.h>
#include <rtf.h>
#include <runtimeerror.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace spelling {

namespace {

// A caption may be rich text; its words are the ones shown.
QString plainField(const QString &field)
{
    if (!field.startsWith(QStringLiteral("{\\rtf")))
        return field;
    return richtext::readPlainText(richtext::rtfFromString(field)).text;
}

void readColumnOrThrow(content::Database &database, const QString &sql, QStringList &out);

// A course may lack a table (places, keywords); its other words still count.
void readColumn(content::Database &database, const QString &sql, QStringList &out)
{
    try {
        readColumnOrThrow(database, sql, out);
    } catch (const platform::RuntimeError &e) {
        qCWarning(lcSpelling).noquote() << "course words not read:" << sql << "-" << e.description();
    }
}

void readColumnOrThrow(content::Database &database, const QString &sql, QStringList &out)
{
    auto rs = database.OpenRecordset(sql, content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            const QVariant value = rs->value(0);
            if (!value.isNull())
                out.append(plainField(value.toString()));
            rs->MoveNext();
        }
    }
    rs->Close();
}

} // namespace

QString pupilWordsPath()
{
    QString home = qEnvironmentVariable("XDG_DATA_HOME");
    if (home.isEmpty())
        home = QDir::homePath() + QStringLiteral("/.local/share");
    return QDir(home).filePath(QStringLiteral("tremidia/words.txt"));
}

QStringList readPupilWords(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList words;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QString word = QString::fromUtf8(line).trimmed();
        if (!word.isEmpty())
            words.append(word);
    }
    return words;
}

bool appendPupilWord(const QString &path, const QString &word)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return false;
    const QByteArray name = QFile::encodeName(path);
    const int fd = ::open(name.constData(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd < 0)
        return false;
    // A file cut short by a crash may lack its last line's end: the word starts a line.
    QByteArray line = word.trimmed().toUtf8() + '\n';
    const off_t size = ::lseek(fd, 0, SEEK_END);
    if (size > 0) {
        char last = '\n';
        if (::pread(fd, &last, 1, size - 1) == 1 && last != '\n')
            line.prepend('\n');
    }
    qsizetype written = 0;
    bool ok = true;
    while (written < line.size()) {
        const ssize_t n = ::write(fd, line.constData() + written, size_t(line.size() - written));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            ok = false;
            break;
        }
        written += n;
    }
    ok = ok && ::fsync(fd) == 0;
    ok = ::close(fd) == 0 && ok;
    // A file just made is only there for good once its folder is synced too.
    if (ok && size == 0) {
        const QByteArray folderName = QFile::encodeName(folder);
        if (const int dir = ::open(folderName.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); dir >= 0) {
            ::fsync(dir);
            ::close(dir);
        }
    }
    return ok;
}

QStringList readCourseWords(content::Database &database)
{
    QStringList words;
    readColumn(database, QStringLiteral("SELECT ExactPhrase FROM RelCommentResource"), words);
    readColumn(database, QStringLiteral("SELECT ExactPhrase FROM RelEuretirioResource"), words);
    readColumn(database, QStringLiteral("SELECT Oros FROM Euretirio"), words);
    readColumn(database, QStringLiteral("SELECT Book FROM Resources"), words);
    readColumn(database, QStringLiteral("SELECT Caption FROM Resources"), words);
    readColumn(database, QStringLiteral("SELECT Author FROM Resources"), words);
    readColumn(database, QStringLiteral("SELECT Place FROM Places"), words);
    readColumn(database, QStringLiteral("SELECT Keyword FROM Keywords"), words);
    return words;
}

} // namespace spelling
