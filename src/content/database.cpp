#include "database.h"

#include <runtimeerror.h>

namespace content {

struct Database::Private {};
struct Recordset::Private {};

Database::Database() = default;
Database::~Database() = default;

std::unique_ptr<Database> Database::OpenDatabase(const QString &path, const OpenOptions &)
{
    throw platform::RuntimeError(3024, QStringLiteral("Δεν ήταν δυνατή η εύρεση του αρχείου '%1'.").arg(path));
}

Recordset::Recordset() = default;
Recordset::~Recordset() = default;

} // namespace content
