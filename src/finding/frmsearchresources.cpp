#include "frmsearchresources.h"

#include <contentpath.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <opensource.h>
#include <session.h>
#include <sourceviewer.h>
#include <twips.h>

#include <QAbstractItemView>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QTreeWidget>

namespace {

constexpr int TagRole = Qt::UserRole;
constexpr int GhostedRole = Qt::UserRole + 1;
constexpr int IconKeyRole = Qt::UserRole + 2;
constexpr int IconRole = Qt::UserRole + 3; // the icon shown when the item is not ghosted

QColor rgb(int r, int g, int b)
{
    return QColor(r, g, b);
}

void setBackColor(QWidget *w, const QColor &color)
{
    QPalette palette = w->palette();
    palette.setColor(QPalette::Window, color);
    w->setPalette(palette);
    w->setAutoFillBackground(true);
}

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        platform::pixelsFromTwipsX(width), platform::pixelsFromTwipsY(height));
}

} // namespace

frmSearchResources::frmSearchResources(Session &session, QWidget *parent)
    : QWidget(parent)
    , Frame1(new QFrame(this))
    , Label1(new QLabel(QStringLiteral("Τύπος πηγής:"), Frame1))
    , Label2(new QLabel(QStringLiteral("Συγγραφέας:"), Frame1))
    , Label3(new QLabel(QStringLiteral("Μουσείο:"), Frame1))
    , Label4(new QLabel(QStringLiteral("Λέξη κλειδί:"), Frame1))
    , Label5(new QLabel(QStringLiteral("Χρόνος:"), Frame1))
    , Label6(new QLabel(QStringLiteral("Τόπος:"), Frame1))
    , cmbResType(new QComboBox(Frame1))
    , cmbAuthor(new QComboBox(Frame1))
    , cmbMuseum(new QComboBox(Frame1))
    , cmbKeyWord(new QComboBox(Frame1))
    , cmbTime(new QComboBox(Frame1))
    , cmbPlace(new QComboBox(Frame1))
    , lvwResources(new QTreeWidget(this))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmSearchResources"));
    platform::useDesignedColours(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Αναζήτηση"));
    const std::pair<QWidget *, const char *> names[]
        = {{Frame1, "Frame1"}, {Label1, "Label1"}, {Label2, "Label2"}, {Label3, "Label3"}, {Label4, "Label4"},
            {Label5, "Label5"}, {Label6, "Label6"}, {cmbResType, "cmbResType"}, {cmbAuthor, "cmbAuthor"},
            {cmbMuseum, "cmbMuseum"}, {cmbKeyWord, "cmbKeyWord"}, {cmbTime, "cmbTime"},
            {cmbPlace, "cmbPlace"}, {lvwResources, "lvwResources"}};
    for (const auto &[widget, name] : names)
        widget->setObjectName(QString::fromLatin1(name));

    Frame1->setFrameShape(QFrame::Box);
    for (QComboBox *combo : {cmbResType, cmbAuthor, cmbMuseum, cmbKeyWord, cmbTime, cmbPlace})
        combo->setMaxVisibleItems(16);
    // Screen readers name each list by the label beside it.
    const std::pair<QLabel *, QComboBox *> labelled[] = {{Label1, cmbResType}, {Label2, cmbAuthor},
        {Label3, cmbMuseum}, {Label4, cmbKeyWord}, {Label5, cmbTime}, {Label6, cmbPlace}};
    for (const auto &[label, combo] : labelled) {
        label->setBuddy(combo);
        const QString name = label->text().chopped(1);
        combo->setAccessibleName(name);
        combo->view()->setAccessibleName(name);
    }
    lvwResources->setAccessibleName(QStringLiteral("Πηγές"));
    lvwResources->setColumnCount(1);
    lvwResources->setHeaderHidden(true);
    lvwResources->setRootIsDecorated(false);
    lvwResources->setUniformRowHeights(true);
    lvwResources->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwResources->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lvwResources->header()->setStretchLastSection(false);
    lvwResources->setIconSize(QSize(16, 16));
    layOut();

    // A pick in a box, by the user or by the filling, is its click.
    const auto onClick = [this](QComboBox *combo, void (frmSearchResources::*handler)()) {
        connect(combo, &QComboBox::currentIndexChanged, this,
            [this, handler] { platform::guarded([&] { (this->*handler)(); }); });
    };
    onClick(cmbResType, &frmSearchResources::cmbResType_Click);
    onClick(cmbAuthor, &frmSearchResources::cmbAuthor_Click);
    onClick(cmbMuseum, &frmSearchResources::cmbMuseum_Click);
    onClick(cmbKeyWord, &frmSearchResources::cmbKeyWord_Click);
    onClick(cmbTime, &frmSearchResources::cmbTime_Click);
    onClick(cmbPlace, &frmSearchResources::cmbPlace_Click);
    connect(lvwResources, &QTreeWidget::itemDoubleClicked, this,
        [this] { platform::guarded([this] { lvwResources_DblClick(); }); });
    // Enter on a found source opens it, as a double click does.
    for (const QKeySequence &keys : {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)}) {
        auto *enter = new QShortcut(keys, lvwResources, nullptr, nullptr, Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, this, [this] {
            if (lvwResources->currentItem())
                platform::guarded([this] { lvwResources_DblClick(); });
        });
    }
}

