#pragma once

#include <QString>

// Where an install puts the program's files, as the build was configured (the prefix
// and the GNU folders below it). Under a DESTDIR each of these sits below that folder.
namespace installed {

inline const QString Prefix = QStringLiteral(TREMIDIA_INSTALL_PREFIX);
inline const QString Bin = QStringLiteral(TREMIDIA_INSTALL_PREFIX "/" TREMIDIA_INSTALL_BINDIR);
// The Jet reader, a helper the programs start; not on the PATH.
inline const QString JetReader
    = QStringLiteral(TREMIDIA_INSTALL_PREFIX "/" TREMIDIA_INSTALL_LIBEXECDIR "/tremidia/tremidia-jet-reader");
inline const QString Data = QStringLiteral(TREMIDIA_INSTALL_PREFIX "/" TREMIDIA_INSTALL_DATADIR);
inline const QString Man = QStringLiteral(TREMIDIA_INSTALL_PREFIX "/" TREMIDIA_INSTALL_MANDIR);
inline const QString AppId = QStringLiteral("org.tremidia.Tremidia");
inline const QString SystemSettings
    = QStringLiteral(TREMIDIA_INSTALL_SYSCONFDIR "/xdg/tremidia/tremidia.conf");
inline const QString SampleDatabase = Data + QStringLiteral("/tremidia/sample/tremidia.sqlite");
inline const QString DesktopEntry
    = Data + QStringLiteral("/applications/") + AppId + QStringLiteral(".desktop");
inline const QString Metainfo = Data + QStringLiteral("/metainfo/") + AppId + QStringLiteral(".metainfo.xml");

inline QStringList iconSizes()
{
    return {QStringLiteral("16"), QStringLiteral("22"), QStringLiteral("24"), QStringLiteral("32"),
        QStringLiteral("48"), QStringLiteral("64"), QStringLiteral("128"), QStringLiteral("256")};
}

// Every file a computer gets, by its absolute path.
inline QStringList files()
{
    QStringList out {
        Bin + QStringLiteral("/tremidia"),
        Bin + QStringLiteral("/tremidia-content"),
        JetReader,
        SampleDatabase,
        DesktopEntry,
        Metainfo,
        Data + QStringLiteral("/icons/hicolor/scalable/apps/") + AppId + QStringLiteral(".svg"),
        Man + QStringLiteral("/man1/tremidia.1"),
        Man + QStringLiteral("/man1/tremidia-content.1"),
        SystemSettings,
    };
    for (const QString &size : iconSizes())
        out << Data + QStringLiteral("/icons/hicolor/%1x%1/apps/").arg(size) + AppId + QStringLiteral(".png");
    return out;
}

} // namespace installed
