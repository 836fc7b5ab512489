#include "listicons.h"

#include <programbitmaps.h>

QIcon ListIcons::icon(const QString &key)
{
    auto it = m_icons.find(key);
    if (it == m_icons.end())
        it = m_icons.insert(key, resources::exists(key) ? resources::LoadResIcon(key) : QIcon());
    return *it;
}
