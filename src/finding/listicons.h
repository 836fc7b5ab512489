#pragma once

#include <QHash>
#include <QIcon>
#include <QString>

// The small icons of a list of sources ("epigrafi", "keimeno", "agio", "xartis"), each
// made once by the window that shows them: a list of thousands shares four. A key the
// program carries no picture for gives a null icon.
class ListIcons final
{
public:
    QIcon icon(const QString &key);

private:
    QHash<QString, QIcon> m_icons;
};
