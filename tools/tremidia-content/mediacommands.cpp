#include "commands.h"

#include <picturefile.h>
#include <probe.h>
#include <runtimeerror.h>

#include <QImage>
#include <QImageWriter>
#include <QTextStream>

namespace commands {

namespace {

QString describe(const platform::RuntimeError &e)
{
    return QStringLiteral("%1 (%2)").arg(e.description()).arg(e.number());
}

} // namespace

QString showProblem(const QString &path)
{
    try {
        pictures::LoadPicture(path);
        return {};
    } catch (const platform::RuntimeError &e) {
        return describe(e);
    }
}

QString playProblem(media::Engines &engines, const QString &path)
{
    try {
        media::probe(engines, path);
        return {};
    } catch (const platform::RuntimeError &e) {
        return describe(e);
    }
}

int picture(const QStringList &args)
{
    if (args.size() != 2)
        return fail(QStringLiteral("usage: picture IN OUT.png"));
    QImage image;
    try {
        image = pictures::LoadPicture(args.at(0));
    } catch (const platform::RuntimeError &e) {
        return fail(describe(e));
    }
    QImageWriter writer(args.at(1), "png");
    if (!writer.write(image))
        return fail(QStringLiteral("%1: %2").arg(args.at(1), writer.errorString()));
    return 0;
}

int media(const QStringList &args, media::Engines &engines)
{
    if (args.size() != 1)
        return fail(QStringLiteral("usage: media FILE"));
    try {
        const media::MediaInfo info = media::probe(engines, args.at(0));
        QTextStream(stdout) << info.durationMs << '\t' << (info.video ? "video" : "audio") << '\n';
    } catch (const platform::RuntimeError &e) {
        return fail(describe(e));
    }
    return 0;
}

} // namespace commands
