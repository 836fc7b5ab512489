// The time of one hand-in of a long note (about a hundred printed pages, formatted) and
// three drawings: the note as RTF and as PDF, the drawings as PNG, the bundle, and its
// delivery to a drop folder on this computer.

#include <bundle.h>
#include <destinations.h>
#include <handinwork.h>
#include <latethreads.h>
#include <outbox.h>
#include <richtextbox.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

QImage drawing(int seed)
{
    QImage picture(800, 600, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 60; ++i) {
        painter.setPen(QPen(QColor::fromHsv((seed * 50 + i * 17) % 360, 200, 180), 1 + i % 5));
        painter.setBrush(i % 3 ? Qt::NoBrush : QBrush(QColor::fromHsv((i * 29) % 360, 120, 230)));
        painter.drawEllipse(QRect((i * 37 + seed * 11) % 700, (i * 53) % 500, 40 + i % 90, 30 + i % 70));
        painter.drawLine((i * 13) % 800, (i * 7) % 600, (i * 31) % 800, (i * 19) % 600);
    }
    return picture;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("drop"));

    RichTextBox note;
    note.resize(600, 400);
    QStringList lines;
    for (int i = 1; i <= 4600; ++i)
        lines.append(
            QStringLiteral("Γραμμή %1: ο ναός της Αθηνάς στην Ακρόπολη, με τα γλυπτά του Φειδία.").arg(i));
    note.setText(lines.join(u'\n'));
    int at = 0;
    for (int i = 0; i < lines.size(); ++i) {
        if (i % 7 == 0) {
            note.setSelStart(at);
            note.setSelLength(6);
            note.setSelBold(true);
            note.setSelColor(0x0000C0);
        }
        at += int(lines.at(i).size()) + 1;
    }
    const QList<QImage> drawings = {drawing(1), drawing(2), drawing(3)};

    handin::Destinations destinations;
    destinations.folder = dir.filePath(QStringLiteral("drop"));
    platform::LateThreads late;
    handin::Outbox outbox(destinations, late, dir.filePath(QStringLiteral("outbox")));
    QEventLoop loop;
    bool delivered = false;
    QObject::connect(&outbox, &handin::Outbox::delivered, &loop, [&] {
        delivered = true;
        loop.quit();
    });
    QObject::connect(&outbox, &handin::Outbox::queued, &loop, [&] { loop.quit(); });
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);

    QElapsedTimer clock;
    clock.start();
    QList<handin::File> files;
    files.append({QString::fromLatin1(handin::NoteRtfName), handin::noteRtf(note)});
    files.append({QString::fromLatin1(handin::NotePdfName), handin::notePdf(note)});
    for (int i = 0; i < drawings.size(); ++i)
        files.append({handin::drawingName(i + 1), handin::drawingPng(drawings.at(i))});
    handin::Pupil pupil {QStringLiteral("Μαρία Παπαδάκη"), QStringLiteral("Β2")};
    handin::Place place {QStringLiteral("Το Αιγαίο στην αρχαιότητα"), 1, QStringLiteral("Θέμα"), 101,
        QStringLiteral("Σενάριο"), 1001, QStringLiteral("Δραστηριότητα")};
    const handin::Bundle bundle = handin::makeBundle(pupil, place, QDateTime::currentDateTime(), files);
    const bool kept = outbox.handIn(bundle);
    if (kept && !delivered && outbox.waiting() > 0)
        loop.exec();
    const qint64 ms = clock.elapsed();

    std::printf("handin 100-page note and 3 drawings: %lld ms\n", static_cast<long long>(ms));
    std::printf("bundle: %lld bytes, pdf %lld bytes, %s\n", static_cast<long long>(bundle.zip.size()),
        static_cast<long long>(files.at(1).data.size()),
        delivered || outbox.waiting() == 0 ? "delivered" : "not delivered");
    std::fflush(stdout);
    return delivered || outbox.waiting() == 0 ? 0 : 1;
}
