#pragma once

#include "chotword.h"

#include <QString>

#include <memory>
#include <vector>

// The hot words of one text, in the order they were added: comments first, then index
// terms, as clsTexts builds them. A phrase may stand any number of times.
class colHotWords final
{
public:
    colHotWords();
    ~colHotWords();
    Q_DISABLE_COPY_MOVE(colHotWords)

    // Makes a new record of the values and adds it, under the key when the key is not
    // empty. Returns the stored record, which is not any record the caller filled.
    // A key that is already there raises error 457.
    CHotWord &Add(qint32 Last, qint32 First, const QString &ExactPhrase, const QString &Comment,
        const QString &Photo, qint32 HotwordType, qint32 IndexType, const QString &phrase,
        const QString &key = QString());

    // By position from 1 (error 9 outside 1..Count) or by key (error 5 for no such key).
    CHotWord &Item(int index) const;
    CHotWord &Item(const QString &key) const;
    qint32 Count() const { return qint32(m_items.size()); }
    void Remove(int index);
    void Remove(const QString &key);

    // Walks the members in order of insertion.
    class iterator
    {
    public:
        using Inner = std::vector<std::unique_ptr<CHotWord>>::const_iterator;
        explicit iterator(Inner it)
            : m_it(it)
        {
        }
        CHotWord &operator*() const { return **m_it; }
        CHotWord *operator->() const { return m_it->get(); }
        iterator &operator++()
        {
            ++m_it;
            return *this;
        }
        bool operator==(const iterator &other) const { return m_it == other.m_it; }
        bool operator!=(const iterator &other) const { return m_it != other.m_it; }

    private:
        Inner m_it;
    };
    iterator begin() const { return iterator(m_items.cbegin()); }
    iterator end() const { return iterator(m_items.cend()); }

private:
    int indexOfKey(const QString &key) const;

    std::vector<std::unique_ptr<CHotWord>> m_items;
    std::vector<QString> m_keys; // beside m_items; empty for a member added without a key
};
