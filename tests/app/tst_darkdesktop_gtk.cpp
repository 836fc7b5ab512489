// Every window under GTK's own dark theme, as GNOME hands it on to Qt
// (QT_QPA_PLATFORMTHEME=gtk3, GTK_THEME=Adwaita:dark): each text keeps a contrast of 4.5:1
// against what it stands on, and each window looks as it does under the light theme. The
// light pictures come from this same test run once more under GTK_THEME=Adwaita, since a
// desktop's theme is read once, when the application starts.

#include "darkdesktopcheck.h"
#include "programwindows.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace testing;

namespace {

// Set in the run that draws the light pictures: the folder they go to.
const char *const ReferenceVariable = "TREMIDIA_LIGHT_REFERENCE";

QString referenceFolder()
{
    return qEnvironmentVariable(ReferenceVariable);
}

bool drawingReference()
{
    return !referenceFolder().isEmpty();
}

} // namespace

class tst_DarkDesktopGtk : public QObject
{
    Q_OBJECT

    QTemporaryDir m_work;
    QString m_light;
    WindowsOnTheSample m_windows;
    MDIForm1 *m_shell = nullptr;

    void drawLightPictures()
    {
        m_light = m_work.filePath(u"light"_s);
        QVERIFY(QDir().mkpath(m_light));
        QProcess light;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QString::fromLatin1(ReferenceVariable), m_light);
        light.setProcessEnvironment(env);
        light.setProcessChannelMode(QProcess::MergedChannels);
        light.start(QCoreApplication::applicationFilePath(), {u"everyWindowKeepsItsColours"_s});
        QVERIFY(light.waitForFinished(240000));
        const QString said = QString::fromLocal8Bit(light.readAll());
        QVERIFY2(light.exitStatus() == QProcess::NormalExit && light.exitCode() == 0,
            qPrintable(u"the light theme's run failed:\n"_s + said));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_work.isValid());
        // The theme must really be there: a missing plugin would leave Qt's own light
        // palette and prove nothing.
        const int lightness = QApplication::palette().color(QPalette::Window).lightness();
        if (drawingReference())
            QVERIFY2(lightness > 160, "GTK's light theme did not reach Qt");
        else
            QVERIFY2(
                lightness < 96, "GTK's dark theme did not reach Qt: is qt6-gtk-platformtheme installed?");
        if (!QFileInfo::exists(SampleDatabase))
            QSKIP("the sample course is not built");
        if (!drawingReference())
            drawLightPictures();
        QVERIFY(m_windows.open(m_work.filePath(u"cache"_s)));
    }

    void init()
    {
        m_shell = m_windows.showShell();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell));
    }

    void cleanup()
    {
        const QStringList boxes = m_windows.closeAll();
        QVERIFY2(boxes.isEmpty(), qPrintable(boxes.join(u"; "_s)));
    }

    void everyWindowKeepsItsColours_data() { addProgramWindowRows(); }

    void everyWindowKeepsItsColours()
    {
        QFETCH(int, window);
        const ProgramWindow program = programWindow(window);
        const QString name = QString::fromLatin1(program.name);
        QWidget *top = m_windows.openShown(window);
        QVERIFY2(top, program.name);
        // Let the window settle: the first paints, the caret's first blink.
        QTest::qWait(50);
        QApplication::processEvents();
        const QImage shot = top->grab().toImage();
        if (drawingReference()) {
            QVERIFY(shot.save(referenceFolder() + u'/' + name + u".png"_s));
            shot.save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/gtklight_") + name + u".png"_s);
            return;
        }
        shot.save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/gtkdark_") + name + u".png"_s);

        const QImage light(m_light + u'/' + name + u".png"_s);
        QVERIFY2(!light.isNull(), qPrintable(name + u": no picture under the light theme"_s));
        const qint64 changed = differingPixels(light, shot);
        const double share = double(changed) / double(std::max(1, light.width() * light.height()));
        qInfo("%s: %lld of %d pixels differ from the light theme", program.name, changed,
            light.width() * light.height());
        const QList<LowContrast> found = lowContrasts(top);
        QVERIFY2(found.isEmpty(), qPrintable(name + u": "_s + describe(found)));
        QVERIFY2(share < ChangedShareAllowed,
            qPrintable(u"%1: %2 pixels (%3%) differ from the light theme"_s.arg(name).arg(changed).arg(
                share * 100, 0, 'f', 2)));
    }
};

int main(int argc, char *argv[])
{
    // The desktop's theme is read as the application is made.
    qputenv("QT_QPA_PLATFORMTHEME", "gtk3");
    qputenv("GTK_THEME", drawingReference() ? "Adwaita" : "Adwaita:dark");
    QApplication app(argc, argv);
    tst_DarkDesktopGtk test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_darkdesktop_gtk.moc"
