#include "frmfulltextsearch.h"

#include "fulltextresultdelegate.h"

#include <contentpath.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmtextresource.h>
#include <opensource.h>
#include <resourcesearch.h>
#include <richtextbox.h>
#include <runtimeerror.h>
#include <session.h>
#include <sourceviewer.h>
#include <textquery.h>
#include <twips.h>

#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QShortcut>
#include <QTextDocumentFragment>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace {

constexpr int ResultRole = Qt::UserRole + 1;

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        platform::pixelsFromTwipsX(width), platform::pixelsFromTwipsY(height));
}

// What the build gives back: the index open, or the error to show, or neither when the
// index on disk was found damaged and is to be built again.
struct IndexOutcome
{
    std::shared_ptr<fulltext::Index> index;
    QString error;
    bool damaged = false;
};

// A result as a screen reader hears it: its title, then the line of text around the words
// found, which the list only draws. The line is asked of the window when it is first read.
class ResultItem final : public QListWidgetItem
{
public:
    ResultItem(const QIcon &icon, const QString &title, std::function<QString()> context)
        : QListWidgetItem(icon, title)
        , m_context(std::move(context))
    {
    }

    QVariant data(int role) const override
    {
        if (role == Qt::AccessibleDescriptionRole)
            return QTextDocumentFragment::fromHtml(m_context()).toPlainText();
        return QListWidgetItem::data(role);
    }

private:
    std::function<QString()> m_context;
};

QString countText(qsizetype count)
{
    if (count == 0)
        return QStringLiteral("Δεν βρέθηκε καμία πηγή.");
    if (count == 1)
        return QStringLiteral("Βρέθηκε 1 πηγή.");
    return QStringLiteral("Βρέθηκαν %1 πηγές.").arg(count);
}

} // namespace

