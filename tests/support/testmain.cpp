// Every test executable's QTest::qExec comes here first (tremidia_add_test links it with
// the linker's --wrap).
//
// Qt Test records an exception that escapes a test function as that function's failure,
// but then throws it on out of qExec, and the executable aborts ("terminate called after
// throwing ..."): the functions after it never run and CTest reports a crash rather than
// a failure. Here the exception ends as the failed test it is: the run goes on from the
// function after the one that threw, and the exit code counts the failure.
//
// With TREMIDIA_TEST_ORDER=reverse the test functions run last to first, so that a
// function that passes only after the ones above it have left something behind fails.

#include <QFile>
#include <QMetaMethod>
#include <QObject>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <typeinfo>

// The symbols of QTest::qExec(QObject *, int, char **), as the linker names them.
extern "C" int __real__ZN5QTest5qExecEP7QObjectiPPc(QObject *testObject, int argc, char **argv);

namespace {

// The test functions of a test object, in the order Qt Test runs them.
QStringList testFunctions(const QMetaObject &meta)
{
    static const QStringList special = {QStringLiteral("initTestCase"), QStringLiteral("cleanupTestCase"),
        QStringLiteral("init"), QStringLiteral("cleanup")};
    QStringList names;
    for (int i = 0; i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const QString name = QString::fromLatin1(method.name());
        if (method.methodType() != QMetaMethod::Slot || method.access() != QMetaMethod::Private
            || method.parameterCount() != 0 || method.returnMetaType().id() != QMetaType::Void
            || name.endsWith(QLatin1String("_data")) || special.contains(name))
            continue;
        names << name;
    }
    return names;
}

// Whether the arguments choose the functions or the logs themselves; such a run is not
// resumed after an exception, only ended as a failure.
bool choosesItsOwnRun(const QStringList &args)
{
    static const QStringList withValue = {QStringLiteral("-maxwarnings"), QStringLiteral("-eventdelay"),
        QStringLiteral("-keydelay"), QStringLiteral("-mousedelay"), QStringLiteral("-minimumvalue"),
        QStringLiteral("-minimumtotal"), QStringLiteral("-iterations"), QStringLiteral("-median"),
        QStringLiteral("-repeat"), QStringLiteral("-perfcounter")};
    static const QStringList ownChoice
        = {QStringLiteral("-o"), QStringLiteral("-txt"), QStringLiteral("-xml"), QStringLiteral("-lightxml"),
            QStringLiteral("-junitxml"), QStringLiteral("-xunitxml"), QStringLiteral("-csv"),
            QStringLiteral("-teamcity"), QStringLiteral("-tap"), QStringLiteral("-functions"),
            QStringLiteral("-datatags"), QStringLiteral("-help")};
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if (ownChoice.contains(arg) || !arg.startsWith(u'-'))
            return true;
        if (withValue.contains(arg))
            ++i;
    }
    return false;
}

// The function whose result the plain-text log names last: the one that threw.
QString lastFunctionLogged(const QString &logPath, const char *className)
{
    QFile log(logPath);
    if (!log.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    const QRegularExpression line(QStringLiteral("^[A-Z!]+\\s*:\\s*%1::(\\w+)\\(")
                                      .arg(QRegularExpression::escape(QString::fromLatin1(className))),
        QRegularExpression::MultilineOption);
    QString last;
    auto matches = line.globalMatch(QString::fromUtf8(log.readAll()));
    while (matches.hasNext())
        last = matches.next().captured(1);
    return last;
}

void reportEscaped(const char *className, const std::exception_ptr &escaped)
{
    QString what = QStringLiteral("an exception");
    try {
        std::rethrow_exception(escaped);
    } catch (const std::exception &e) {
        what = QStringLiteral("%1 (%2)").arg(
            QString::fromLatin1(typeid(e).name()), QString::fromUtf8(e.what()));
    } catch (...) {
    }
    std::fprintf(stdout, "FAIL!  : %s: %s escaped a test function; the run goes on after it\n", className,
        qPrintable(what));
    std::fflush(stdout);
}

int execute(QObject *testObject, const QStringList &args)
{
    QList<QByteArray> bytes;
    for (const QString &arg : args)
        bytes << arg.toLocal8Bit();
    std::vector<char *> argv;
    for (QByteArray &arg : bytes)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    return __real__ZN5QTest5qExecEP7QObjectiPPc(testObject, int(bytes.size()), argv.data());
}

// Whether the environment asks for the test functions last to first.
bool reverseOrder()
{
    return qEnvironmentVariable("TREMIDIA_TEST_ORDER") == QLatin1String("reverse");
}

} // namespace

extern "C" int __wrap__ZN5QTest5qExecEP7QObjectiPPc(QObject *testObject, int argc, char **argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    const char *className = testObject->metaObject()->className();
    const bool resumable = !choosesItsOwnRun(args);
    QTemporaryDir logDir;
    const QString logPath = logDir.path() + QStringLiteral("/run.txt");
    QStringList all = testFunctions(*testObject->metaObject());
    QStringList chosen; // empty: all of them, in the order they are declared
    if (reverseOrder() && resumable) {
        std::reverse(all.begin(), all.end());
        chosen = all;
    }
    int failures = 0;
    for (;;) {
        QStringList sessionArgs = args;
        if (resumable && logDir.isValid())
            sessionArgs << QStringLiteral("-o") << QStringLiteral("-,txt") << QStringLiteral("-o")
                        << logPath + QStringLiteral(",txt");
        sessionArgs << chosen;
        try {
            return std::min(failures + execute(testObject, sessionArgs), 127);
        } catch (...) {
            reportEscaped(className, std::current_exception());
            ++failures;
        }
        if (!resumable)
            return failures;
        const qsizetype at = all.indexOf(lastFunctionLogged(logPath, className));
        if (at < 0 || at + 1 >= all.size())
            return failures;
        chosen = all.mid(at + 1);
    }
}
