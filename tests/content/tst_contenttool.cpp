#include <QTest>
class tst_Stub : public QObject
{
    Q_OBJECT
};
QTEST_GUILESS_MAIN(tst_Stub)
#include "tst_contenttool.moc"
