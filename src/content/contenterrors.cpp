#include "contenterrors.h"

namespace content::errors {

using platform::RuntimeError;

RuntimeError invalidArgument()
{
    return RuntimeError(InvalidArgument, QStringLiteral("Μη έγκυρο όρισμα."));
}

RuntimeError noIndex()
{
    return RuntimeError(
        OperationInvalidWithoutIndex, QStringLiteral("Μη έγκυρη λειτουργία χωρίς τρέχον ευρετήριο."));
}

RuntimeError noCurrentRecord()
{
    return RuntimeError(NoCurrentRecord, QStringLiteral("Δεν υπάρχει τρέχουσα εγγραφή."));
}

RuntimeError fileNotFound(const QString &path)
{
    return RuntimeError(FileNotFound, QStringLiteral("Δεν ήταν δυνατή η εύρεση του αρχείου '%1'.").arg(path));
}

RuntimeError cannotOpen(const QString &path)
{
    return RuntimeError(CannotOpenFile,
        QStringLiteral("Η μηχανή βάσεων δεδομένων δεν μπορεί να ανοίξει το αρχείο '%1'. "
                       "Είναι ήδη ανοιχτό αποκλειστικά από άλλο χρήστη ή χρειάζεστε "
                       "δικαίωμα για να δείτε τα δεδομένα του.")
            .arg(path));
}

RuntimeError invalidFileName()
{
    return RuntimeError(InvalidFileName, QStringLiteral("Μη έγκυρο όνομα αρχείου."));
}

RuntimeError cancelled()
{
    return RuntimeError(CancelledByUser, QStringLiteral("Η λειτουργία ακυρώθηκε από το χρήστη."));
}

RuntimeError tooFewParameters(int expected)
{
    return RuntimeError(
        TooFewParameters, QStringLiteral("Πολύ λίγες παράμετροι. Αναμένονται %1.").arg(expected));
}

RuntimeError syntaxError(const QString &sql)
{
    return RuntimeError(SyntaxError,
        QStringLiteral("Συντακτικό λάθος (λείπει τελεστής) στην έκφραση ερωτήματος '%1'.").arg(sql));
}

RuntimeError noSuchTable(const QString &name)
{
    return RuntimeError(NoSuchTableOrQuery,
        QStringLiteral("Η μηχανή βάσεων δεδομένων δεν μπορεί να βρει τον πίνακα ή το ερώτημα "
                       "εισόδου '%1'. Βεβαιωθείτε ότι υπάρχει και ότι το όνομά του είναι "
                       "γραμμένο σωστά.")
            .arg(name));
}

RuntimeError invalidOperation()
{
    return RuntimeError(InvalidOperation, QStringLiteral("Μη έγκυρη λειτουργία."));
}

RuntimeError itemNotFound()
{
    return RuntimeError(ItemNotFound, QStringLiteral("Το στοιχείο δεν βρέθηκε σε αυτή τη συλλογή."));
}

RuntimeError notSupported()
{
    return RuntimeError(NotSupportedForObject,
        QStringLiteral("Η λειτουργία δεν υποστηρίζεται για αυτόν τον τύπο αντικειμένου."));
}

RuntimeError unrecognizedFormat(const QString &path)
{
    return RuntimeError(
        UnrecognizedFormat, QStringLiteral("Μη αναγνωρίσιμη μορφή βάσης δεδομένων '%1'.").arg(path));
}

RuntimeError objectNoLongerSet()
{
    return RuntimeError(
        ObjectNoLongerSet, QStringLiteral("Το αντικείμενο δεν είναι έγκυρο ή δεν έχει πλέον οριστεί."));
}

RuntimeError notAnIndex(const QString &name)
{
    return RuntimeError(
        NotAnIndex, QStringLiteral("Το '%1' δεν είναι ευρετήριο σε αυτόν τον πίνακα.").arg(name));
}

} // namespace content::errors
