#include "rtffile.h"

#include "rtf.h"

#include <contentpath.h>
#include <runtimeerror.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <QTextDocument>

namespace richtext {

namespace {

constexpr int PathFileAccessError = 75;

[[noreturn]] void throwAccessError()
{
    throw platform::RuntimeError(
        PathFileAccessError, QStringLiteral("Λάθος πρόσβασης στη διαδρομή ή στο αρχείο"));
}

} // namespace

QByteArray readFile(const QString &path)
{
    const QString resolved = platform::resolvePath(path);
    QFile file(resolved);
    if (!QFileInfo(resolved).isFile())
        throw platform::RuntimeError(platform::errors::FileNotFound, QStringLiteral("Το αρχείο δεν βρέθηκε"));
    if (!file.open(QIODevice::ReadOnly))
        throwAccessError();
    return file.readAll();
}

QString decodePlainText(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (!utf8.hasError())
        return text;
    QStringDecoder greek("windows-1253");
    if (greek.isValid())
        return greek.decode(bytes);
    return QString::fromLatin1(bytes);
}

void loadDocument(QTextDocument &document, const QByteArray &bytes, bool richText)
{
    if (richText && isRtf(bytes)) {
        document.clear();
        readDocument(bytes, &document);
    } else {
        document.setPlainText(decodePlainText(bytes));
    }
}

void writeFileWhole(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throwAccessError();
}

} // namespace richtext
