#include "commands.h"

#include <checker.h>
#include <dictionary.h>
#include <rtf.h>

#include <QFile>

#include <cstdio>

namespace commands {

// The notepad's checker on a file: the same dictionary and rules, without the course's
// and the pupil's own words, which belong to a course and a pupil.
int spell(const QStringList &args)
{
    if (args.size() != 1)
        return fail(QStringLiteral("usage: spell FILE"));
    QFile file;
    const bool standardInput = args.first() == u"-";
    const bool opened = standardInput ? file.open(stdin, QIODevice::ReadOnly)
                                      : (file.setFileName(args.first()), file.open(QIODevice::ReadOnly));
    if (!opened)
        return fail(QStringLiteral("cannot read %1: %2").arg(args.first(), file.errorString()));
    const QByteArray data = file.readAll();
    // RTF by its start, else UTF-8 text.
    const QString text
        = data.startsWith("{\\rtf") ? richtext::readPlainText(data).text : QString::fromUtf8(data);

    QString why;
    std::shared_ptr<spelling::Dictionary> dictionary
        = spelling::Dictionary::load(spelling::Dictionary::defaultFolders(), &why);
    if (!dictionary)
        return fail(why);
    spelling::Checker checker(std::move(dictionary));
    QByteArray out;
    for (const spelling::Checker::Misspelling &found : checker.misspellings(text)) {
        out += QByteArray::number(found.start) + '\t' + found.word.toUtf8() + '\t'
            + checker.suggestions(found.word).join(u',').toUtf8() + '\n';
    }
    std::fwrite(out.constData(), 1, std::size_t(out.size()), stdout);
    std::fflush(stdout);
    return 0;
}

} // namespace commands
