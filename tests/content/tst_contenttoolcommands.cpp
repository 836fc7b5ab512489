// Every command of the content tool's table is listed, with the arguments it takes, by the
// tool's usage, the README and the manual page, and nothing else is.

#include "../support/toolcommands.h"

#include <commands.h>

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QList<testing::ListedCommand> tableCommands()
{
    QList<testing::ListedCommand> listed;
    for (const commands::Command &command : commands::table())
        listed << testing::ListedCommand {command.name.toString(), command.arguments.toString()};
    return listed;
}

QString readSource(const QString &relativePath)
{
    QFile file(QStringLiteral(TREMIDIA_SOURCE_DIR "/") + relativePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

QByteArray describe(const QList<testing::ListedCommand> &listed)
{
    QStringList lines;
    for (const testing::ListedCommand &command : listed)
        lines << command.name + u' ' + command.arguments;
    return lines.join(u'\n').toUtf8();
}

} // namespace

class tst_ContentToolCommands : public QObject
{
    Q_OBJECT

private slots:
    void theTableNamesEachCommandOnce()
    {
        QSet<QString> names;
        for (const commands::Command &command : commands::table()) {
            QVERIFY2(!names.contains(command.name.toString()), qPrintable(command.name.toString()));
            names.insert(command.name.toString());
            QVERIFY(command.run);
            QCOMPARE(commands::find(command.name), &command);
        }
        QVERIFY(!names.isEmpty());
        QCOMPARE(commands::find(u"no-such-command"), nullptr);
    }

    void theToolsUsageListsTheTable()
    {
        QProcess tool;
        tool.start(QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content"), {});
        QVERIFY(tool.waitForFinished(60000));
        QCOMPARE(tool.exitCode(), 1);
        const QString usage = QString::fromUtf8(tool.readAllStandardError());
        QCOMPARE(usage, commands::usage());
        const QList<testing::ListedCommand> listed = testing::commandsInUsage(usage);
        QVERIFY2(listed == tableCommands(), describe(listed).constData());
    }

    void theReadmeListsTheTable()
    {
        const QList<testing::ListedCommand> listed = testing::commandsInReadme(readSource(u"README.md"_s));
        QVERIFY2(listed == tableCommands(), describe(listed).constData());
    }

    void theManualPageListsTheTable()
    {
        const QList<testing::ListedCommand> listed
            = testing::commandsInManualPage(readSource(u"packaging/man/tremidia-content.1"_s));
        QVERIFY2(listed == tableCommands(), describe(listed).constData());
    }
};

QTEST_GUILESS_MAIN(tst_ContentToolCommands)
#include "tst_contenttoolcommands.moc"
