#include "dictionary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <hunspell.hxx>
#include <iconv.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace spelling {

namespace {

const QString AffixName = QStringLiteral("el_GR.aff");
const QString WordsName = QStringLiteral("el_GR.dic");

// The SET line of an .aff file: the encoding of both files. Hunspell's default is
// ISO-8859-1, which would not hold Greek; Debian's Greek dictionary says ISO8859-7.
QString affixEncoding(const QString &affix)
{
    QFile file(affix);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith("SET ") || line.startsWith("SET\t"))
            return QString::fromLatin1(line.mid(4).trimmed());
    }
    return QStringLiteral("ISO8859-1");
}

// iconv spells some names its own way: ISO8859-7 is ISO-8859-7 to it.
QByteArray iconvName(const QString &encoding)
{
    QString name = encoding.toUpper();
    if (name.startsWith(u"ISO8859"))
        name.insert(3, u'-');
    return name.toLatin1();
}

// The 256 characters of a single-byte encoding, from iconv; empty when iconv does not
// know it. A byte with no character stays a null QChar.
QString singleByteTable(const QByteArray &name)
{
    iconv_t cd = iconv_open("UTF-16LE", name.constData());
    if (cd == reinterpret_cast<iconv_t>(-1))
        return QString();
    QString table(256, QChar());
    for (int b = 1; b < 256; ++b) {
        char in = char(b);
        char16_t out[2] = {0, 0};
        char *inPtr = &in;
        size_t inLeft = 1;
        char *outPtr = reinterpret_cast<char *>(out);
        size_t outLeft = sizeof out;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) != size_t(-1) && outLeft == 2)
            table[b] = QChar(out[0]);
    }
    iconv_close(cd);
    return table;
}

// Hunspell reads its word list in one call that cannot be stopped, about half a second
// of work. So that a session ending meanwhile does not wait for it, the list reaches
// Hunspell through a pipe that a thread of ours fills: when `cancelled` rises, the
// thread stops and closes the pipe, and Hunspell finishes at once on the words it has
// (which are then thrown away).
std::unique_ptr<Hunspell> loadStoppable(
    const QString &affix, const QString &words, const std::atomic_bool &cancelled)
{
    QFile source(words);
    int ends[2];
    if (!source.open(QIODevice::ReadOnly) || ::pipe2(ends, O_CLOEXEC) != 0)
        return nullptr;
    const QByteArray readEnd = "/proc/self/fd/" + QByteArray::number(ends[0]);
    std::thread feeder([&source, &cancelled, out = ends[1]] {
        // A reader gone early must not end the program with SIGPIPE.
        sigset_t pipeSignal;
        sigemptyset(&pipeSignal);
        sigaddset(&pipeSignal, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipeSignal, nullptr);
        QByteArray chunk;
        bool broken = false;
        while (!broken && !cancelled && !(chunk = source.read(1 << 16)).isEmpty()) {
            for (qsizetype done = 0; done < chunk.size() && !cancelled;) {
                const ssize_t n = ::write(out, chunk.constData() + done, size_t(chunk.size() - done));
                if (n < 0 && errno == EINTR)
                    continue;
                if (n < 0) {
                    broken = true;
                    break;
                }
                done += n;
            }
        }
        ::close(out);
        if (broken) {
            const timespec now {0, 0};
            sigtimedwait(&pipeSignal, nullptr, &now);
        }
    });
    std::unique_ptr<Hunspell> hunspell;
    if (QFileInfo::exists(QString::fromLatin1(readEnd)))
        hunspell = std::make_unique<Hunspell>(QFile::encodeName(affix).constData(), readEnd.constData());
    // Hunspell has read to the end, or never opened the pipe: either way the feeder ends.
    ::close(ends[0]);
    feeder.join();
    return hunspell;
}

} // namespace

Dictionary::~Dictionary() = default;

QStringList Dictionary::defaultFolders()
{
    QStringList folders;
    // DICPATH is Hunspell's own way of naming more folders.
    for (const QString &folder : qEnvironmentVariable("DICPATH").split(u':', Qt::SkipEmptyParts))
        folders << folder;
    folders << QStringLiteral("/usr/share/hunspell") << QStringLiteral("/usr/share/myspell")
            << QStringLiteral("/usr/share/myspell/dicts") << QStringLiteral("/usr/local/share/hunspell");
    return folders;
}

