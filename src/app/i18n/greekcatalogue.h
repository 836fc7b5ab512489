#pragma once

#include <QString>

// The program's Greek catalogue of Qt's own strings, embedded in the executable.
namespace i18n {

// Where platform::installGreekTranslations() finds it.
QString greekCataloguePath();

// Whether the catalogue is linked in and readable.
bool hasGreekCatalogue();

} // namespace i18n
