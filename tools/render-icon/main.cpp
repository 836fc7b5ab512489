// Renders the program's SVG icon into the PNG sizes that desktops without SVG icon
// support look for: render-icon SOURCE.svg OUTDIR SIZE... writes OUTDIR/SIZE.png.
// Qt's own renderer draws it, so the icon looks as it does in the program's windows.

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QStringList args = app.arguments();
    args.removeFirst();
    QTextStream err(stderr);
    if (args.size() < 3) {
        err << "usage: render-icon SOURCE.svg OUTDIR SIZE...\n";
        return 1;
    }
    QSvgRenderer renderer(args.takeFirst());
    if (!renderer.isValid()) {
        err << "render-icon: not a readable SVG file\n";
        return 1;
    }
    const QDir out(args.takeFirst());
    if (!out.mkpath(QStringLiteral("."))) {
        err << "render-icon: cannot make " << out.path() << '\n';
        return 1;
    }
    for (const QString &text : std::as_const(args)) {
        bool ok = false;
        const int size = text.toInt(&ok);
        if (!ok || size <= 0) {
            err << "render-icon: bad size " << text << '\n';
            return 1;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        renderer.render(&painter, QRectF(0, 0, size, size));
        painter.end();
        if (!image.save(out.filePath(text + QStringLiteral(".png")))) {
            err << "render-icon: cannot write " << text << ".png\n";
            return 1;
        }
    }
    return 0;
}
