#include <database.h>
#include <jetimport.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <vector>

// Time to open each fixture, over several runs: with the whole import into memory, and
// again with the last import kept; prints the least and the median in milliseconds.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 15;
    QTextStream out(stdout);
    for (const char *name : {"content-jet3.mdb", "content-jet4.mdb"}) {
        const QString path = QStringLiteral(TREMIDIA_FIXTURES_DIR "/") + QString::fromUtf8(name);
        if (!QFileInfo::exists(path)) {
            std::fprintf(stderr, "missing test data file: %s\n", qPrintable(path));
            return 1;
        }
        for (const bool again : {false, true}) {
            std::vector<double> ms;
            for (int i = 0; i < runs; ++i) {
                if (!again)
                    content::jet::forgetLastImport();
                QElapsedTimer timer;
                timer.start();
                auto db = content::Database::OpenDatabase(path);
                auto rs = db->OpenRecordset(QStringLiteral("Resources"));
                ms.push_back(double(timer.nsecsElapsed()) / 1e6);
                if (rs->RecordCount() != 14)
                    return 1;
            }
            std::sort(ms.begin(), ms.end());
            out << name << (again ? ": open again (copy of the last import), " : ": open with import, ")
                << runs << " runs: min " << QString::number(ms.front(), 'f', 2) << " ms, median "
                << QString::number(ms[ms.size() / 2], 'f', 2) << " ms\n";
        }
    }
    return 0;
}
