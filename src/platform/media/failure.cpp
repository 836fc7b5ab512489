#include "failure.h"

namespace media {

QString failureText(Failure failure)
{
    switch (failure) {
    case Failure::None:
        break;
    case Failure::NoDecoder:
        return QStringLiteral("δεν υπάρχει αποκωδικοποιητής για αυτό το είδος αρχείου");
    case Failure::Damaged:
        return QStringLiteral("το αρχείο είναι κατεστραμμένο");
    case Failure::NotFound:
        return QStringLiteral("το αρχείο δεν βρέθηκε");
    }
    return {};
}

} // namespace media