frmSearchResources::~frmSearchResources() = default;

void frmSearchResources::layOut()
{
    // Two rows of three boxes in the frame, each under its label; the list below.
    resize(platform::pixelsFromTwipsX(FormWidth), platform::pixelsFromTwipsY(FormHeight));
    Frame1->setGeometry(twipsRect(120, 120, 9360, 1620));
    const std::pair<QLabel *, QComboBox *> cells[] = {{Label1, cmbResType}, {Label2, cmbAuthor},
        {Label3, cmbMuseum}, {Label4, cmbKeyWord}, {Label5, cmbTime}, {Label6, cmbPlace}};
    for (int i = 0; i < 6; ++i) {
        const int left = 120 + (i % 3) * 3080;
        const int top = 90 + (i / 3) * 750;
        cells[i].first->setGeometry(twipsRect(left, top, 2960, 270));
        cells[i].second->setGeometry(twipsRect(left, top + 285, 2960, 345));
    }
    lvwResources->setGeometry(twipsRect(120, 1860, 9360, 4920));
}

void frmSearchResources::Load()
{
    m_criteria = finding::SearchCriteria();
    m_searched = m_criteria;
    // The search reads the content as it stands on disk now.
    Session::Content &content = m_session.content();
    if (!content.databasePath.isEmpty())
        content.database = content::Database::OpenDatabase(content.databasePath);
    if (content.database)
        finding::PrepareSearchOrder(*content.database);
    m_filled = false;
    FillTableCombo(cmbPlace, QStringLiteral("Places"), QStringLiteral("Place"), QStringLiteral("PlaceID"));
    FillTableCombo(cmbTime, QStringLiteral("Chronologicals"), QStringLiteral("Chronological"),
        QStringLiteral("ChronologicalID"));
    FillTableCombo(
        cmbKeyWord, QStringLiteral("Keywords"), QStringLiteral("Keyword"), QStringLiteral("KeywordID"));
    FillTableCombo(
        cmbResType, QStringLiteral("ResTypes"), QStringLiteral("ResType"), QStringLiteral("ResTypeID"));
    FillTextCombo(cmbAuthor, QStringLiteral("SELECT DISTINCT Author From Resources ORDER BY Author"));
    FillTextCombo(cmbMuseum, QStringLiteral("SELECT DISTINCT Museum From Resources ORDER BY Museum"));
    m_filled = true;
    SearchResources();
    setBackColor(this, rgb(243, 195, 112));
    setBackColor(Frame1, rgb(254, 232, 176));
    CenterAndShow(m_session, this);
}

void frmSearchResources::FillTableCombo(
    QComboBox *combo, const QString &table, const QString &nameColumn, const QString &idColumn)
{
    auto rs = m_session.database().OpenRecordset(table, content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() >= 1) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            combo->addItem(rs->Fields(nameColumn).text(), rs->Fields(idColumn).Value().toInt());
            rs->MoveNext();
        }
    }
    rs->Close();
    AddAllEntry(combo);
}

void frmSearchResources::FillTextCombo(QComboBox *combo, const QString &sql)
{
    auto rs = m_session.database().OpenRecordset(sql, content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() >= 1) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            const QString text = rs->value(0).toString();
            if (!text.isEmpty())
                combo->addItem(text, 0);
            rs->MoveNext();
        }
    }
    rs->Close();
    AddAllEntry(combo);
}

void frmSearchResources::AddAllEntry(QComboBox *combo)
{
    combo->addItem(QString(), 0);
    // Blank on the screen, but a screen reader says what it means.
    combo->setItemData(combo->count() - 1, QStringLiteral("Όλα"), Qt::AccessibleTextRole);
    combo->setCurrentIndex(combo->count() - 1);
}

void frmSearchResources::numericCriterionClick(QComboBox *combo, QString finding::SearchCriteria::*criterion)
{
    if (combo->currentIndex() < 0)
        return;
    m_criteria.*criterion = QString::number(combo->currentData().toInt());
    if (m_criteria.*criterion != m_searched.*criterion) {
        m_searched.*criterion = m_criteria.*criterion;
        SearchResources();
    }
}

void frmSearchResources::textCriterionClick(QComboBox *combo, QString finding::SearchCriteria::*criterion)
{
    m_criteria.*criterion = combo->currentText();
    if (m_criteria.*criterion != m_searched.*criterion) {
        m_searched.*criterion = m_criteria.*criterion;
        SearchResources();
    }
}

