#include "../support/webdavserver.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSignalSpy>
#include <QTest>

// The test server itself: it takes an authenticated PUT, refuses a wrong password and an
// overwrite under If-None-Match, and comes back on its port after a stop.
class tst_WebDavServer final : public QObject
{
    Q_OBJECT

private:
    static int put(QNetworkAccessManager &network, const QUrl &url, const QString &user,
        const QString &password, const QByteArray &data)
    {
        QNetworkRequest request(url);
        request.setRawHeader("Authorization", "Basic " + (user + u':' + password).toUtf8().toBase64());
        request.setRawHeader("If-None-Match", "*");
        request.setTransferTimeout(10000);
        QNetworkReply *reply = network.put(request, data);
        QSignalSpy finished(reply, &QNetworkReply::finished);
        if (!reply->isFinished() && !finished.wait(15000))
            return -1;
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        reply->deleteLater();
        return status;
    }

private slots:
    void putsAndStopsAndStartsAgain()
    {
        testing::WebDavServer server;
        QString why;
        if (!testing::WebDavServer::available())
            QSKIP("apache2 is not installed");
        QVERIFY2(server.start(&why), qPrintable(why + server.errorLog()));
        QNetworkAccessManager network;
        QUrl url = server.url();
        url.setPath(url.path() + QStringLiteral("/a.zip"));
        QCOMPARE(put(network, url, server.user(), QStringLiteral("wrong"), "x"), 401);
        QCOMPARE(put(network, url, server.user(), server.password(), "hello"), 201);
        QCOMPARE(server.files(), QStringList {QStringLiteral("a.zip")});
        QCOMPARE(server.read(QStringLiteral("a.zip")), QByteArray("hello"));
        QCOMPARE(put(network, url, server.user(), server.password(), "again"), 412);
        QCOMPARE(server.read(QStringLiteral("a.zip")), QByteArray("hello"));

        const quint16 port = server.port();
        server.stop();
        QVERIFY(!server.isRunning());
        QCOMPARE(put(network, url, server.user(), server.password(), "x"), 0);
        QVERIFY2(server.start(&why), qPrintable(why + server.errorLog()));
        QCOMPARE(server.port(), port);
        url.setPath(server.url().path() + QStringLiteral("/b.zip"));
        QCOMPARE(put(network, url, server.user(), server.password(), "b"), 201);
        QCOMPARE(server.files().size(), 2);
    }
};

QTEST_MAIN(tst_WebDavServer)
#include "tst_webdavserver.moc"
