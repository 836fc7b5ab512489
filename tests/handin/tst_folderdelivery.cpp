#include "bundle.h"
#include "destinations.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// The drop folder: a bundle arrives whole under its name or a fresh one, never over another
// file, also in a folder pupils may write into but not read, and a full disk leaves nothing.
class tst_FolderDelivery final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_mount; // a tmpfs mounted by the test, to unmount

    QString m_name;
    QString name() const { return m_name; }
    static QString freshName()
    {
        return handin::bundleName({QStringLiteral("Νίκος"), QStringLiteral("Α1")}, QStringLiteral("Χάρτης"),
            QDateTime(QDate(2026, 11, 25), QTime(10, 42, 7)));
    }

    static QStringList everything(const QString &folder)
    {
        return QDir(folder).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_name = freshName();
    }

    void cleanup()
    {
        if (!m_mount.isEmpty())
            ::umount2(QFile::encodeName(m_mount).constData(), MNT_DETACH);
        m_mount.clear();
        m_dir.reset();
    }

    void writesTheBundleWhole()
    {
        const QByteArray zip(100000, 'z');
        QString why, as;
        QCOMPARE(handin::deliverToFolder(m_dir->path(), name(), zip, &why, &as), handin::Delivery::Delivered);
        QCOMPARE(as, name());
        QCOMPARE(everything(m_dir->path()), QStringList {name()});
        QCOMPARE(read(m_dir->filePath(name())), zip);
        QFileInfo info(m_dir->filePath(name()));
        QVERIFY(info.permissions() & QFileDevice::ReadOther); // the teacher reads it
    }

    void neverReplacesATakenName()
    {
        QFile taken(m_dir->filePath(name()));
        QVERIFY(taken.open(QIODevice::WriteOnly));
        taken.write("the first pupil's work");
        taken.close();

        QString why, as;
        QCOMPARE(
            handin::deliverToFolder(m_dir->path(), name(), "second", &why, &as), handin::Delivery::Delivered);
        QVERIFY(as != name());
        QCOMPARE(as.left(name().size() - 8), name().left(name().size() - 8));
        QCOMPARE(read(m_dir->filePath(name())), QByteArray("the first pupil's work"));
        QCOMPARE(read(m_dir->filePath(as)), QByteArray("second"));
        QCOMPARE(everything(m_dir->path()).size(), 2);
    }

    void refusesNamesThatLeaveTheFolder()
    {
        const QString inner = m_dir->filePath(QStringLiteral("drop"));
        QVERIFY(QDir().mkpath(inner));
        QString why;
        QCOMPARE(handin::deliverToFolder(inner, QStringLiteral("../x.zip"), "x", &why),
            handin::Delivery::Unavailable);
        QCOMPARE(handin::deliverToFolder(inner, QStringLiteral(".x.zip"), "x", &why),
            handin::Delivery::Unavailable);
        QCOMPARE(everything(m_dir->path()), QStringList {QStringLiteral("drop")});
        QVERIFY(everything(inner).isEmpty());
    }

    void missingFolderIsUnavailable()
    {
        QString why;
        QCOMPARE(handin::deliverToFolder(m_dir->filePath(QStringLiteral("not-mounted")), name(), "x", &why),
            handin::Delivery::Unavailable);
        QVERIFY(!why.isEmpty());
        QCOMPARE(handin::deliverToFolder(QString(), name(), "x", &why), handin::Delivery::Unavailable);
        QVERIFY(everything(m_dir->path()).isEmpty());
    }

    void writesIntoADropFolderItCannotRead()
    {
        if (::geteuid() != 0)
            QSKIP("needs root, to hand the folder to one user and write as another");
        // The teacher's (root's) folder, 1733: anyone may create, only the owner lists.
        QFile::setPermissions(m_dir->path(),
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner | QFileDevice::ExeGroup
                | QFileDevice::ExeOther);
        const QString drop = m_dir->filePath(QStringLiteral("drop"));
        QVERIFY(QDir().mkdir(drop));
        QCOMPARE(::chmod(QFile::encodeName(drop).constData(), 01733), 0);
        QFile taken(QDir(drop).filePath(name()));
        QVERIFY(taken.open(QIODevice::WriteOnly));
        taken.write("already there");
        taken.close();

        // The pupil: another user, in a child process.
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            if (::setgid(65534) != 0 || ::setuid(65534) != 0)
                ::_exit(10);
            if (::opendir(QFile::encodeName(drop).constData()) != nullptr)
                ::_exit(11); // the folder must not be readable for this to mean anything
            QString as;
            if (handin::deliverToFolder(drop, name(), "pupil's bundle", nullptr, &as)
                != handin::Delivery::Delivered)
                ::_exit(12);
            if (as == name())
                ::_exit(13);
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);

        const QStringList files = everything(drop);
        QCOMPARE(files.size(), 2);
        QCOMPARE(read(QDir(drop).filePath(name())), QByteArray("already there"));
        const QString other = files.at(0) == name() ? files.at(1) : files.at(0);
        QCOMPARE(read(QDir(drop).filePath(other)), QByteArray("pupil's bundle"));
        QCOMPARE(QFileInfo(QDir(drop).filePath(other)).ownerId(), 65534u);
    }

    void fullDiskLeavesNothingBehind()
    {
        const QString small = m_dir->filePath(QStringLiteral("small"));
        QVERIFY(QDir().mkdir(small));
        if (::mount("tmpfs", QFile::encodeName(small).constData(), "tmpfs", 0, "size=64k") != 0)
            QSKIP(
                qPrintable(QStringLiteral("cannot mount a small tmpfs here (%1); no other honest way to fill "
                                          "a disk")
                               .arg(QString::fromLocal8Bit(std::strerror(errno)))));
        m_mount = small;
        QFile earlier(QDir(small).filePath(QStringLiteral("earlier.zip")));
        QVERIFY(earlier.open(QIODevice::WriteOnly));
        earlier.write(QByteArray(8000, 'e'));
        earlier.close();

        QString why;
        QCOMPARE(handin::deliverToFolder(small, name(), QByteArray(200000, 'z'), &why),
            handin::Delivery::Unavailable);
        QVERIFY2(why.contains(QString::fromLocal8Bit(std::strerror(ENOSPC))), qPrintable(why));
        QCOMPARE(everything(small), QStringList {QStringLiteral("earlier.zip")});
        QCOMPARE(read(QDir(small).filePath(QStringLiteral("earlier.zip"))), QByteArray(8000, 'e'));

        // What fits still goes.
        QCOMPARE(handin::deliverToFolder(small, name(), QByteArray(20000, 'z'), &why),
            handin::Delivery::Delivered);
        QCOMPARE(everything(small).size(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_FolderDelivery)
#include "tst_folderdelivery.moc"