QString Dictionary::findAffix(const QStringList &folders)
{
    for (const QString &folder : folders) {
        const QDir dir(folder);
        if (QFileInfo(dir.filePath(AffixName)).isReadable()
            && QFileInfo(dir.filePath(WordsName)).isReadable())
            return dir.filePath(AffixName);
    }
    return QString();
}

std::unique_ptr<Dictionary> Dictionary::load(
    const QStringList &folders, QString *why, const std::atomic_bool *cancelled)
{
    auto fail = [why](const QString &reason) {
        if (why)
            *why = reason;
        return std::unique_ptr<Dictionary>();
    };
    const QString affix = findAffix(folders);
    if (affix.isEmpty())
        return fail(QStringLiteral("no Greek dictionary (el_GR.aff and el_GR.dic) in %1; install hunspell-el")
                        .arg(folders.join(u':')));
    const QString words = QFileInfo(affix).dir().filePath(WordsName);
    std::unique_ptr<Dictionary> dictionary(new Dictionary);
    dictionary->m_affix = affix;
    dictionary->m_encoding = affixEncoding(affix);
    const QString upper = dictionary->m_encoding.toUpper();
    dictionary->m_utf8 = upper == u"UTF-8" || upper == u"UTF8";
    if (!dictionary->m_utf8) {
        dictionary->m_toUnicode = singleByteTable(iconvName(dictionary->m_encoding));
        if (dictionary->m_toUnicode.isEmpty())
            return fail(QStringLiteral("the dictionary's encoding %1 is unknown to iconv")
                            .arg(dictionary->m_encoding));
        for (int b = 1; b < 256; ++b)
            if (!dictionary->m_toUnicode[b].isNull())
                dictionary->m_fromUnicode.insert(dictionary->m_toUnicode[b].unicode(), char(b));
    }
    if (cancelled && *cancelled)
        return fail(QStringLiteral("cancelled"));
    if (cancelled)
        dictionary->m_hunspell = loadStoppable(affix, words, *cancelled);
    if (!dictionary->m_hunspell)
        dictionary->m_hunspell = std::make_unique<Hunspell>(
            QFile::encodeName(affix).constData(), QFile::encodeName(words).constData());
    if (cancelled && *cancelled)
        return fail(QStringLiteral("cancelled"));
    // A dictionary that did not load knows no common word.
    if (!dictionary->spell(QStringLiteral("και")))
        return fail(QStringLiteral("the dictionary %1 could not be read").arg(affix));
    return dictionary;
}

bool Dictionary::encode(const QString &word, std::string &out) const
{
    if (m_utf8) {
        out = word.toStdString();
        return true;
    }
    out.clear();
    out.reserve(size_t(word.size()));
    for (const QChar c : word) {
        const auto found = m_fromUnicode.constFind(c.unicode());
        if (found == m_fromUnicode.constEnd())
            return false;
        out.push_back(*found);
    }
    return true;
}

QString Dictionary::decode(const std::string &word) const
{
    if (m_utf8)
        return QString::fromStdString(word);
    QString text;
    text.reserve(qsizetype(word.size()));
    for (const char b : word) {
        const QChar c = m_toUnicode[uchar(b)];
        if (!c.isNull())
            text.append(c);
    }
    return text;
}

bool Dictionary::spell(const QString &word) const
{
    std::string encoded;
    if (!m_hunspell || !encode(word, encoded))
        return false;
    return m_hunspell->spell(encoded);
}

QStringList Dictionary::suggest(const QString &word) const
{
    std::string encoded;
    if (!m_hunspell || !encode(word, encoded))
        return {};
    QStringList found;
    for (const std::string &s : m_hunspell->suggest(encoded))
        found.append(decode(s));
    return found;
}

void Dictionary::add(const QString &word)
{
    std::string encoded;
    if (m_hunspell && encode(word, encoded))
        m_hunspell->add(encoded);
}

} // namespace spelling
