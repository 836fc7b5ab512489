#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

class Hunspell;

namespace spelling {

// Hunspell's Greek dictionary (Debian's hunspell-el: el_GR.aff and el_GR.dic), with the
// words turned into the dictionary's own encoding and back. Not safe to share between
// threads: one thread at a time uses it (it is loaded on a worker, then used by the
// interface thread only).
class Dictionary final
{
public:
    ~Dictionary();
    Q_DISABLE_COPY_MOVE(Dictionary)

    // The folders looked in for el_GR.aff and el_GR.dic, in order.
    static QStringList defaultFolders();
    // The .aff file of the first folder that holds both files; empty when none does.
    static QString findAffix(const QStringList &folders);

    // Loads the dictionary found in `folders`; null when there is none, or it cannot be
    // read (`why` says which), or `cancelled` rose while it loaded.
    static std::unique_ptr<Dictionary> load(
        const QStringList &folders, QString *why = nullptr, const std::atomic_bool *cancelled = nullptr);

    // Whether the dictionary takes the word as it is written. A word with a letter its
    // encoding lacks (polytonic Greek in a monotonic dictionary) is not known.
    bool spell(const QString &word) const;
    // Hunspell's own suggestions, slower than ours and meant for lower-case words.
    QStringList suggest(const QString &word) const;
    // Adds a word for as long as this dictionary lives.
    void add(const QString &word);

    // Where it was loaded from, and the encoding its .aff file declares.
    QString affixPath() const { return m_affix; }
    QString encoding() const { return m_encoding; }

private:
    Dictionary() = default;
    bool encode(const QString &word, std::string &out) const;
    QString decode(const std::string &word) const;

    std::unique_ptr<Hunspell> m_hunspell;
    QString m_affix;
    QString m_encoding;
    bool m_utf8 = false;
    // A single-byte encoding's letters, read from iconv once at load.
    QString m_toUnicode;
    QHash<char16_t, char> m_fromUnicode;
};

} // namespace spelling
