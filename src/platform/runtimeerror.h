#pragma once

#include <QString>

#include <exception>

namespace platform {

// An error that a routine does not trap itself. It travels up to the event handler that
// started the work, where the error policy turns it into the program's error box
// ("Λάθος # " number, CR LF, description) and the program goes on.
class RuntimeError : public std::exception
{
public:
    RuntimeError(int number, QString description);

    int number() const noexcept { return m_number; }
    const QString &description() const noexcept { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QByteArray m_what;
};

// Error numbers that the program raises itself, kept to the values the original
// platform used so that messages read the same.
namespace errors {
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int FileNotFound = 53;
inline constexpr int PathNotFound = 76;
inline constexpr int InvalidPicture = 481;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidUseOfNull = 94;
inline constexpr int ObjectRequired = 424;
inline constexpr int CannotCreateObject = 429;
inline constexpr int CommonDialogCancelled = 32755;
} // namespace errors

} // namespace platform
