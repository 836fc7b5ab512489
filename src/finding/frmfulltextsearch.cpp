#include "frmfulltextsearch.h"

#include "fulltextresultdelegate.h"

#include <contentpath.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmtextresource.h>
#include <modglobal.h>
#include <opensource.h>
#include <programbitmaps.h>
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
#include <QThread>
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

QIcon iconFor(const QString &key)
{
    static QHash<QString, QIcon> icons;
    auto it = icons.find(key);
    if (it == icons.end())
        it = icons.insert(key, resources::exists(key) ? resources::LoadResIcon(key) : QIcon());
    return *it;
}

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

QPointer<frmFullTextSearch> frmFullTextSearch::s_instance;

frmFullTextSearch *frmFullTextSearch::instance(bool create)
{
    if (!s_instance && create) {
        s_instance = new frmFullTextSearch;
        s_instance->Load();
    }
    return s_instance;
}

frmFullTextSearch::frmFullTextSearch(QWidget *parent)
    : QWidget(parent)
    , lblWords(new QLabel(QStringLiteral("Λέξεις:"), this))
    , txtWords(new QLineEdit(this))
    , prgIndex(new QProgressBar(this))
    , lblCount(new QLabel(this))
    , lstResults(new QListWidget(this))
    , tmrSearch(new QTimer(this))
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
    layOut();

    connect(txtWords, &QLineEdit::textChanged, this,
        [this] { platform::guarded([this] { txtWords_Change(); }); });
    connect(tmrSearch, &QTimer::timeout, this, [this] { platform::guarded([this] { tmrSearch_Timer(); }); });
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
    // The build stops at its next source; the thread must end before its window does.
    if (m_cancel)
        *m_cancel = true;
    if (m_builder) {
        m_builder->wait();
        delete m_builder;
    }
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
    modGlobal::CenterAndShow(this);
    txtWords->setFocus();
    StartIndexBuild();
}

void frmFullTextSearch::StartIndexBuild(bool rebuild)
{
    const QString contentFile = modGlobal::gDatabasePath;
    if (contentFile.isEmpty() || !modGlobal::gDatabase)
        return;
    // The rows are read here, on the database the windows share; the files, which take
    // the time, are read by the builder, and the index is read into memory there too.
    const bool current = !rebuild && fulltext::isCurrent(contentFile);
    QList<fulltext::Source> sources;
    QString dataFolder;
    if (!current) {
        sources = fulltext::readSources(*modGlobal::gDatabase);
        dataFolder = modGlobal::gDataFolder.isEmpty() ? QFileInfo(contentFile).absolutePath()
                                                      : modGlobal::gDataFolder;
        prgIndex->setRange(0, int(std::max<qsizetype>(1, sources.size())));
        prgIndex->setValue(0);
        prgIndex->setVisible(true);
        lblCount->setVisible(false);
    }
    if (m_builder) {
        // The one before found the index damaged, and has ended or is about to.
        m_builder->wait();
        delete m_builder;
    }
    m_cancel = std::make_shared<std::atomic_bool>(false);
    QPointer<frmFullTextSearch> self(this);
    m_builder = QThread::create([self, contentFile, current, sources, dataFolder, cancel = m_cancel] {
        std::shared_ptr<fulltext::Index> index;
        QString error;
        try {
            // Where the cache cannot be written, the index is built in memory: the search
            // works all the same.
            index = current
                ? fulltext::openIntact(fulltext::cacheFileFor(contentFile))
                : fulltext::buildAndOpen(contentFile, sources, dataFolder, [&](qint64 done, qint64) {
                      if (*cancel)
                          return false;
                      if (done % 64 == 0)
                          QMetaObject::invokeMethod(
                              self, [self, done] { self->prgIndex->setValue(int(done)); },
                              Qt::QueuedConnection);
                      return true;
                  });
            if (!index) {
                // Damaged: built again from the rows, which are read on the interface thread.
                if (!*cancel)
                    QMetaObject::invokeMethod(
                        self, [self] { platform::guarded([self] { self->StartIndexBuild(true); }); },
                        Qt::QueuedConnection);
                return;
            }
        } catch (const platform::RuntimeError &e) {
            error = e.description();
        }
        if (!*cancel)
            QMetaObject::invokeMethod(
                self, [self, index, error] { self->IndexReady(index, error); }, Qt::QueuedConnection);
    });
    m_builder->start(QThread::LowPriority);
}

void frmFullTextSearch::IndexReady(const std::shared_ptr<fulltext::Index> &index, const QString &error)
{
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
        auto *item = new ResultItem(iconFor(iconKey(r)), r.title, [this, i] { return contextHtml(int(i)); });
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
    SourceViewer *viewer = openSource(*Session::current(), result.resourceID);
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
    if (event->isAccepted() && s_instance == this)
        s_instance = nullptr;
}
