#pragma once

#include "listicons.h"

#include <background.h>
#include <fulltextindex.h>

#include <QWidget>

#include <atomic>
#include <memory>

class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QTimer;
class Session;

// "Αναζήτηση στα κείμενα": one field where the pupil types words, and the sources whose
// texts and catalogue hold them, listed as the pupil types, each with its icon, its title
// and a line of its text with the words found in bold. A double click or Enter opens the
// source in its own viewer, a text with the words found marked. The index of the words is
// built in the background the first time, with its progress shown. It is the session's
// text search window; its going, or the session's end, stops the build.
class frmFullTextSearch final : public QWidget
{
    Q_OBJECT

public:
    explicit frmFullTextSearch(Session &session, QWidget *parent = nullptr);
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
    void tmrProgress_Timer();
    void lstResults_Activated();

    // The design, in twips.
    static constexpr int FormWidth = 8400;
    static constexpr int FormHeight = 6600;
    // The pause after the last key before the search runs, in milliseconds.
    static constexpr int SearchDelay = 250;
    // How often the progress bar follows the build, in milliseconds.
    static constexpr int ProgressInterval = 100;

signals:
    // The list shows the results of the words typed (also when there are none).
    void searched();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    // `rebuild`: the index on disk is damaged, and is built again even if current.
    void StartIndexBuild(bool rebuild = false);
    void StopIndexBuild();
    void IndexReady(const std::shared_ptr<fulltext::Index> &index, const QString &error);
    void Search();
    void OpenResult(const fulltext::Result &result);
    void layOut();

    Session &m_session;
    QTimer *const tmrSearch;
    QTimer *const tmrProgress;
    ListIcons m_icons;
    std::shared_ptr<fulltext::Index> m_index;
    fulltext::TextQuery m_query;
    QList<fulltext::Result> m_results;
    mutable QHash<int, QString> m_contexts;
    // The build under way: its flag, and the sources it has done, which the progress bar
    // reads on its timer.
    Background::CancelFlag m_build;
    std::shared_ptr<std::atomic<qint64>> m_built;
};
