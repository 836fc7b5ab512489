#pragma once

#include <QString>
#include <QtGlobal>

// One hot word of one open text: a comment (type 1) that opens the popup tip, or an
// index term (type 0) that opens the index. A plain record; the setters store without
// any check.
class CHotWord final
{
public:
    enum Type : qint32 { IndexTermType = 0, CommentType = 1 };

    qint32 HotwordType() const { return m_hotwordType; }
    void setHotwordType(qint32 value) { m_hotwordType = value; }

    // The index term as the index lists it; empty for a comment. Never searched for.
    const QString &phrase() const { return m_phrase; }
    void setPhrase(const QString &value) { m_phrase = value; }

    // The tab of the index the term belongs to; always 3 for a comment.
    qint32 IndexType() const { return m_indexType; }
    void setIndexType(qint32 value) { m_indexType = value; }

    // A comment's picture as a whole path, an index term's as a bare file name.
    const QString &Photo() const { return m_photo; }
    void setPhoto(const QString &value) { m_photo = value; }

    const QString &Comment() const { return m_comment; }
    void setComment(const QString &value) { m_comment = value; }

    // The words as they stand in the text; what is searched for.
    const QString &ExactPhrase() const { return m_exactPhrase; }
    void setExactPhrase(const QString &value) { m_exactPhrase = value; }

    // Place of the phrase's first character, from 0, and the place just behind it.
    // Both stay 0 for a phrase that was not found painted in the text.
    qint32 First() const { return m_first; }
    void setFirst(qint32 value) { m_first = value; }
    qint32 Last() const { return m_last; }
    void setLast(qint32 value) { m_last = value; }

private:
    qint32 m_hotwordType = 0;
    QString m_phrase;
    qint32 m_indexType = 0;
    QString m_photo;
    QString m_comment;
    QString m_exactPhrase;
    qint32 m_first = 0;
    qint32 m_last = 0;
};
