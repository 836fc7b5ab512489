#include "frmhandins.h"

#include "frmhandinpicture.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmnotes.h>
#include <msgbox.h>
#include <session.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const QString Caption = QStringLiteral("Παραδόσεις εργασιών");

// «Σημείωση», «Ζωγραφιά 2»: what a file of a bundle is, in the list.
QString fileTitle(const QString &name)
{
    if (name == QLatin1String(handin::NoteRtfName))
        return QStringLiteral("Σημείωση");
    if (name.startsWith(u"drawing-") && name.endsWith(u".png"))
        return QStringLiteral("Ζωγραφιά %1").arg(name.mid(8, name.size() - 12));
    return name;
}

bool isDrawing(const QString &name)
{
    return name.startsWith(u"drawing-") && name.endsWith(u".png");
}

QString timeText(const QDateTime &time)
{
    return time.isValid() ? time.toString(QStringLiteral("dd/MM/yyyy HH:mm")) : QStringLiteral("άγνωστη");
}

} // namespace

frmHandIns::frmHandIns(Session &session, const QString &folder, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , lblFolder(new QLabel(this))
    , lvwHandIns(new QTreeWidget(this))
    , cmdOpen(new QPushButton(QStringLiteral("Άν&οιγμα"), this))
    , cmdRefresh(new QPushButton(QStringLiteral("Ανα&νέωση"), this))
    , cmdClose(new QPushButton(QStringLiteral("&Κλείσιμο"), this))
    , m_session(session)
    , m_folder(folder)
{
    setObjectName(QStringLiteral("frmHandIns"));
    platform::useDesignedColours(this);
    setWindowTitle(Caption);
    setAttribute(Qt::WA_DeleteOnClose);
    resize(820, 520);

    lblFolder->setObjectName(QStringLiteral("lblFolder"));
    lblFolder->setText(QStringLiteral("Φάκελος: %1").arg(QDir::toNativeSeparators(folder)));
    lblFolder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lvwHandIns->setObjectName(QStringLiteral("lvwHandIns"));
    lvwHandIns->setAccessibleName(Caption);
    lvwHandIns->setColumnCount(ColumnCount);
    lvwHandIns->setHeaderLabels({QStringLiteral("Μαθητής"), QStringLiteral("Δραστηριότητα"),
        QStringLiteral("Ώρα"), QStringLiteral("Αρχεία"), QStringLiteral("Κατάσταση")});
    lvwHandIns->setRootIsDecorated(true);
    lvwHandIns->setUniformRowHeights(true);
    lvwHandIns->setAllColumnsShowFocus(true);
    // A double click opens; the classes and bundles stay open.
    lvwHandIns->setExpandsOnDoubleClick(false);
    lvwHandIns->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    lblFolder->setBuddy(lvwHandIns);
    cmdOpen->setObjectName(QStringLiteral("cmdOpen"));
    cmdRefresh->setObjectName(QStringLiteral("cmdRefresh"));
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    cmdOpen->setAccessibleName(QStringLiteral("Άνοιγμα"));
    cmdRefresh->setAccessibleName(QStringLiteral("Ανανέωση"));
    cmdClose->setAccessibleName(QStringLiteral("Κλείσιμο"));

    auto *keys = new QHBoxLayout;
    keys->addWidget(cmdOpen);
    keys->addWidget(cmdRefresh);
    keys->addStretch(1);
    keys->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblFolder);
    layout->addWidget(lvwHandIns, 1);
    layout->addLayout(keys);
    setTabOrder(lvwHandIns, cmdOpen);
    setTabOrder(cmdOpen, cmdRefresh);
    setTabOrder(cmdRefresh, cmdClose);

    connect(lvwHandIns, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem *item) {
        platform::guarded([this, item] { lvwHandIns_ItemActivated(item); });
    });
    connect(cmdOpen, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdOpen_Click(); }); });
    connect(cmdRefresh, &QPushButton::clicked, this,
        [this] { platform::guarded([this] { cmdRefresh_Click(); }); });
    connect(
        cmdClose, &QPushButton::clicked, this, [this] { platform::guarded([this] { cmdClose_Click(); }); });

    Refresh();
}

frmHandIns::~frmHandIns() = default;

QString frmHandIns::stateText(bool ok)
{
    return ok ? QStringLiteral("εντάξει") : QStringLiteral("κατεστραμμένο");
}

void frmHandIns::Refresh()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_bundles = handin::readBundles(m_folder);
    QGuiApplication::restoreOverrideCursor();
    fill();
}

