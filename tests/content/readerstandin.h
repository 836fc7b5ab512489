#pragma once

#include "fixturefiles.h"

#include <jetimport.h>
#include <runtimeerror.h>

#include <QFile>
#include <QTemporaryDir>

// Stand-ins for the Jet reader program, to see how the import takes what a reader does.
namespace readerstandin {

// A stand-in reader: a shell script with the given body.
inline QString writeScript(const QTemporaryDir &dir, const QString &body)
{
    const QString path = dir.filePath(QStringLiteral("reader.sh"));
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return QString();
    f.write("#!/bin/sh\n" + body.toUtf8());
    f.close();
    f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    return path;
}

// The error number of importing the Jet 4 fixture with `reader` as the reader program;
// 0 when it imports.
inline int importErrorWith(const QString &reader, content::jet::ImportOptions options = {})
{
    qputenv("TREMIDIA_JET_READER", QFile::encodeName(reader));
    content::jet::forgetLastImport();
    int number = 0;
    try {
        content::jet::importJet(fixtures::jet4(), fixtures::bytes(fixtures::jet4()), options);
    } catch (const platform::RuntimeError &e) {
        number = e.number();
    }
    qunsetenv("TREMIDIA_JET_READER");
    content::jet::forgetLastImport();
    return number;
}

} // namespace readerstandin