frmFullTextSearch::frmFullTextSearch(Session &session, QWidget *parent)
    : QWidget(parent)
    , lblWords(new QLabel(QStringLiteral("Λέξεις:"), this))
    , txtWords(new QLineEdit(this))
    , prgIndex(new QProgressBar(this))
    , lblCount(new QLabel(this))
    , lstResults(new QListWidget(this))
    , m_session(session)
    , tmrSearch(new QTimer(this))
    , tmrProgress(new QTimer(this))
{
    setObjectName(QStringLiteral("frmFullTextSearch"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Αναζήτηση στα κείμενα"));
    const std::pair<QWidget *, const char *> names[] = {{lblWords, "lblWords"}, {txtWords, "txtWords"},
        {prgIndex, "prgIndex"}, {lblCount, "lblCount"}, {lstResults, "lstResults"}};
    for (const auto &[widget, name] : names)
        widget->setObjectName(QString::fromLatin1(name));
    platform::useDesignedColours(this);
    lblWords->setBuddy(txtWords);
    lstResults->setAccessibleName(QStringLiteral("Πηγές που βρέθηκαν"));
    txtWords->setPlaceholderText(QStringLiteral("Γράψε μια λέξη ή \"μια φράση\""));
    txtWords->setClearButtonEnabled(true);
    prgIndex->setFormat(QStringLiteral("Ετοιμάζεται το ευρετήριο των κειμένων… %p%"));
    prgIndex->setVisible(false);
    lstResults->setSelectionMode(QAbstractItemView::SingleSelection);
    lstResults->setUniformItemSizes(true);
    lstResults->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lstResults->setItemDelegate(
        new FullTextResultDelegate([this](int row) { return contextHtml(row); }, lstResults));
    tmrSearch->setSingleShot(true);
    tmrSearch->setInterval(SearchDelay);
    tmrProgress->setInterval(ProgressInterval);
    layOut();

    connect(txtWords, &QLineEdit::textChanged, this,
        [this] { platform::guarded([this] { txtWords_Change(); }); });
    connect(tmrSearch, &QTimer::timeout, this, [this] { platform::guarded([this] { tmrSearch_Timer(); }); });
    connect(
        tmrProgress, &QTimer::timeout, this, [this] { platform::guarded([this] { tmrProgress_Timer(); }); });
    // Enter and a double click both activate an item.
    connect(lstResults, &QListWidget::itemActivated, this,
        [this] { platform::guarded([this] { lstResults_Activated(); }); });
    // Up and Down in the field move through the results, so the words stay in reach.
    for (const int step : {1, -1}) {
        auto *move = new QShortcut(QKeySequence(step > 0 ? Qt::Key_Down : Qt::Key_Up), txtWords, nullptr,
            nullptr, Qt::WidgetShortcut);
        connect(move, &QShortcut::activated, this, [this, step] {
            if (lstResults->count() > 0)
                lstResults->setCurrentRow(
                    std::clamp(lstResults->currentRow() + step, 0, lstResults->count() - 1));
        });
    }
    connect(txtWords, &QLineEdit::returnPressed, this, [this] {
        platform::guarded([this] {
            if (lstResults->count() == 0)
                return;
            if (!lstResults->currentItem())
                lstResults->setCurrentRow(0);
            lstResults_Activated();
        });
    });
}

frmFullTextSearch::~frmFullTextSearch()
{
    // The build stops at its next source, and its result goes nowhere.
    StopIndexBuild();
}

void frmFullTextSearch::layOut()
{
    resize(platform::pixelsFromTwipsX(FormWidth), platform::pixelsFromTwipsY(FormHeight));
    lblWords->setGeometry(twipsRect(120, 165, 900, 300));
    txtWords->setGeometry(twipsRect(1020, 120, 7260, 375));
    prgIndex->setGeometry(twipsRect(120, 600, 8160, 300));
    lblCount->setGeometry(twipsRect(120, 600, 8160, 300));
    lstResults->setGeometry(twipsRect(120, 1000, 8160, 5480));
}

void frmFullTextSearch::Load()
{
    CenterAndShow(m_session, this);
    txtWords->setFocus();
    StartIndexBuild();
}

void frmFullTextSearch::StartIndexBuild(bool rebuild)
{
    const Session::Content &content = m_session.content();
    const QString contentFile = content.databasePath;
    if (contentFile.isEmpty() || !content.database)
        return;
    // The rows are read here, on the database the windows share; the files, which take
    // the time, are read by the builder, and the index is read into memory there too.
    const bool current = !rebuild && fulltext::isCurrent(contentFile);
    QList<fulltext::Source> sources;
    QString dataFolder;
    if (!current) {
        sources = fulltext::readSources(*content.database);
        dataFolder
            = content.dataFolder.isEmpty() ? QFileInfo(contentFile).absolutePath() : content.dataFolder;
        prgIndex->setRange(0, int(std::max<qsizetype>(1, sources.size())));
        prgIndex->setValue(0);
        prgIndex->setVisible(true);
        lblCount->setVisible(false);
    }
    StopIndexBuild();
    auto built = std::make_shared<std::atomic<qint64>>(0);
    m_built = built;
    if (!current)
        tmrProgress->start();
    m_build = m_session.background().run<IndexOutcome>(
        this,
        [contentFile, current, sources, dataFolder, built](const std::atomic_bool &cancelled) {
            IndexOutcome outcome;
            try {
                // Where the cache cannot be written, the index is built in memory: the
                // search works all the same.
                outcome.index = current
                    ? fulltext::openIntact(fulltext::cacheFileFor(contentFile))
                    : fulltext::buildAndOpen(contentFile, sources, dataFolder, [&](qint64 done, qint64) {
                          *built = done;
                          return !cancelled;
                      });
                outcome.damaged = !outcome.index;
            } catch (const platform::RuntimeError &e) {
                outcome.error = e.description();
            }
            return outcome;
        },
        [this](IndexOutcome outcome) {
            platform::guarded([&] {
                // Damaged: built again from the rows, which are read on the interface thread.
                if (outcome.damaged)
                    StartIndexBuild(true);
                else
                    IndexReady(outcome.index, outcome.error);
            });
        });
}

void frmFullTextSearch::StopIndexBuild()
{
    Background::cancel(m_build);
    m_build.reset();
    tmrProgress->stop();
}

void frmFullTextSearch::tmrProgress_Timer()
{
    if (m_built)
        prgIndex->setValue(int(m_built->load()));
}

void frmFullTextSearch::IndexReady(const std::shared_ptr<fulltext::Index> &index, const QString &error)
{
    m_build.reset();
    tmrProgress->stop();
    prgIndex->setVisible(false);
    lblCount->setVisible(true);
    if (!error.isEmpty()) {
        lblCount->setText(error);
        return;
    }
    m_index = index;
    if (!txtWords->text().isEmpty())
        Search();
}

void frmFullTextSearch::txtWords_Change()
{
    tmrSearch->start();
}

void frmFullTextSearch::tmrSearch_Timer()
{
    if (m_index)
        Search();
}

void frmFullTextSearch::Search()
{
    m_query = fulltext::parseQuery(txtWords->text());
    m_results = m_index->search(m_query);
    m_contexts.clear();
    lstResults->clear();
    for (qsizetype i = 0; i < m_results.size(); ++i) {
        const fulltext::Result &r = m_results.at(i);
        auto *item
            = new ResultItem(m_icons.icon(iconKey(r)), r.title, [this, i] { return contextHtml(int(i)); });
        item->setData(ResultRole, int(i));
        item->setToolTip(r.title);
        lstResults->addItem(item);
    }
    lblCount->setText(m_query.isEmpty() ? QString() : countText(m_results.size()));
    if (lstResults->count() > 0)
        lstResults->setCurrentRow(0);
    emit searched();
}

QString frmFullTextSearch::contextHtml(int row) const
{
    if (!m_index || row < 0 || row >= m_results.size())
        return QString();
    auto it = m_contexts.constFind(row);
    if (it != m_contexts.cend())
        return *it;
    const fulltext::ContextLine line = m_index->context(m_results.at(row), m_query);
    QString html;
    qsizetype at = 0;
    for (const fulltext::Hit &hit : line.hits) {
        html += line.text.mid(at, hit.start - at).toHtmlEscaped();
        html += QStringLiteral("<b>") + line.text.mid(hit.start, hit.length).toHtmlEscaped()
            + QStringLiteral("</b>");
        at = hit.start + hit.length;
    }
    html += line.text.mid(at).toHtmlEscaped();
    m_contexts.insert(row, html);
    return html;
}

QString frmFullTextSearch::iconKey(const fulltext::Result &result)
{
    switch (result.resTypeID) {
    case 2:
        return result.book == finding::InscriptionBook ? QStringLiteral("epigrafi")
                                                       : QStringLiteral("keimeno");
    case 1:
    case 6:
        return QStringLiteral("agio");
    case 5:
        return QStringLiteral("xartis");
    default:
        return QString();
    }
}

void frmFullTextSearch::lstResults_Activated()
{
    const QListWidgetItem *item = lstResults->currentItem();
    if (!item)
        return;
    const int row = item->data(ResultRole).toInt();
    if (row < 0 || row >= m_results.size())
        return;
    OpenResult(m_results.at(row));
}

void frmFullTextSearch::OpenResult(const fulltext::Result &result)
{
    SourceViewer *viewer = openSource(m_session, result.resourceID);
    if (auto *text = qobject_cast<frmTextResource *>(viewer)) {
        QList<std::pair<int, int>> places;
        for (const fulltext::Hit &hit : fulltext::findHits(text->rtbTextResource->Text(), m_query))
            places.append({int(hit.start), int(hit.length)});
        text->ShowFoundWords(places);
    }
}

void frmFullTextSearch::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    if (!event->isAccepted())
        return;
    // A window that goes builds nothing more.
    StopIndexBuild();
    if (m_session.window(Session::Window::FullTextSearch, false) == this)
        m_session.setWindow(Session::Window::FullTextSearch, nullptr);
}