void frmHandIns::fill()
{
    lvwHandIns->clear();
    QTreeWidgetItem *classItem = nullptr;
    QString className;
    for (qsizetype i = 0; i < m_bundles.size(); ++i) {
        const handin::BundleInfo &bundle = m_bundles.at(i);
        if (!classItem || !handin::sameClass(bundle.className, className)) {
            className = bundle.className;
            classItem = new QTreeWidgetItem(lvwHandIns);
            classItem->setText(ColPupil,
                className.isEmpty() ? QStringLiteral("Χωρίς τμήμα")
                                    : QStringLiteral("Τμήμα %1").arg(className));
            classItem->setData(ColPupil, BundleRole, -1);
            QFont bold = classItem->font(ColPupil);
            bold.setBold(true);
            classItem->setFont(ColPupil, bold);
            classItem->setFirstColumnSpanned(true);
        }
        auto *item = new QTreeWidgetItem(classItem);
        item->setText(ColPupil, bundle.pupil);
        item->setText(ColActivity, bundle.activity);
        item->setText(ColTime, timeText(bundle.time));
        item->setText(ColFiles, QString::number(bundle.files.size()));
        item->setText(ColState, stateText(bundle.ok));
        item->setData(ColPupil, BundleRole, int(i));
        item->setData(ColPupil, Qt::AccessibleTextRole,
            QStringLiteral("%1, %2, %3, %4")
                .arg(bundle.pupil, bundle.activity, timeText(bundle.time), stateText(bundle.ok)));
        if (!bundle.ok) {
            item->setForeground(ColState, QColor(0x99, 0, 0));
            item->setToolTip(ColState, bundle.damage);
            item->setData(ColPupil, Qt::AccessibleDescriptionRole, bundle.damage);
            continue;
        }
        for (const QString &name : bundle.files) {
            if (name != QLatin1String(handin::NoteRtfName) && !isDrawing(name))
                continue;
            auto *file = new QTreeWidgetItem(item);
            file->setText(ColPupil, fileTitle(name));
            file->setData(ColPupil, BundleRole, int(i));
            file->setData(ColPupil, FileRole, name);
        }
    }
    lvwHandIns->expandAll();
    if (lvwHandIns->topLevelItemCount() > 0)
        lvwHandIns->setCurrentItem(lvwHandIns->topLevelItem(0));
    cmdOpen->setEnabled(!m_bundles.isEmpty());
}

void frmHandIns::Open(QTreeWidgetItem *item)
{
    if (!item)
        return;
    const int index = item->data(ColPupil, BundleRole).toInt();
    if (index < 0 || index >= m_bundles.size()) {
        item->setExpanded(!item->isExpanded());
        return;
    }
    const handin::BundleInfo &bundle = m_bundles.at(index);
    if (!bundle.ok) {
        sayUnreadable(bundle, bundle.damage);
        return;
    }
    QString name = item->data(ColPupil, FileRole).toString();
    if (name.isEmpty()) {
        // The bundle itself: its note, else its first drawing.
        for (const QString &file : bundle.files) {
            if (file == QLatin1String(handin::NoteRtfName) || (name.isEmpty() && isDrawing(file)))
                name = file;
        }
    }
    if (name == QLatin1String(handin::NoteRtfName))
        openNote(bundle, name);
    else if (isDrawing(name))
        openDrawing(bundle, name);
}

void frmHandIns::openNote(const handin::BundleInfo &bundle, const QString &name)
{
    // Read again: the file may have changed since the list was made.
    const std::optional<QByteArray> rtf = handin::readEntry(bundle.path, name);
    if (!rtf) {
        sayUnreadable(bundle, QStringLiteral("η σημείωση δεν διαβάζεται"));
        return;
    }
    frmNotes::showReadOnly(
        m_session, *rtf, QStringLiteral("Σημείωση: %1, %2").arg(bundle.pupil, bundle.className));
}

void frmHandIns::openDrawing(const handin::BundleInfo &bundle, const QString &name)
{
    const std::optional<QByteArray> png = handin::readEntry(bundle.path, name);
    const QImage picture = png ? frmHandInPicture::decode(*png) : QImage();
    if (picture.isNull()) {
        sayUnreadable(bundle, QStringLiteral("η ζωγραφιά δεν διαβάζεται"));
        return;
    }
    auto *window = new frmHandInPicture(m_session);
    m_session.adopt(window);
    window->setPicture(
        picture, QStringLiteral("%1: %2, %3").arg(fileTitle(name), bundle.pupil, bundle.className));
    window->show();
}

void frmHandIns::sayUnreadable(const handin::BundleInfo &bundle, const QString &why)
{
    const QString who = bundle.pupil.isEmpty() ? QFileInfo(bundle.path).fileName() : bundle.pupil;
    platform::MsgBox(
        QStringLiteral("Η εργασία «%1» είναι κατεστραμμένη και δεν ανοίγει.\n(%2)").arg(who, why),
        platform::vbExclamation, Caption, this);
}

void frmHandIns::lvwHandIns_ItemActivated(QTreeWidgetItem *item)
{
    Open(item);
}

void frmHandIns::cmdOpen_Click()
{
    Open(lvwHandIns->currentItem());
}

void frmHandIns::cmdRefresh_Click()
{
    Refresh();
}

void frmHandIns::cmdClose_Click()
{
    close();
}

void frmHandIns::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        platform::guarded([this] { close(); });
        return;
    }
    QWidget::keyPressEvent(event);
}

bool showHandIns(Session &session, const QString &folder)
{
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        platform::MsgBox(QStringLiteral("Ο φάκελος των παραδόσεων «%1» δεν βρέθηκε.").arg(folder),
            platform::vbExclamation, Caption);
        return false;
    }
    auto *window = new frmHandIns(session, QFileInfo(folder).absoluteFilePath());
    session.adopt(window);
    window->show();
    return true;
}