void frmSearchResources::cmbResType_Click()
{
    numericCriterionClick(cmbResType, &finding::SearchCriteria::ResType);
}

void frmSearchResources::cmbAuthor_Click()
{
    textCriterionClick(cmbAuthor, &finding::SearchCriteria::Author);
}

void frmSearchResources::cmbMuseum_Click()
{
    textCriterionClick(cmbMuseum, &finding::SearchCriteria::Museum);
}

void frmSearchResources::cmbKeyWord_Click()
{
    numericCriterionClick(cmbKeyWord, &finding::SearchCriteria::KeyWord);
}

void frmSearchResources::cmbTime_Click()
{
    numericCriterionClick(cmbTime, &finding::SearchCriteria::Time);
}

void frmSearchResources::cmbPlace_Click()
{
    numericCriterionClick(cmbPlace, &finding::SearchCriteria::Place);
}

void frmSearchResources::SearchResources()
{
    if (!m_filled)
        return;
    lvwResources->clear();
    ++m_searchCount;
    m_sql = finding::SearchSQL(m_criteria);
    auto rs = m_session.database().OpenRecordset(m_sql);
    const finding::SearchList list = finding::SearchListItems(*rs);
    QList<QTreeWidgetItem *> items;
    items.reserve(list.items.size());
    for (const finding::SearchListItem &entry : list.items) {
        auto *item = new QTreeWidgetItem(QStringList {entry.text});
        item->setData(0, TagRole, entry.tag);
        const QIcon icon = m_icons.icon(entry.icon);
        item->setData(0, IconKeyRole, entry.icon);
        item->setData(0, IconRole, icon);
        item->setIcon(0, icon);
        items.append(item);
    }
    lvwResources->addTopLevelItems(items);
    rs.reset();
    SetColumnWidth();
}

void frmSearchResources::SetColumnWidth()
{
    const int listWidth = platform::twipsFromPixelsX(lvwResources->width());
    lvwResources->setColumnWidth(0,
        platform::pixelsFromTwipsX(finding::ResultColumnWidth(listWidth, lvwResources->topLevelItemCount())));
}

void frmSearchResources::lvwResources_DblClick()
{
    QTreeWidgetItem *item = lvwResources->currentItem();
    if (!item || Ghosted(item))
        return;
    const QString tag = Tag(item);
    lvwResources->setFocus();
    setGhosted(item, true);

    SourceViewer *viewer = nullptr;
    try {
        viewer = openSource(m_session, tag.toInt(), {.fromSearchList = true});
    } catch (...) {
        // A source that cannot be read leaves no window behind, and its item can be
        // opened again once the file is there.
        setGhosted(item, false);
        throw;
    }
    if (!viewer) {
        // A kind whose window the program does not have opens nothing, and its item stays
        // free to open once it does.
        setGhosted(item, false);
        return;
    }
    switch (viewer->kind()) {
    case SourceViewer::Kind::Photo:
        m_myPhotoForm = viewer;
        break;
    case SourceViewer::Kind::Text:
        m_myTextForm = viewer;
        break;
    case SourceViewer::Kind::Map:
        m_myDrawingForm = viewer;
        break;
    case SourceViewer::Kind::None:
        break;
    }
}

QTreeWidgetItem *frmSearchResources::FindItem(const QString &tag) const
{
    for (int i = 0; i < lvwResources->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = lvwResources->topLevelItem(i);
        if (Tag(item) == tag)
            return item;
    }
    return nullptr;
}

bool frmSearchResources::Ghosted(const QTreeWidgetItem *item)
{
    return item && item->data(0, GhostedRole).toBool();
}

void frmSearchResources::setGhosted(QTreeWidgetItem *item, bool ghosted)
{
    if (!item)
        return;
    item->setData(0, GhostedRole, ghosted);
    // A ghosted item looks as a cut item does: its icon and text dimmed.
    const QIcon icon = item->data(0, IconRole).value<QIcon>();
    if (ghosted) {
        const QSize size = item->treeWidget() ? item->treeWidget()->iconSize() : QSize(16, 16);
        item->setIcon(0, QIcon(icon.pixmap(size, QIcon::Disabled)));
        item->setForeground(0, QBrush(Qt::gray));
    } else {
        item->setIcon(0, icon);
        item->setData(0, Qt::ForegroundRole, QVariant());
    }
}

QString frmSearchResources::Tag(const QTreeWidgetItem *item)
{
    return item ? item->data(0, TagRole).toString() : QString();
}

QString frmSearchResources::IconKey(const QTreeWidgetItem *item)
{
    return item ? item->data(0, IconKeyRole).toString() : QString();
}

void frmSearchResources::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    if (event->isAccepted() && m_session.window(Session::Window::SearchResources, false) == this)
        m_session.setWindow(Session::Window::SearchResources, nullptr);
}
