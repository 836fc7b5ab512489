#include "commands.h"

#include <clstexts.h>
#include <colhotwords.h>
#include <contentpath.h>
#include <database.h>
#include <hotwordlocator.h>
#include <hotwordtextmodel.h>
#include <phrasesearch.h>
#include <rtf.h>
#include <runtimeerror.h>

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QTextStream>

#include <memory>

namespace commands {

namespace {

QString errorText(const platform::RuntimeError &e)
{
    return QStringLiteral("%1 (%2)").arg(e.description()).arg(e.number());
}

QString jsonString(const QString &value)
{
    QString out;
    out.reserve(value.size() + 2);
    out += u'"';
    for (const QChar c : value) {
        switch (c.unicode()) {
        case u'"':
            out += QStringLiteral("\\\"");
            break;
        case u'\\':
            out += QStringLiteral("\\\\");
            break;
        case u'\n':
            out += QStringLiteral("\\n");
            break;
        case u'\r':
            out += QStringLiteral("\\r");
            break;
        case u'\t':
            out += QStringLiteral("\\t");
            break;
        default:
            if (c.unicode() < 0x20)
                out += QStringLiteral("\\u%1").arg(int(c.unicode()), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    out += u'"';
    return out;
}

QString dataFolderOf(const QString &databaseFile)
{
    return platform::parentFolderName(QFileInfo(databaseFile).absoluteFilePath());
}

// The text of a source file as the viewer's box reads it: RTF with its colours, or, for
// a file that holds no RTF, plain text in black (UTF-8, else the Greek code page).
richtext::PlainText readSourceText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw platform::RuntimeError(platform::errors::FileNotFound, QStringLiteral("Το αρχείο δεν βρέθηκε"));
    const QByteArray data = file.readAll();
    if (richtext::isRtf(data))
        return richtext::readPlainText(data);
    richtext::PlainText plain;
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    plain.text = utf8.decode(data);
    if (utf8.hasError()) {
        QStringDecoder greek("windows-1253");
        plain.text = greek.isValid() ? greek.decode(data) : QString::fromLatin1(data);
    }
    plain.text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    plain.text.replace(u'\r', u'\n');
    richtext::TextRun run;
    run.length = int(plain.text.size());
    plain.runs.push_back(run);
    return plain;
}

struct LocatedText
{
    std::unique_ptr<colHotWords> words;
    std::unique_ptr<PlainTextHotWordModel> model;
};

// What the text viewer does at load: the resource's file from "\piges\", its hot words,
// located in it.
LocatedText locateHotWords(
    content::Database &db, const QString &dataFolder, qint32 resourceID, const QString &textPath)
{
    LocatedText located;
    located.model = std::make_unique<PlainTextHotWordModel>(
        readSourceText(platform::contentPath(dataFolder, QStringLiteral("\\piges\\"), textPath)));
    located.words = clsTexts(db, dataFolder).HotWords(resourceID);
    hotwords::FillHotWords(*located.model, *located.words);
    return located;
}

bool parseId(const QString &text, qint32 &id)
{
    bool ok = false;
    id = text.toInt(&ok);
    return ok;
}

} // namespace

int hotwords(const QStringList &args)
{
    qint32 resourceID = 0;
    if (args.size() != 2 || !parseId(args.at(1), resourceID))
        return fail(QStringLiteral("usage: hotwords FILE RESOURCEID"));
    try {
        const auto db = content::Database::OpenDatabase(args.at(0));
        const QString dataFolder = dataFolderOf(args.at(0));
        auto rs = db->OpenRecordset(QStringLiteral("SELECT TextPath, Author, Book From Resources ")
                + QStringLiteral("WHERE ResourceID= ") + QString::number(resourceID),
            content::dbOpenSnapshot);
        if (rs->BOF() && rs->Eof())
            return fail(QStringLiteral("no resource %1").arg(resourceID));
        const QString textPath = rs->Fields(QStringLiteral("TextPath")).text();
        rs->Close();

        const LocatedText located = locateHotWords(*db, dataFolder, resourceID, textPath);
        QTextStream out(stdout);
        out.setEncoding(QStringConverter::Utf8);
        for (const CHotWord &word : *located.words) {
            out << "{\"type\":" << word.HotwordType() << ",\"phrase\":" << jsonString(word.phrase())
                << ",\"indexType\":" << word.IndexType() << ",\"photo\":" << jsonString(word.Photo())
                << ",\"comment\":" << jsonString(word.Comment())
                << ",\"exactPhrase\":" << jsonString(word.ExactPhrase()) << ",\"first\":" << word.First()
                << ",\"last\":" << word.Last() << "}\n";
        }
    } catch (const platform::RuntimeError &e) {
        return fail(errorText(e));
    }
    return 0;
}

namespace {

class Audit
{
public:
    Audit(content::Database &db, QString dataFolder, media::Engines &engines)
        : m_db(db)
        , m_dataFolder(std::move(dataFolder))
        , m_engines(engines)
        , m_out(stdout)
    {
        m_out.setEncoding(QStringConverter::Utf8);
    }

    int problems() const { return m_problems; }

    void resources()
    {
        auto rs = m_db.OpenRecordset(
            QStringLiteral(
                "SELECT ResourceID, ResTypeID, TextPath, PicturePath FROM Resources ORDER BY ResourceID"),
            content::dbOpenSnapshot);
        while (!rs->Eof()) {
            const qint32 id = rs->Fields(QStringLiteral("ResourceID")).Value().toInt();
            const qint32 type = rs->Fields(QStringLiteral("ResTypeID")).Value().toInt();
            const QString textPath = rs->Fields(QStringLiteral("TextPath")).text();
            const QString picturePath = rs->Fields(QStringLiteral("PicturePath")).text();
            const QString subject = QStringLiteral("resource %1").arg(id);
            switch (type) {
            case 2:
                if (needFile(subject, QStringLiteral("text"), QStringLiteral("\\piges\\"), textPath))
                    hotWordsOf(subject, id, textPath);
                break;
            case 6:
                needFile(
                    subject, QStringLiteral("picture"), QStringLiteral("\\Pictures\\"), picturePath, Shows);
                needFile(subject, QStringLiteral("legend"), QStringLiteral("\\Piges\\"), textPath);
                break;
            case 1:
            case 5:
                needFile(
                    subject, QStringLiteral("picture"), QStringLiteral("\\Pictures\\"), picturePath, Shows);
                break;
            default:
                break; // a kind without a viewer opens nothing
            }
            rs->MoveNext();
        }
        rs->Close();
    }

    void comments()
    {
        auto rs
            = m_db.OpenRecordset(QStringLiteral("SELECT CommentID, Picture FROM Comments ORDER BY CommentID"),
                content::dbOpenSnapshot);
        while (!rs->Eof()) {
            const QString subject
                = QStringLiteral("comment %1").arg(rs->Fields(QStringLiteral("CommentID")).text());
            mayNeedFile(subject, QStringLiteral("picture"), QStringLiteral("\\photos\\"),
                rs->Fields(QStringLiteral("Picture")).text(), Shows);
            rs->MoveNext();
        }
        rs->Close();
    }

    void indexTerms()
    {
        auto rs = m_db.OpenRecordset(
            QStringLiteral("SELECT EuretirioID, Picture, Sound, Video FROM Euretirio ORDER BY EuretirioID"),
            content::dbOpenSnapshot);
        while (!rs->Eof()) {
            const QString subject
                = QStringLiteral("term %1").arg(rs->Fields(QStringLiteral("EuretirioID")).text());
            mayNeedFile(subject, QStringLiteral("picture"), QStringLiteral("\\Photos\\"),
                rs->Fields(QStringLiteral("Picture")).text(), Shows);
            mayNeedFile(subject, QStringLiteral("sound"), QStringLiteral("\\Sounds\\"),
                rs->Fields(QStringLiteral("Sound")).text(), Plays);
            mayNeedFile(subject, QStringLiteral("video"), QStringLiteral("\\Videos\\"),
                rs->Fields(QStringLiteral("Video")).text(), Plays);
            rs->MoveNext();
        }
        rs->Close();
    }

private:
    void problem(const QString &line)
    {
        m_out << line << '\n';
        m_out.flush();
        ++m_problems;
    }

    // What a file must do besides being there: show as a picture, or play.
    enum Use { Exists, Shows, Plays };

    bool needFile(const QString &subject, const QString &what, const QString &folder, const QString &name,
        Use use = Exists)
    {
        if (name.isEmpty()) {
            problem(QStringLiteral("%1: no %2 file named").arg(subject, what));
            return false;
        }
        return mayNeedFile(subject, what, folder, name, use);
    }

    bool mayNeedFile(const QString &subject, const QString &what, const QString &folder, const QString &name,
        Use use = Exists)
    {
        if (name.isEmpty())
            return true;
        const QString path = platform::contentPath(m_dataFolder, folder, name);
        if (!platform::fileExists(path)) {
            problem(QStringLiteral("%1: %2 %3 missing").arg(subject, what, jsonString(name)));
            return false;
        }
        const QString why = use == Shows ? showProblem(path)
            : use == Plays               ? playProblem(m_engines, path)
                                         : QString();
        if (why.isEmpty())
            return true;
        problem(
            QStringLiteral("%1: %2 %3 %4: %5")
                .arg(subject, what, jsonString(name),
                    use == Shows ? QStringLiteral("does not show") : QStringLiteral("does not play"), why));
        return false;
    }

    void hotWordsOf(const QString &subject, qint32 id, const QString &textPath)
    {
        try {
            const LocatedText located = locateHotWords(m_db, m_dataFolder, id, textPath);
            const QString &folded = located.model->search().folded();
            for (const CHotWord &word : *located.words) {
                const QString &phrase = word.ExactPhrase();
                if (phrase.isEmpty()) {
                    problem(QStringLiteral("%1: hot word \"\" is empty").arg(subject));
                    continue;
                }
                // A record that was not found reads the selection the previous search
                // left, and may take a place that is not its phrase: only a place where
                // the phrase stands counts.
                const bool located = !(word.First() == 0 && word.Last() == 0)
                    && QStringView(folded).mid(word.First(), phrase.size()) == hotwords::foldCase(phrase);
                if (!located)
                    problem(QStringLiteral("%1: hot word %2 not located").arg(subject, jsonString(phrase)));
            }
        } catch (const platform::RuntimeError &e) {
            problem(QStringLiteral("%1: hot words unreadable: %2").arg(subject, errorText(e)));
        }
    }

    content::Database &m_db;
    QString m_dataFolder;
    media::Engines &m_engines;
    QTextStream m_out;
    int m_problems = 0;
};

} // namespace

int check(const QStringList &args, media::Engines &engines)
{
    if (args.size() != 1)
        return fail(QStringLiteral("usage: check FILE"));
    std::unique_ptr<content::Database> db;
    try {
        db = content::Database::OpenDatabase(args.at(0));
    } catch (const platform::RuntimeError &e) {
        return fail(errorText(e));
    }
    Audit audit(*db, dataFolderOf(args.at(0)), engines);
    try {
        audit.resources();
        audit.comments();
        audit.indexTerms();
    } catch (const platform::RuntimeError &e) {
        return fail(errorText(e));
    }
    return audit.problems() == 0 ? 0 : 3;
}

} // namespace commands
