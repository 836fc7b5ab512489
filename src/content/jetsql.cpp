#include "jetsql.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

namespace content {

namespace {

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

QString singleQuoted(const QString &text)
{
    QString out = text;
    out.replace(u'\'', QStringLiteral("''"));
    return u'\'' + out + u'\'';
}

QString likePattern(QString text)
{
    text.replace(u'*', u'%');
    text.replace(u'?', u'_');
    return text;
}

// #m/d/yyyy#, #yyyy-mm-dd#, each with an optional time; the month comes first, as it
// does in the engine's own literals whatever the locale.
bool dateLiteral(const QString &body, QString *iso)
{
    static const QRegularExpression us(QStringLiteral(
        R"(^\s*(\d{1,2})/(\d{1,2})/(\d{2,4})(?:\s+(\d{1,2}):(\d{2})(?::(\d{2}))?\s*([AaPp][Mm])?)?\s*$)"));
    static const QRegularExpression isoForm(
        QStringLiteral(R"(^\s*(\d{4})-(\d{1,2})-(\d{1,2})(?:[ T](\d{1,2}):(\d{2})(?::(\d{2}))?)?\s*$)"));
    int y = 0, m = 0, d = 0, hh = 0, mm = 0, ss = 0;
    bool hasTime = false;
    QRegularExpressionMatch match = us.match(body);
    if (match.hasMatch()) {
        m = match.captured(1).toInt();
        d = match.captured(2).toInt();
        y = match.captured(3).toInt();
        if (y < 100)
            y += y < 30 ? 2000 : 1900;
        if (match.hasCaptured(4)) {
            hasTime = true;
            hh = match.captured(4).toInt();
            mm = match.captured(5).toInt();
            ss = match.captured(6).toInt();
            const QString ampm = match.captured(7).toLower();
            if (ampm == u"pm" && hh < 12)
                hh += 12;
            else if (ampm == u"am" && hh == 12)
                hh = 0;
        }
    } else {
        match = isoForm.match(body);
        if (!match.hasMatch())
            return false;
        y = match.captured(1).toInt();
        m = match.captured(2).toInt();
        d = match.captured(3).toInt();
        if (match.hasCaptured(4)) {
            hasTime = true;
            hh = match.captured(4).toInt();
            mm = match.captured(5).toInt();
            ss = match.captured(6).toInt();
        }
    }
    const QDate date(y, m, d);
    const QTime time(hh, mm, ss);
    if (!date.isValid() || !time.isValid())
        return false;
    *iso = date.toString(u"yyyy-MM-dd");
    if (hasTime)
        *iso += u'T' + time.toString(u"HH:mm:ss");
    return true;
}

} // namespace

QString jetToSqlite(const QString &sql)
{
    QString out;
    out.reserve(sql.size() + 16);
    QString lastWord; // the last keyword or name seen outside strings, upper-cased
    const qsizetype n = sql.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = sql.at(i);
        if (c == u'\'') {
            // A single-quoted string as SQLite reads it: '' inside is one quote.
            qsizetype j = i + 1;
            QString body;
            while (j < n) {
                if (sql.at(j) == u'\'') {
                    if (j + 1 < n && sql.at(j + 1) == u'\'') {
                        body += u'\'';
                        j += 2;
                        continue;
                    }
                    break;
                }
                body += sql.at(j++);
            }
            if (j >= n) {
                // Unterminated: leave it for SQLite to report.
                out += sql.mid(i);
                break;
            }
            out += lastWord == u"LIKE" ? singleQuoted(likePattern(body)) : sql.mid(i, j + 1 - i);
            lastWord.clear();
            i = j + 1;
        } else if (c == u'"') {
            qsizetype j = i + 1;
            QString body;
            while (j < n) {
                if (sql.at(j) == u'"') {
                    if (j + 1 < n && sql.at(j + 1) == u'"') {
                        body += u'"';
                        j += 2;
                        continue;
                    }
                    break;
                }
                body += sql.at(j++);
            }
            if (j >= n) {
                out += sql.mid(i);
                break;
            }
            out += singleQuoted(lastWord == u"LIKE" ? likePattern(body) : body);
            lastWord.clear();
            i = j + 1;
        } else if (c == u'[') {
            const qsizetype j = sql.indexOf(u']', i + 1);
            if (j < 0) {
                out += sql.mid(i);
                break;
            }
            out += sql.mid(i, j + 1 - i);
            lastWord = sql.mid(i + 1, j - i - 1).toUpper();
            i = j + 1;
        } else if (c == u'#') {
            const qsizetype j = sql.indexOf(u'#', i + 1);
            QString iso;
            if (j > i && dateLiteral(sql.mid(i + 1, j - i - 1), &iso)) {
                out += u'\'' + iso + u'\'';
                i = j + 1;
            } else {
                out += c;
                ++i;
            }
            lastWord.clear();
        } else if (c == u'&') {
            out += QStringLiteral("||");
            lastWord.clear();
            ++i;
        } else if (isWordChar(c)) {
            qsizetype j = i;
            while (j < n && isWordChar(sql.at(j)))
                ++j;
            const QString word = sql.mid(i, j - i);
            const QString upper = word.toUpper();
            const bool qualified = i > 0 && sql.at(i - 1) == u'.';
            const bool qualifier = j < n && sql.at(j) == u'.';
            if (!qualified && !qualifier && upper == u"TRUE")
                out += QStringLiteral("-1");
            else if (!qualified && !qualifier && upper == u"FALSE")
                out += QStringLiteral("0");
            else if (!qualified && !qualifier && upper == u"DISTINCTROW")
                out += QStringLiteral("DISTINCT");
            else
                out += word;
            lastWord = upper;
            i = j;
        } else {
            out += c;
            if (!c.isSpace())
                lastWord.clear();
            ++i;
        }
    }
    return out;
}

} // namespace content
