#include "greekcatalogue.h"

#include <QFile>

namespace i18n {

QString greekCataloguePath()
{
    return QStringLiteral(":/i18n/qt_el.qm");
}

bool hasGreekCatalogue()
{
    return QFile::exists(greekCataloguePath());
}

} // namespace i18n
