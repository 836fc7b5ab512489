#pragma once

#include <fulltextindex.h>

#include <QPointer>
#include <QWidget>

#include <atomic>
#include <memory>

class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QThread;
class QTimer;

// "Αναζήτηση στα κείμενα": one field where the pupil types words, and the sources whose
// texts and catalogue hold them, listed as the pupil types, each with its icon, its title
// and a line of its text with the words found in bold. A double click or Enter opens the
// source in its own viewer, a text with the words found marked. The index of the words is
// built in the background the first time, with its progress shown. One instance serves
// the program.
class frmFullTextSearch final : public QWidget
{
    Q_OBJECT

public:
    // The single instance; `create` makes (and loads) it when there is none.
    static frmFullTextSearch *instance(bool create = true);
    ~frmFullTextSearch() override;
    Q_DISABLE_COPY_MOVE(frmFullTextSearch)

    // Controls.
    QLabel *const lblWords; // "Λέξεις:"
    QLineEdit *const txtWords;
    QProgressBar *const prgIndex; // seen while the index is built
    QLabel *const lblCount; // how many sources were found
    QListWidget *const lstResults;

    // Centres the window in the shell and opens the index of the content in the
    // background, building it first when it is not current.
    void Load();

    // True once the index is open and answers.
    bool indexReady() const { return m_index != nullptr; }
    // The results of the last search, in the list's order.
    const QList<fulltext::Result> &results() const { return m_results; }
    // The context line of a result, as the list shows it (HTML, words found in bold).
    QString contextHtml(int row) const;
    // The icon key of a result, as the resource search chooses it.
    static QString iconKey(const fulltext::Result &result);

    // Event handlers.
    void txtWords_Change();
    void tmrSearch_Timer();
    void lstResults_Activated();

    // The design, in twips.
    static constexpr int FormWidth = 8400;
    static constexpr int FormHeight = 6600;
    // The pause after the last key before the search runs, in milliseconds.
    static constexpr int SearchDelay = 250;

signals:
    // The list shows the results of the words typed (also when there are none).
    void searched();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    explicit frmFullTextSearch(QWidget *parent = nullptr);

    // `rebuild`: the index on disk is damaged, and is built again even if current.
    void StartIndexBuild(bool rebuild = false);
    void IndexReady(const std::shared_ptr<fulltext::Index> &index, const QString &error);
    void Search();
    void OpenResult(const fulltext::Result &result);
    void layOut();

    static QPointer<frmFullTextSearch> s_instance;

    QTimer *const tmrSearch;
    std::shared_ptr<fulltext::Index> m_index;
    fulltext::TextQuery m_query;
    QList<fulltext::Result> m_results;
    mutable QHash<int, QString> m_contexts;
    QThread *m_builder = nullptr;
    std::shared_ptr<std::atomic_bool> m_cancel;
};
