#include "colhotwords.h"

#include "phrasesearch.h"

#include <runtimeerror.h>

namespace {

constexpr int InvalidProcedureCall = 5;
constexpr int KeyAlreadyAssociated = 457;

[[noreturn]] void badIndex()
{
    throw platform::RuntimeError(
        platform::errors::SubscriptOutOfRange, QStringLiteral("Δείκτης εκτός περιοχής"));
}

[[noreturn]] void badKey()
{
    throw platform::RuntimeError(
        InvalidProcedureCall, QStringLiteral("Μη έγκυρη κλήση διαδικασίας ή όρισμα"));
}

} // namespace

colHotWords::colHotWords() = default;
colHotWords::~colHotWords() = default;

CHotWord &colHotWords::Add(qint32 Last, qint32 First, const QString &ExactPhrase, const QString &Comment,
    const QString &Photo, qint32 HotwordType, qint32 IndexType, const QString &phrase, const QString &key)
{
    if (!key.isEmpty() && indexOfKey(key) >= 0)
        throw platform::RuntimeError(KeyAlreadyAssociated,
            QStringLiteral("Αυτό το κλειδί έχει ήδη συσχετιστεί με ένα στοιχείο αυτής της συλλογής"));
    auto word = std::make_unique<CHotWord>();
    word->setLast(Last);
    word->setFirst(First);
    word->setExactPhrase(ExactPhrase);
    word->setComment(Comment);
    word->setPhoto(Photo);
    word->setHotwordType(HotwordType);
    word->setIndexType(IndexType);
    word->setPhrase(phrase);
    m_items.push_back(std::move(word));
    m_keys.push_back(key);
    return *m_items.back();
}

CHotWord &colHotWords::Item(int index) const
{
    if (index < 1 || index > Count())
        badIndex();
    return *m_items[std::size_t(index - 1)];
}

CHotWord &colHotWords::Item(const QString &key) const
{
    const int at = indexOfKey(key);
    if (at < 0)
        badKey();
    return *m_items[std::size_t(at)];
}

void colHotWords::Remove(int index)
{
    if (index < 1 || index > Count())
        badIndex();
    m_items.erase(m_items.begin() + (index - 1));
    m_keys.erase(m_keys.begin() + (index - 1));
}

void colHotWords::Remove(const QString &key)
{
    const int at = indexOfKey(key);
    if (at < 0)
        badKey();
    m_items.erase(m_items.begin() + at);
    m_keys.erase(m_keys.begin() + at);
}

int colHotWords::indexOfKey(const QString &key) const
{
    // Keys compare as text, without regard to case.
    if (key.isEmpty())
        return -1;
    const QString folded = hotwords::foldCase(key);
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        if (!m_keys[i].isEmpty() && hotwords::foldCase(m_keys[i]) == folded)
            return int(i);
    }
    return -1;
}
