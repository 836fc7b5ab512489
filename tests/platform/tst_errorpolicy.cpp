#include "../support/recordinghost.h"

#include <errorpolicy.h>
#include <msgbox.h>

#include <QApplication>
#include <QRegularExpression>
#include <QTest>

#include <optional>
#include <stdexcept>

namespace {

// What reached the log while a test ran, by category.
struct LogCapture
{
    static inline QStringList lines;
    static void handler(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtWarningMsg)
            lines << QString::fromLatin1(context.category) + u' ' + text;
    }
};

} // namespace

class tst_ErrorPolicy : public QObject
{
    Q_OBJECT

    // The user in front of the boxes, while a test function runs.
    testing::RecordingHost m_host;
    std::optional<platform::HostScope> m_hostScope;
    QList<testing::ShownBox> &m_shown = m_host.boxes;

private slots:
    void init()
    {
        m_host.boxes.clear();
        m_hostScope.emplace(m_host);
    }
    void cleanup() { m_hostScope.reset(); }

    void untrappedErrorStopsHandlerAndShowsBox()
    {
        bool after = false;
        const bool finished = platform::guarded([&] {
            throw platform::RuntimeError(3024, QStringLiteral("Δεν βρέθηκε το αρχείο"));
            after = true;
        });
        QVERIFY(!finished);
        QVERIFY(!after);
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown[0].text, QStringLiteral("Λάθος # 3024\r\nΔεν βρέθηκε το αρχείο"));
        QCOMPARE(m_shown[0].style, 16);
        QCOMPARE(m_shown[0].title, QStringLiteral("Τρεμίδια"));
    }

    void handlerThatSucceedsShowsNothing()
    {
        QVERIFY(platform::guarded([] {}));
        QVERIFY(m_shown.isEmpty());
    }

    void resumeNextDropsTheError()
    {
        int reached = 0;
        platform::resumeNext([] { throw platform::RuntimeError(9, QStringLiteral("x")); });
        ++reached;
        QCOMPARE(reached, 1);
        QVERIFY(m_shown.isEmpty());
    }

    void resumeNextWritesTheDroppedErrorToTheLogWithItsPlace()
    {
        LogCapture::lines.clear();
        const QtMessageHandler previous = qInstallMessageHandler(&LogCapture::handler);
        const int line = __LINE__ + 1;
        platform::resumeNext(
            [] { throw platform::RuntimeError(53, QStringLiteral("Δεν βρέθηκε το αρχείο")); });
        qInstallMessageHandler(previous);
        QCOMPARE(LogCapture::lines.size(), 1);
        const QString &logged = LogCapture::lines.first();
        QVERIFY2(logged.startsWith(QStringLiteral("tremidia.errors ")), qPrintable(logged));
        QVERIFY2(logged.contains(QStringLiteral("error 53: Δεν βρέθηκε το αρχείο")), qPrintable(logged));
        QVERIFY2(logged.contains(QStringLiteral("tst_errorpolicy.cpp:%1").arg(line)), qPrintable(logged));
        // Nothing on screen.
        QVERIFY(m_shown.isEmpty());
    }

    void resumeNextLogsForeignAndUnknownExceptions()
    {
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(QStringLiteral("passed over at .* - disk full$")));
        platform::resumeNext([] { throw std::runtime_error("disk full"); });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("unknown kind$")));
        platform::resumeNext([] { throw 42; });
        QVERIFY(m_shown.isEmpty());
    }

    void successfulStatementLogsNothing()
    {
        LogCapture::lines.clear();
        const QtMessageHandler previous = qInstallMessageHandler(&LogCapture::handler);
        QVERIFY(platform::resumeNext([] {}));
        qInstallMessageHandler(previous);
        QVERIFY(LogCapture::lines.isEmpty());
    }

    void loggingRulesCanSilenceTheCategory()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("tremidia.errors.warning=false"));
        LogCapture::lines.clear();
        const QtMessageHandler previous = qInstallMessageHandler(&LogCapture::handler);
        platform::resumeNext([] { throw platform::RuntimeError(9, QStringLiteral("x")); });
        qInstallMessageHandler(previous);
        QLoggingCategory::setFilterRules(QString());
        QVERIFY(LogCapture::lines.isEmpty());
    }

    void foreignExceptionStillGivesTheBox()
    {
        platform::guarded([] { throw std::runtime_error("boom"); });
        QCOMPARE(m_shown.size(), 1);
        QVERIFY(m_shown[0].text.startsWith(QStringLiteral("Λάθος # ")));
    }
};

QTEST_MAIN(tst_ErrorPolicy)
#include "tst_errorpolicy.moc"
