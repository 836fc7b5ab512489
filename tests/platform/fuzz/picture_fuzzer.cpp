// libFuzzer target for reading pictures from bytes as the windows do: bitmaps through
// Qt's readers, Windows metafiles through libwmf, enhanced metafiles through libemf2svg
// and Qt's SVG renderer, with the program's size limits. Besides crashes, hangs and leaks
// it checks that every run ends in a picture or in the invalid-picture or too-large error.
#include <metafile.h>
#include <picturefile.h>
#include <runtimeerror.h>

#include <QGuiApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Broken pictures make the readers complain at every turn; that is expected here and
    // only slows the run down.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static QGuiApplication app(*argc, *argv);
    return 0;
}

// PICTURE_FUZZ_SAY=1 tells what each input gave, for looking into a finding.
// PICTURE_FUZZ_ONLY=wmf, emf or bitmap lets a long run spend its time on one kind of file
// (Windows metafiles draw much slower than the rest); the others are passed over.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    static const QByteArray only = qgetenv("PICTURE_FUZZ_ONLY");
    if (!only.isEmpty()) {
        const QByteArray kind = pictures::isWindowsMetafile(bytes) ? "wmf"
            : pictures::isEnhancedMetafile(bytes)                  ? "emf"
                                                                   : "bitmap";
        if (kind != only)
            return 0;
    }
    try {
        const QImage picture = pictures::pictureFromBytes(bytes, QStringLiteral("fuzz"));
        if (std::getenv("PICTURE_FUZZ_SAY"))
            std::fprintf(stderr, "picture %d x %d\n", picture.width(), picture.height());
        if (picture.isNull()) {
            std::fprintf(stderr, "a null picture without an error\n");
            std::abort();
        }
    } catch (const platform::RuntimeError &error) {
        if (std::getenv("PICTURE_FUZZ_SAY"))
            std::fprintf(stderr, "error %d\n", error.number());
        if (error.number() != platform::errors::InvalidPicture && error.number() != 7) {
            std::fprintf(stderr, "unexpected error %d\n", error.number());
            std::abort();
        }
    }
    return 0;
}
