// The painter's heavy operations on a canvas of 4000 by 3000 pixels: a flood fill of
// one open area, a flood fill of a maze-like corridor, and a pen stroke of 10,000
// points, a few pixels apart, through the canvas itself. When ImageMagick's convert is installed, the same
// open fill by it is timed in the same run: once with the fill and once without, so
// that its reading and starting can be told apart from the fill.
#include <drawingtools.h>
#include <picphoto.h>
#include <surface.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr int Width = 4000;
constexpr int Height = 3000;
constexpr quint32 White = 0xFFFFFF;
constexpr quint32 Black = 0x000000;

template<typename Prepare, typename Work> double bestOf(int rounds, Prepare &&prepare, Work &&work)
{
    double best = 1e18;
    for (int i = 0; i < rounds; ++i) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

// Corridors three pixels high joined at alternate ends, with short walls that make the
// fill zigzag up and down along each corridor.
QImage maze()
{
    QImage image = drawing::blankImage(QSize(Width, Height), White);
    const QRgb wall = drawing::rgbOf(Black);
    for (int y = 3; y < Height; y += 4) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        const bool gapLeft = (y / 4) % 2 == 1;
        for (int x = 0; x < Width; ++x)
            if (gapLeft ? x > 2 : x < Width - 3)
                row[x] = wall;
    }
    for (int y = 0; y < Height; ++y) {
        if (y % 4 == 3)
            continue;
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        const int inCorridor = y % 4;
        for (int x = 8; x < Width - 8; x += 8) {
            const bool fromTop = (x / 8) % 2 == 0;
            if (fromTop ? inCorridor < 2 : inCorridor > 0)
                row[x] = wall;
        }
    }
    return image;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    const QImage open = drawing::blankImage(QSize(Width, Height), White);
    const drawing::Brush red {drawing::Solid, 0x0000FF};
    QImage work;
    const double openMs = bestOf(
        5, [&] { work = open.copy(); }, [&] { drawing::floodFillSurface(work, 1234, 987, White, red); });
    std::printf("open fill: %.1f ms\n", openMs);

    const QImage labyrinth = maze();
    const double mazeMs = bestOf(
        3, [&] { work = labyrinth.copy(); }, [&] { drawing::floodFillSurface(work, 0, 0, White, red); });
    std::printf("maze fill: %.1f ms\n", mazeMs);

    const drawing::Brush hatch {drawing::DiagonalCross, 0x0000FF};
    const double hatchMs = bestOf(
        3, [&] { work = open.copy(); }, [&] { drawing::floodFillSurface(work, 1234, 987, White, hatch); });
    std::printf("open hatch fill: %.1f ms\n", hatchMs);

    // The pen through the canvas, as a gesture draws: the first move gives the backing
    // image pixels of its own (one copy of the picture a gesture), every move draws one
    // segment. The second figure is the same stroke on pixels already its own.
    PicPhoto canvas;
    DrawPen pen(canvas);
    auto scribble = [&] {
        // Over the whole canvas, a few pixels a point, as a hand draws.
        auto at = [](int i) {
            const double t = i / 10000.0 * 2 * M_PI;
            return QPoint(qRound((Width / 2 - 20) * std::sin(3 * t) + Width / 2),
                qRound((Height / 2 - 20) * std::sin(4 * t) + Height / 2));
        };
        pen.press(15.0 * at(0).x(), 15.0 * at(0).y());
        for (int i = 1; i <= 10000; ++i)
            pen.move(15.0 * at(i).x(), 15.0 * at(i).y());
    };
    const double penMs = bestOf(
        3, [&] { canvas.setPicture(open); }, scribble);
    std::printf("pen stroke: %.1f ms\n", penMs);
    const double linesMs = bestOf(
        3, [] {}, scribble);
    std::printf("pen stroke without the gesture's copy: %.1f ms\n", linesMs);

    const QString convert = QStandardPaths::findExecutable(QStringLiteral("convert"));
    if (convert.isEmpty()) {
        std::printf("ImageMagick: not installed, no comparison\n");
        return 0;
    }
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("open.bmp"));
    open.save(input, "BMP");
    auto runConvert = [&](const QStringList &middle) {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(convert, QStringList {input} + middle + QStringList {QStringLiteral("null:")});
        process.waitForFinished(120000);
    };
    const double magickMs = bestOf(
        3, [] {},
        [&] {
            runConvert({QStringLiteral("-fill"), QStringLiteral("red"), QStringLiteral("-draw"),
                QStringLiteral("color 1234,987 floodfill")});
        });
    const double baseMs = bestOf(
        3, [] {}, [&] { runConvert({}); });
    std::printf("ImageMagick open fill: %.1f ms\n", magickMs);
    std::printf("ImageMagick read and start alone: %.1f ms\n", baseMs);
    std::printf("open fill is %.1fx faster than ImageMagick (%.1fx against its fill alone)\n",
        magickMs / openMs, (magickMs - baseMs) / openMs);
    return 0;
}
